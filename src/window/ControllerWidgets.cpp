// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Controller.h"

#include "FileNameLabel.h"
#include "OpenGLView.h"
#include "PaintedView.h"
#include "QtText.h"
#include "lib/Folders.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <algorithm>

namespace
{

// Rows are 40 pixels apart. All widgets in a row have the same height, so their texts are level.
constexpr int rowHeight = 30;

constexpr int ownWidth = 0;

// Smaller letters are not readable, px.
constexpr int smallestLetters = 8;

// The widths are fixed. If the desktop's font is too large for them, the window gets a smaller font.
void fitLetters(QWidget* window, QWidget const* widget, int width)
{
    // An edit's size hint is wider than its numbers.
    if (qobject_cast<QLineEdit const*>(widget))
        return;
    QFont letters = window->font();
    for (int size = QFontInfo(letters).pixelSize(); size > smallestLetters && widget->sizeHint().width() > width;) {
        letters.setPixelSize(--size);
        window->setFont(letters);
    }
}

template <typename Widget>
Widget* place(Widget* widget, char const* name, int x, int y, int width = ownWidth)
{
    widget->setObjectName(QLatin1String(name));
    if (width != ownWidth)
        fitLetters(widget->parentWidget(), widget, width);
    QSize const own = widget->sizeHint();
    widget->setGeometry(x, y, width == ownWidth ? own.width() : width, std::max(rowHeight, own.height()));
    return widget;
}

QPixmap warnSign(QLabel const* label)
{
    // "r" is no format that Qt knows, so the content of the file decides.
    QPixmap sign(toQString(respath + "warnsign.png"), "r");
    if (sign.isNull())
        return sign;
    double const density = label->devicePixelRatioF();
    sign = sign.scaledToHeight(qRound(label->height() * density), Qt::SmoothTransformation);
    sign.setDevicePixelRatio(density);
    return sign;
}

} // namespace

void Controller::createInputControls()
{
    inputLabel = place(new QLabel(tr("Input File", "input file label"), this), "inputLabel", 20, 20);
    fileNameLabel = place(new FileNameLabel(tr("No file selected", "input file filename display"), this),
                          "fileNameLabel", 200, 20, 200);
    openButton =
        place(new QPushButton(tr("Open...", "Button which opens the input file"), this), "openButton", 420, 20, 100);
    connect(openButton, &QPushButton::clicked, this, &Controller::handleOpenFileButton);

    nameLabel = place(new QLabel(tr("Name", "name label"), this), "nameLabel", 20, 60);
    nameEdit = place(new QLineEdit(tr("New Chart", "first chart name"), this), "nameEdit", 200, 60, 200);
    chartLayout.setName(toString(nameEdit->text()));
    connect(nameEdit, &QLineEdit::editingFinished, this, &Controller::namechanged);

    deviceLabel = place(new QLabel(tr("Device", "device label"), this), "deviceLabel", 20, 100);
    deviceCombo = new QComboBox(this);
    for (char const* device : measurementlayout_strings)
        deviceCombo->addItem(QLatin1String(device));
    place(deviceCombo, "deviceCombo", 200, 100, 200);
    connect(deviceCombo, &QComboBox::currentIndexChanged, this, &Controller::devicechanged);
}

void Controller::createPageControls()
{
    pageSizeLabel = place(new QLabel(tr("Page size", "page size label"), this), "pageSizeLabel", 20, 140);
    pagePresetCombo = new QComboBox(this);
    for (char const* paper : pagelayoutpreset_strings)
        pagePresetCombo->addItem(QLatin1String(paper));
    place(pagePresetCombo, "pagePresetCombo", 340, 140, 180);
    connect(pagePresetCombo, &QComboBox::currentIndexChanged, this, &Controller::pagepresetchanged);
    pageWidthEdit = place(new QLineEdit("pagewidth", this), "pageWidthEdit", 200, 140, 50);
    connect(pageWidthEdit, &QLineEdit::editingFinished, this, &Controller::pagewidthchanged);
    pageHeightEdit = place(new QLineEdit("pageheight", this), "pageHeightEdit", 270, 140, 50);
    connect(pageHeightEdit, &QLineEdit::editingFinished, this, &Controller::pageheightchanged);

    marginsLabel =
        place(new QLabel(tr("Page boundaries TRBL", "page boundaries label"), this), "marginsLabel", 20, 180, 200);
    marginTopEdit = place(new QLineEdit("top", this), "marginTopEdit", 200, 180, 50);
    connect(marginTopEdit, &QLineEdit::editingFinished, this, &Controller::pagetopchanged);
    marginRightEdit = place(new QLineEdit("right", this), "marginRightEdit", 270, 180, 50);
    connect(marginRightEdit, &QLineEdit::editingFinished, this, &Controller::pagerightchanged);
    marginBottomEdit = place(new QLineEdit("bottom", this), "marginBottomEdit", 340, 180, 50);
    connect(marginBottomEdit, &QLineEdit::editingFinished, this, &Controller::pagebottomchanged);
    marginLeftEdit = place(new QLineEdit("left", this), "marginLeftEdit", 410, 180, 50);
    connect(marginLeftEdit, &QLineEdit::editingFinished, this, &Controller::pageleftchanged);
}

