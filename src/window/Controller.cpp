// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Controller.h"

#include "OpenGLView.h"
#include "PaintedView.h"
#include "QtText.h"
#include "lib/Folders.h"
#include "making/ChartMaking.h"
#include "making/ProcessSetUp.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDropEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QUrl>

#include <algorithm>

namespace
{

double typedNumber(QLineEdit const* edit)
{
    return toString(edit->text()).toReal();
}

void showMillimetres(QLineEdit* edit, double length)
{
    edit->setText(toQString(String::format("%.1f", length)));
}

} // namespace

Controller::Controller()
{
    useResourcesBeside(toString(QCoreApplication::applicationDirPath()));
    // Qt loads a plug-in when it first needs one. The window needs plug-ins for pictures, icons and OpenGL: they are
    // loaded here, before the plug-in folders are replaced.
    QImageReader::supportedImageFormats();
    [[maybe_unused]] QIcon const any(QStringLiteral("any.svg"));
    bool const hasOpenGL = OpenGLView::isUsable();
    QCoreApplication::setLibraryPaths({toQString(exepath + "../Frameworks/")});

    setFixedSize(540, 600);
    setWindowTitle(tr("Patchloom", "Window title"));
    // Some desktops show the window's own icon, others the icon of the menu entry.
    setWindowIcon(QIcon(toQString(respath + "icon.png")));
    QGuiApplication::setDesktopFileName("org.patchloom.Patchloom");
    setAcceptDrops(true);

    chartLayout.setDirection(mirrored);
    chartLayout.setPatchSize({8, 8});
    PageLayout sheet;
    sheet.initWithPreset(a4Portrait);
    chartLayout.setPageLayout(sheet);

    createInputControls();
    createPageControls();
    createPatchControls();
    createWarnDialog();
    createPreview(hasOpenGL);
    orderForKeyboard();
    nameForScreenReaders();
    for (QLineEdit* edit : findChildren<QLineEdit*>()) {
        edit->installEventFilter(this);
        // A file that is dropped on an edit is meant for the window. The edit would insert its name.
        edit->setAcceptDrops(false);
    }

    raise();
    show();
    update();
}

Controller::~Controller()
{
    // Hiding takes the focus from an edit. The edit then reports its text, so the window must still be whole.
    hide();
    ColorEntry::endColorConversions();
}

void Controller::setInputFilename(String name)
{
    fileNameLabel->setText(toQString(name.getFilename()));
    fileNameLabel->setToolTip(Qt::convertFromPlainText(toQString(name)));
    if (inputFile.init(name)) {
        chartLayout.setColorSpace(inputFile.getColorSpace());
        chartLayout.setOriginalEntries(inputFile.getEntries());
    } else {
        chartLayout.setOriginalEntries(nullptr);
    }
    update();
}

void Controller::update()
{
    showSheet();
    showPatchSize();
    warnSignLabel->hide();
    if (inputFile.isValid())
        computeChart();
    gapsLabel->setText(toQString(isScanned(chartLayout)
                                     ? String::format("Gaps: %1.02f dE", static_cast<double>(minDeltaE))
                                     : String("Gaps: No Scan")));
    showPreview();
    createButton->setEnabled(inputFile.isValid() && chartLayout.hasSomethingToOutpot());
}

void Controller::showSheet()
{
    SheetAxis const x = across();
    SheetAxis const y = up();
    showMillimetres(pageWidthEdit, x.sheet);
    showMillimetres(pageHeightEdit, y.sheet);
    showMillimetres(marginTopEdit, y.farMargin());
    showMillimetres(marginRightEdit, x.farMargin());
    showMillimetres(marginBottomEdit, y.start);
    showMillimetres(marginLeftEdit, x.start);
}

void Controller::showPatchSize()
{
    RealSize const patch = chartLayout.getPatchSize();
    int const width = wholeNumber(patch.width);
    patchSizeLabel->setText(toQString(String::format("Patch size: %d x %d mm", width, wholeNumber(patch.height))));
    if (patch.height > patch.width) {
        // Without the blocker the slider would report its new value, and everything would be computed twice.
        QSignalBlocker const blocker(patchSizeSlider);
        patchSizeSlider->setValue(width);
    }
}

void Controller::computeChart()
{
    MadeChart const made = makeChart(chartLayout);
    minDeltaE = made.withoutGaps;
    if (made.hasGaps)
        warnSignLabel->show();
}

