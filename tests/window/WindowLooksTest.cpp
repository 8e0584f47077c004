// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DesktopFont.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <QCheckBox>
#include <QColor>
#include <QFontInfo>
#include <QImage>
#include <QMetaMethod>
#include <QStyleOptionFrame>

#include <algorithm>

namespace
{

constexpr int ownWidth = 0;
constexpr int ownHeight = 0;

// Widgets without a height of their own are level with their neighbours.
constexpr int rowHeight = 30;

struct Row
{
    char const* name;
    char const* type;
    char const* text;
    int x;
    int y;
    int width;
    int height = ownHeight;
};

// The window's widgets in the order of creation.
constexpr Row rows[] = {
    {"inputLabel", "QLabel", "Input File", 20, 20, ownWidth},
    {"fileNameLabel", "QLabel", "No file selected", 200, 20, 200},
    {"openButton", "QPushButton", "Open...", 420, 20, 100},
    {"nameLabel", "QLabel", "Name", 20, 60, ownWidth},
    {"nameEdit", "QLineEdit", "New Chart", 200, 60, 200},
    {"deviceLabel", "QLabel", "Device", 20, 100, ownWidth},
    {"deviceCombo", "QComboBox", "GB+ Spot", 200, 100, 200},
    {"pageSizeLabel", "QLabel", "Page size", 20, 140, ownWidth},
    {"pagePresetCombo", "QComboBox", "A4 Portrait", 340, 140, 180},
    {"pageWidthEdit", "QLineEdit", "210.0", 200, 140, 50},
    {"pageHeightEdit", "QLineEdit", "297.0", 270, 140, 50},
    {"marginsLabel", "QLabel", "Page boundaries TRBL", 20, 180, 200},
    {"marginTopEdit", "QLineEdit", "5.0", 200, 180, 50},
    {"marginRightEdit", "QLineEdit", "5.0", 270, 180, 50},
    {"marginBottomEdit", "QLineEdit", "15.0", 340, 180, 50},
    {"marginLeftEdit", "QLineEdit", "5.0", 410, 180, 50},
    {"patchSizeLabel", "QLabel", "Patch size: 8 x 8 mm", 20, 220, 200},
    {"patchSizeSlider", "QSlider", nullptr, 200, 220, 100, 25},
    {"epsRadio", "QRadioButton", "EPS", 200, 260, ownWidth},
    {"tiffRadio", "QRadioButton", "TIFF", 250, 260, ownWidth},
    {"clipCheckBox", "QCheckBox", "Clip to content", 20, 260, 200},
    {"warnSignLabel", "QLabel", "", 340, 260, 100},
    {"gapsLabel", "QLabel", "Gaps: No Scan", 350, 220, 150},
    {"createButton", "QPushButton", "Create Files...", 380, 260, 140},
    {"warnDialog", "QDialog", nullptr, 0, 0, 400, 100},
    {"preview", "OpenGLView", nullptr, 20, 300, 500, 280},
};

QString shownText(QWidget const* widget)
{
    return widget->property(widget->inherits("QComboBox") ? "currentText" : "text").toString();
}

} // namespace

class WindowLooksTest : public WindowTest
{
    Q_OBJECT

private slots:
    void hasItsFixedSizeAndItsTitle()
    {
        TestWindow window;
        QCOMPARE(window.size(), QSize(540, 600));
        QCOMPARE(window.minimumSize(), QSize(540, 600));
        QCOMPARE(window.maximumSize(), QSize(540, 600));
        QCOMPARE(window.windowTitle(), QString("Patchloom"));
        QVERIFY(window.isVisible());
        QVERIFY(window.acceptDrops());
    }

