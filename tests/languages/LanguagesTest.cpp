// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Catalogue.h"
#include "Translations.h"
#include "support/TemporaryFolder.h"
#include "window/DesktopFont.h"
#include "window/TestWindow.h"
#include "window/WindowTest.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QLocale>
#include <QProcess>

namespace
{

struct Place
{
    char const* widget;
    char const* property;
    char const* text;
    char const* comment;
    // Pixels up to the next widget, or 0 if the text is never shown.
    int room;
};

constexpr Place places[] = {
    {"inputLabel", "text", "Input File", "input file label", 180},
    {"fileNameLabel", "text", "No file selected", "input file filename display", 200},
    {"openButton", "text", "Open...", "Button which opens the input file", 100},
    {"nameLabel", "text", "Name", "name label", 180},
    {"nameEdit", "text", "New Chart", "first chart name", 190},
    {"deviceLabel", "text", "Device", "device label", 180},
    {"pageSizeLabel", "text", "Page size", "page size label", 180},
    {"marginsLabel", "text", "Page boundaries TRBL", "page boundaries label", 180},
    {"epsRadio", "text", "EPS", "EPS radio button", 50},
    {"tiffRadio", "text", "TIFF", "TIFF radio button", 90},
    {"clipCheckBox", "text", "Clip to content", "ClipToContent Checkbox", 180},
    {"createButton", "text", "Create Files...", "Button which creates the files", 140},
    {"warnLabel", "text", "Warning: The output files will contain gaps.", "gap warning message", 350},
    {"warnOkButton", "text", "Ok", "OK-Button for warn-dialog", 100},
    {"warnCancelButton", "text", "Cancel", "Cancel-Button for warn-dialog", 100},
    {"pageWidthEdit", "accessibleName", "Page width in mm", "page width, for screen readers", 0},
    {"pageHeightEdit", "accessibleName", "Page height in mm", "page height, for screen readers", 0},
    {"marginTopEdit", "accessibleName", "Top boundary in mm", "top margin, for screen readers", 0},
    {"marginRightEdit", "accessibleName", "Right boundary in mm", "right margin, for screen readers", 0},
    {"marginBottomEdit", "accessibleName", "Bottom boundary in mm", "bottom margin, for screen readers", 0},
    {"marginLeftEdit", "accessibleName", "Left boundary in mm", "left margin, for screen readers", 0},
    {"patchSizeSlider", "accessibleName", "Patch size in mm", "patch size slider, for screen readers", 0},
    {"warnSignLabel", "accessibleName", "The chart contains gaps", "warning sign, for screen readers", 0},
    {"preview", "accessibleName", "Chart preview", "preview, for screen readers", 0},
};

QString resources()
{
    return QCoreApplication::applicationDirPath() + "/../Resources";
}

} // namespace

/// The window in the language of the system's locale, which has a catalogue.
class LanguagesTest : public WindowTest
{
    Q_OBJECT

    QMap<SourceText, QString> catalogue;
    std::unique_ptr<Translations> translations;

    QString translated(char const* text, char const* comment) const
    {
        return catalogue.value({"Controller", text, comment});
    }

    /// Whether a visible label of a dialog shows a text.
    static bool showsText(QWidget const& dialog, QString const& text)
    {
        for (QLabel const* label : dialog.findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == text)
                return true;
        }
        return false;
    }