void Controller::createPatchControls()
{
    patchSizeLabel = place(new QLabel("Patch size: 8 x 8 mm", this), "patchSizeLabel", 20, 220, 200);
    patchSizeSlider = place(new QSlider(Qt::Horizontal, this), "patchSizeSlider", 200, 220);
    patchSizeSlider->resize(100, 25);
    patchSizeSlider->setTracking(true);
    patchSizeSlider->setRange(3, 15);
    patchSizeSlider->setValue(8);
    connect(patchSizeSlider, &QSlider::sliderMoved, this, &Controller::patchsizechanged);

    epsRadio = place(new QRadioButton(tr("EPS", "EPS radio button"), this), "epsRadio", 200, 260);
    epsRadio->setChecked(true);
    connect(epsRadio, &QRadioButton::clicked, this, &Controller::radioepsclicked);
    tiffRadio = place(new QRadioButton(tr("TIFF", "TIFF radio button"), this), "tiffRadio", 250, 260);
    connect(tiffRadio, &QRadioButton::clicked, this, &Controller::radiotiffclicked);
    clipCheckBox =
        place(new QCheckBox(tr("Clip to content", "ClipToContent Checkbox"), this), "clipCheckBox", 20, 260, 200);
    clipCheckBox->hide();
    connect(clipCheckBox, &QCheckBox::clicked, this, &Controller::cliptocontentclicked);

    warnSignLabel = place(new QLabel(this), "warnSignLabel", 340, 260, 100);
    warnSignLabel->setPixmap(warnSign(warnSignLabel));
    gapsLabel = place(new QLabel("Gaps: No Scan", this), "gapsLabel", 350, 220, 150);
    gapsLabel->resize(150, warnSignLabel->height());
    gapsLabel->hide();

    createButton = place(new QPushButton(tr("Create Files...", "Button which creates the files"), this), "createButton",
                         380, 260, 140);
    connect(createButton, &QPushButton::clicked, this, &Controller::handleButton);
}

void Controller::createWarnDialog()
{
    warnDialog = new QDialog(this);
    warnDialog->setObjectName("warnDialog");
    warnDialog->setWindowTitle("Gaps required");
    warnDialog->setFixedSize(400, 100);
    warnLabel = place(new QLabel(tr("Warning: The output files will contain gaps.", "gap warning message"), warnDialog),
                      "warnLabel", 20, 20, 350);
    warnLabel->setAlignment(Qt::AlignHCenter);
    warnOkButton =
        place(new QPushButton(tr("Ok", "OK-Button for warn-dialog"), warnDialog), "warnOkButton", 280, 50, 100);
    connect(warnOkButton, &QPushButton::clicked, this, &Controller::handleWarnOkButton);
    warnCancelButton = place(new QPushButton(tr("Cancel", "Cancel-Button for warn-dialog"), warnDialog),
                             "warnCancelButton", 180, 50, 100);
    connect(warnCancelButton, &QPushButton::clicked, this, &Controller::handleWarnCancelButton);
}

void Controller::createPreview(bool hasOpenGL)
{
    QWidget* view = nullptr;
    if (hasOpenGL)
        view = preview = new OpenGLView(this);
    else
        view = paintedPreview = new PaintedView(this);
    view->setObjectName("preview");
    view->setGeometry(20, 300, 500, 280);
}