    void placesEveryWidget_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < static_cast<int>(std::size(rows)); ++row)
            QTest::newRow(rows[row].name) << row;
    }

    void placesEveryWidget()
    {
        QFETCH(int, row);
        Row const& expected = rows[row];
        TestWindow window;
        auto* const widget = window.findChild<QWidget*>(expected.name);
        QVERIFY(widget);
        QVERIFY(widget->inherits(expected.type));
        QCOMPARE(widget->parent(), static_cast<QObject*>(&window));
        if (!widget->isWindow())
            QCOMPARE(widget->pos(), QPoint(expected.x, expected.y));
        QCOMPARE(widget->width(), expected.width != ownWidth ? expected.width : widget->sizeHint().width());
        QCOMPARE(widget->height(),
                 expected.height != ownHeight ? expected.height : std::max(rowHeight, widget->sizeHint().height()));
        if (expected.text)
            QCOMPARE(shownText(widget), QString(expected.text));
    }

    void createsItsWidgetsInOrder()
    {
        TestWindow window;
        QStringList expected;
        for (Row const& row : rows)
            expected.append(row.name);
        QStringList made;
        for (QObject const* child : window.children()) {
            if (child->isWidgetType() && expected.contains(child->objectName()))
                made.append(child->objectName());
        }
        QCOMPARE(made, expected);
    }

    void givesEachTextEnoughRoom_data() { addFonts(); }

    void givesEachTextEnoughRoom()
    {
        QFETCH(double, points);
        DesktopFont const font(points);
        TestWindow window;
        window.chooseDevice("GB+ Scan");
        drag(window.slider(), 15);
        for (QWidget const* widget : window.findChildren<QWidget*>()) {
            QByteArray const name = widget->objectName().toUtf8();
            bool const showsText = widget->inherits("QLabel") || widget->inherits("QAbstractButton");
            if (!showsText || name.isEmpty() || name == "clipCheckBox")
                continue;
            QSize const needed = widget->sizeHint();
            bool const isLabelOfEdits = widget->inherits("QLabel") && widget->x() == 20 && widget->parent() == &window;
            QVERIFY2(needed.width() <= (isLabelOfEdits ? 180 : widget->width()), name);
            QVERIFY2(needed.height() <= widget->height(), name);
            QVERIFY2(widget->parentWidget()->rect().contains(widget->geometry()), name);
            QVERIFY2(QFontInfo(widget->font()).pixelSize() > 10, name);
        }
    }

    void givesNumbersEnoughRoom_data() { addFonts(); }

    void givesNumbersEnoughRoom()
    {
        QFETCH(double, points);
        DesktopFont const font(points);
        TestWindow window;
        for (char const* name : {"pageWidthEdit", "pageHeightEdit", "marginTopEdit", "marginLeftEdit"}) {
            QLineEdit const* const edit = window.edit(name);
            QStyleOptionFrame option;
            option.initFrom(edit);
            int const room = edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit).width();
            QVERIFY2(edit->fontMetrics().horizontalAdvance("297.0") < room, name);
        }
    }

    void coversNoControlWithAnother_data() { addFonts(); }

    void coversNoControlWithAnother()
    {
        QFETCH(double, points);
        DesktopFont const font(points);
        TestWindow window;
        QList<QWidget*> const widgets = window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        auto const isControl = [](QWidget const* widget) {
            return widget->isVisible() && !widget->inherits("QLabel") && !widget->isWindow();
        };
        for (QWidget const* one : widgets) {
            for (QWidget const* other : widgets) {
                if (one != other && isControl(one) && isControl(other))
                    QVERIFY2(!one->geometry().intersects(other->geometry()),
                             qPrintable(one->objectName() + " and " + other->objectName()));
            }
        }
    }

    void listsTheDevices()
    {
        TestWindow window;
        QComboBox const* const combo = window.combo("deviceCombo");
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        QCOMPARE(items, QStringList({"GB+ Spot", "GB+ Scan", "VT-30 Standard Ruler", "VT-30 Long Ruler"}));
        QCOMPARE(combo->currentIndex(), 0);
    }

    void listsThePapers()
    {
        TestWindow window;
        QComboBox const* const combo = window.combo("pagePresetCombo");
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        QCOMPARE(items, QStringList({"A4 Portrait", "A4 Landscape", "A3 Portrait", "A3 Landscape", "Letter Portrait",
                                     "Letter Landscape", "Credit Card Portrait", "Credit Card Landscape", "Custom"}));
        QCOMPARE(combo->currentIndex(), 0);
    }

    void startsWithPatchesOfEightMillimetres()
    {
        TestWindow window;
        QSlider const* const slider = window.slider();
        QCOMPARE(slider->orientation(), Qt::Horizontal);
        QCOMPARE(slider->size(), QSize(100, 25));
        QVERIFY(slider->hasTracking());
        QCOMPARE(slider->minimum(), 3);
        QCOMPARE(slider->maximum(), 15);
        QCOMPARE(slider->value(), 8);
    }

    void startsWithEpsSheetsOfWholePaper()
    {
        TestWindow window;
        QVERIFY(window.radio("epsRadio")->isChecked());
        QVERIFY(!window.radio("tiffRadio")->isChecked());
        QVERIFY(!window.findChild<QCheckBox*>("clipCheckBox")->isChecked());
        QVERIFY(window.findChild<QCheckBox*>("clipCheckBox")->isHidden());
    }

    void startsWithoutAWarningAndWithNothingToCreate()
    {
        TestWindow window;
        QVERIFY(window.label("warnSignLabel")->isHidden());
        QVERIFY(window.label("gapsLabel")->isHidden());
        QVERIFY(window.warnDialog()->isHidden());
        QVERIFY(!window.button("createButton")->isEnabled());
    }

    void showsTheWarningSignAsHighAsItsLabel()
    {
        TestWindow window;
        QLabel const* const label = window.label("warnSignLabel");
        QImage const sign = label->pixmap().toImage();
        QCOMPARE(sign.height(), qRound(label->height() * label->devicePixelRatioF()));
        QCOMPARE(sign.width(), sign.height());
        QColor const ground = sign.pixelColor(sign.width() / 2, sign.height() - sign.height() / 6);
        QVERIFY2(ground.red() > 200 && ground.green() > 150 && ground.blue() < 60, qPrintable(ground.name()));
        QCOMPARE(window.label("gapsLabel")->height(), label->height());
    }

    void asksAboutGapsInItsOwnDialog()
    {
        TestWindow window;
        QDialog* const dialog = window.warnDialog();
        QCOMPARE(dialog->windowTitle(), QString("Gaps required"));
        QCOMPARE(dialog->minimumSize(), QSize(400, 100));
        QCOMPARE(dialog->maximumSize(), QSize(400, 100));

        QLabel const* const message = window.label("warnLabel");
        QCOMPARE(message->parent(), static_cast<QObject*>(dialog));
        QCOMPARE(message->text(), QString("Warning: The output files will contain gaps."));
        QCOMPARE(message->pos(), QPoint(20, 20));
        QCOMPARE(message->width(), 350);
        QCOMPARE(message->alignment() & Qt::AlignHorizontal_Mask, Qt::Alignment(Qt::AlignHCenter));

        QPushButton const* const ok = window.button("warnOkButton");
        QCOMPARE(ok->parent(), static_cast<QObject*>(dialog));
        QCOMPARE(ok->text(), QString("Ok"));
        QCOMPARE(ok->pos(), QPoint(280, 50));
        QCOMPARE(ok->width(), 100);

        QPushButton const* const cancel = window.button("warnCancelButton");
        QCOMPARE(cancel->parent(), static_cast<QObject*>(dialog));
        QCOMPARE(cancel->text(), QString("Cancel"));
        QCOMPARE(cancel->pos(), QPoint(180, 50));
        QCOMPARE(cancel->width(), 100);
    }

    void showsAnEvenGreyBeforeAFileIsRead()
    {
        TestWindow window;
        QWidget* const preview = window.preview();
        QCOMPARE(preview->size(), QSize(500, 280));
        QImage const picture = preview->grab().toImage();
        for (QPoint const place : {QPoint(0, 0), QPoint(250, 140), QPoint(275, 140), QPoint(499, 279)}) {
            QColor const color = picture.pixelColor(place);
            QVERIFY2(qAbs(color.red() - 128) <= 1, qPrintable(color.name()));
            QCOMPARE(color.green(), color.red());
            QCOMPARE(color.blue(), color.red());
        }
    }

    void hasItsSlotsInOrder()
    {
        QMetaObject const& meta = Controller::staticMetaObject;
        QStringList slotsFound;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QMetaMethod const method = meta.method(i);
            QCOMPARE(method.methodType(), QMetaMethod::Slot);
            slotsFound.append(QString(method.methodSignature()) + " " + method.parameterNames().join(","));
        }
        QCOMPARE(
            slotsFound,
            QStringList({"handleOpenFileButton() ", "handleWarnOkButton() ", "handleWarnCancelButton() ",
                         "namechanged() ", "devicechanged(int) newindex", "pagepresetchanged(int) newindex",
                         "pagewidthchanged() ", "pageheightchanged() ", "pagetopchanged() ", "pagerightchanged() ",
                         "pagebottomchanged() ", "pageleftchanged() ", "patchsizechanged(int) newvalue",
                         "radioepsclicked() ", "radiotiffclicked() ", "cliptocontentclicked() ", "handleButton() "}));
    }

private:
    static void addFonts()
    {
        QTest::addColumn<double>("points");
        for (double points : {9.0, 10.0, 11.0, 13.0, 18.0, 30.0})
            QTest::newRow(qPrintable(QString("%1 points").arg(points))) << points;
    }
};

QTEST_MAIN(WindowLooksTest)
#include "WindowLooksTest.moc"