private slots:
    void initTestCase()
    {
        QString const locale = QLocale::system().name();
        for (QString const& name : {locale, locale.section('_', 0, 0)}) {
            if (catalogue.isEmpty())
                catalogue = readCatalogue(PATCHLOOM_TRANSLATIONS "myapp_" + name + ".ts");
        }
        QVERIFY2(!catalogue.isEmpty(), qPrintable(locale));
        QVERIFY(QDir::setCurrent(resources()));
        translations = std::make_unique<Translations>();
    }

    void cleanupTestCase() { translations.reset(); }

    void hasEveryTextOfTheSourcesAndNoOther()
    {
        TemporaryFolder const folder;
        QString const path = toQString(folder.pathOf("sources.ts"));
        QProcess lupdate;
        lupdate.start(PATCHLOOM_LUPDATE, {"-silent", PATCHLOOM_SOURCES, "-ts", path});
        QVERIFY(lupdate.waitForFinished());
        QCOMPARE(lupdate.exitCode(), 0);
        auto const sources = readCatalogue(path);
        QVERIFY(sources.contains(SourceText{"Controller", "Input File", "input file label"}));
        for (SourceText const& source : sources.keys())
            QVERIFY2(!catalogue.value(source).isEmpty(), qPrintable(source.text + ": " + source.comment));
        QCOMPARE(catalogue.size(), sources.size());
    }

    void showsEachTextInItsPlace_data()
    {
        QTest::addColumn<int>("place");
        for (int place = 0; place < static_cast<int>(std::size(places)); ++place)
            QTest::newRow(places[place].widget) << place;
    }

    void showsEachTextInItsPlace()
    {
        QFETCH(int, place);
        Place const& expected = places[place];
        QString const text = translated(expected.text, expected.comment);
        QVERIFY(!text.isEmpty());
        TestWindow window;
        auto const* const widget = window.findChild<QWidget*>(expected.widget);
        QVERIFY(widget);
        QCOMPARE(widget->property(expected.property).toString(), text);
        if (expected.room > 0)
            QVERIFY2(widget->sizeHint().width() <= expected.room || widget->inherits("QLineEdit"), qPrintable(text));
        QVERIFY2(widget->fontMetrics().horizontalAdvance(text) <= expected.room || expected.room == 0,
                 qPrintable(text));
    }

    void hasRoomForEachTextInEveryDesktopFont()
    {
        DesktopFont const font(30);
        TestWindow window;
        for (Place const& place : places) {
            auto const* const widget = window.findChild<QWidget*>(place.widget);
            if (place.room > 0 && !widget->isHidden() && !widget->inherits("QLineEdit"))
                QVERIFY2(widget->sizeHint().width() <= place.room, place.widget);
        }
    }

    void hasItsTitle()
    {
        TestWindow window;
        QCOMPARE(window.windowTitle(), translated("Patchloom", "Window title"));
    }

    void translatesTheFolderDialogAndTheMessageOfWriting()
    {
        TemporaryFolder const folder;
        QString const out = toQString(folder.pathWithSlash());
        TestWindow window;
        window.read(folder.write("table.txt", "RGB\n0 0 0\n255 0 0\n"));

        QString title;
        whenDialogOpens([&](QDialog& dialog) {
            title = dialog.windowTitle();
            takePath(dialog, out);
        });
        QString const writing = translated("Creating files...", "creating files message");
        ProgressReader reader(writing);
        click(window.button("createButton"));
        QCOMPARE(title, translated("Please select a directory.", "Save dialog text"));
        QVERIFY(reader.isShown);
        QVERIFY(reader.fits);
        QVERIFY(QFile::exists(out + translated("New Chart", "first chart name")));
    }

    void hasTheTextsOfQtInTheLanguage()
    {
        QVERIFY(QCoreApplication::translate("QFileDialog", "Look in:") != "Look in:");
    }

private:
    struct ProgressReader : QObject
    {
        explicit ProgressReader(QString const& expected) : text(expected) { qApp->installEventFilter(this); }

        QString text;
        bool isShown = false;
        bool fits = false;

    protected:
        bool eventFilter(QObject* object, QEvent* event) override
        {
            auto const* const dialog = qobject_cast<QDialog*>(object);
            if (dialog && event->type() == QEvent::Paint && showsText(*dialog, text)) {
                isShown = true;
                fits = dialog->findChild<QLabel*>()->sizeHint().width() <= 260;
            }
            return false;
        }
    };
};

QTEST_MAIN(LanguagesTest)
#include "LanguagesTest.moc"