void Controller::showPreview()
{
    if (preview) {
        preview->setChartLayout(&chartLayout);
        preview->updateGL();
    } else {
        paintedPreview->setChartLayout(&chartLayout);
        paintedPreview->repaint();
    }
}

SheetAxis Controller::across() const
{
    PageLayout const sheet = chartLayout.getPageLayout();
    return {sheet.getSize().width, sheet.getContent().x, sheet.getContent().width};
}

SheetAxis Controller::up() const
{
    PageLayout const sheet = chartLayout.getPageLayout();
    return {sheet.getSize().height, sheet.getContent().y, sheet.getContent().height};
}

void Controller::setSheet(SheetAxis const& newAcross, SheetAxis const& newUp)
{
    PageLayout sheet;
    sheet.setSize({newAcross.sheet, newUp.sheet});
    sheet.setContent({newAcross.start, newUp.start, newAcross.extent, newUp.extent});
    chartLayout.setPageLayout(sheet);
}

bool Controller::changeAcross(QLineEdit const* edit, bool (SheetAxis::*change)(double))
{
    SheetAxis axis = across();
    if (!(axis.*change)(typedNumber(edit)))
        return false;
    setSheet(axis, up());
    return true;
}

bool Controller::changeUp(QLineEdit const* edit, bool (SheetAxis::*change)(double))
{
    SheetAxis axis = up();
    if (!(axis.*change)(typedNumber(edit)))
        return false;
    setSheet(across(), axis);
    return true;
}

void Controller::namechanged()
{
    chartLayout.setName(toString(nameEdit->text()));
    update();
}

void Controller::devicechanged(int newindex)
{
    MeasurementLayout instrument;
    instrument.initWithPreset(static_cast<MeasurementLayoutPreset>(newindex));
    chartLayout.setMeasurementLayout(instrument);
    update();
}

void Controller::pagepresetchanged(int newindex)
{
    if (newindex == custom)
        return;
    PageLayout sheet;
    sheet.initWithPreset(static_cast<PageLayoutPreset>(newindex));
    chartLayout.setPageLayout(sheet);
    update();
}

void Controller::pagewidthchanged()
{
    if (changeAcross(pageWidthEdit, &SheetAxis::setSheet))
        pagePresetCombo->setCurrentIndex(custom);
    update();
}

void Controller::pageheightchanged()
{
    if (changeUp(pageHeightEdit, &SheetAxis::setSheet))
        pagePresetCombo->setCurrentIndex(custom);
    update();
}

void Controller::pagetopchanged()
{
    changeUp(marginTopEdit, &SheetAxis::setFarMargin);
    update();
}

void Controller::pagerightchanged()
{
    changeAcross(marginRightEdit, &SheetAxis::setFarMargin);
    update();
}

void Controller::pagebottomchanged()
{
    changeUp(marginBottomEdit, &SheetAxis::setNearMargin);
    update();
}

void Controller::pageleftchanged()
{
    changeAcross(marginLeftEdit, &SheetAxis::setNearMargin);
    update();
}

void Controller::patchsizechanged(int newvalue)
{
    RealSize const smallest = chartLayout.getMeasurementLayout().getMinPatchSize();
    double const side = newvalue;
    chartLayout.setPatchSize({std::max(smallest.width, side), std::max(smallest.height, side)});
    update();
}

void Controller::radioepsclicked()
{
    epsRadio->setChecked(true);
    tiffRadio->setChecked(false);
    update();
}

void Controller::radiotiffclicked()
{
    tiffRadio->setChecked(true);
    epsRadio->setChecked(false);
    update();
}

void Controller::cliptocontentclicked()
{
    chartLayout.setClipToContent(clipCheckBox->isChecked());
    update();
}

void Controller::dragEnterEvent(QDragEnterEvent* event)
{
    event->acceptProposedAction();
}

void Controller::dropEvent(QDropEvent* event)
{
    QList<QUrl> const urls = event->mimeData()->urls();
    if (urls.isEmpty())
        return;
    // The file is only read. A source that offers to move the file must not delete it.
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(event->dropAction() != Qt::MoveAction);
    setInputFilename(toString(urls.first().toLocalFile()));
}

void Controller::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Alt)
        gapsLabel->show();
    else
        event->ignore();
}

void Controller::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Alt)
        gapsLabel->hide();
    else
        event->ignore();
}

bool Controller::eventFilter(QObject*, QEvent* event)
{
    // An edit does not pass the release of a key on to the window.
    if (event->type() == QEvent::KeyRelease && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt)
        gapsLabel->hide();
    return false;
}
