// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QScreen>

namespace
{

// Greys that need gaps in every order.
char const greys[] = "RGB\n"
                     "90 90 90\n95 95 95\n100 100 100\n105 105 105\n110 110 110\n115 115 115\n"
                     "120 120 120\n125 125 125\n130 130 130\n135 135 135\n140 140 140\n145 145 145\n";

struct Scene
{
    char const* name;
    char const* device;
    char const* paper;
    char const* table;
    int patchSize;
    bool isClipped;
};

constexpr Scene scenes[] = {
    {"spot-portrait", "GB+ Spot", "A4 Portrait", "rgb-cube-897.txt", 8, false},
    {"spot-landscape", "GB+ Spot", "A4 Landscape", "rgb-cube-897.txt", 8, false},
    {"spot-cards", "GB+ Spot", "Credit Card Portrait", "rgb-cube-897.txt", 10, false},
    {"spot-pages", "GB+ Spot", "A3 Landscape", "it8.7-4-cmyk.txt", 15, false},
    {"spot-empty-sheet", "GB+ Spot", "A4 Portrait", "rgb-24.txt", 15, false},
    {"scan-portrait", "GB+ Scan", "A4 Portrait", "rgb-24.txt", 15, false},
    {"scan-landscape", "GB+ Scan", "A3 Landscape", "it8.7-4-cmyk.txt", 8, false},
    {"ruler-portrait", "VT-30 Standard Ruler", "A4 Portrait", "rgb-cube-897.txt", 8, false},
    {"ruler-landscape", "VT-30 Standard Ruler", "A4 Landscape", "rgb-24.txt", 15, false},
    {"ruler-pages", "VT-30 Standard Ruler", "Letter Portrait", "it8.7-4-cmyk.txt", 10, false},
    {"long-ruler-portrait", "VT-30 Long Ruler", "A3 Portrait", "it8.7-4-cmyk.txt", 8, false},
    {"long-ruler-landscape", "VT-30 Long Ruler", "A3 Landscape", "it8.7-4-cmyk.txt", 8, false},
    {"gaps", "VT-30 Standard Ruler", "Credit Card Landscape", nullptr, 8, false},
    {"clipped", "VT-30 Standard Ruler", "A4 Portrait", "rgb-cube-897.txt", 8, true},
    {"clipped-spot", "GB+ Spot", "A4 Portrait", "rgb-24.txt", 15, true},
};

} // namespace

/// The window with all kinds of charts. Writes their pictures into the folder "pictures" of the build.
class PreviewGalleryTest : public WindowTest
{
    Q_OBJECT

    QDir const pictures{QCoreApplication::applicationDirPath() + "/../pictures"};

    static QImage shot(QWidget const& window)
    {
        // The display shows the painted picture a moment later.
        QTest::qWait(100);
        return window.screen()->grabWindow(window.winId()).toImage();
    }

private slots:
    void initTestCase() { QVERIFY(pictures.mkpath(".")); }

    void showsTheMiddleGreyBeforeThereIsAFile()
    {
        TestWindow window;
        QImage const picture = shot(window);
        QVERIFY(picture.save(pictures.filePath("no-file.png")));
        QVERIFY(isAlike(picture.pixel(20, 300), middleGrey.rgb()));
        QVERIFY(isAlike(picture.pixel(270, 440), middleGrey.rgb()));
        QVERIFY(isAlike(picture.pixel(519, 579), middleGrey.rgb()));
    }

    void showsOnTheScreenWhatItDraws_data()
    {
        QTest::addColumn<int>("number");
        for (std::size_t i = 0; i < std::size(scenes); ++i)
            QTest::newRow(scenes[i].name) << static_cast<int>(i);
    }

    void showsOnTheScreenWhatItDraws()
    {
        QFETCH(int, number);
        Scene const& scene = scenes[number];
        TemporaryFolder const folder;
        TestWindow window;
        window.chooseDevice(scene.device);
        window.choosePaper(scene.paper);
        window.read(scene.table ? String(PATCHLOOM_EXAMPLES) + scene.table : folder.write("greys.txt", greys));
        if (scene.patchSize != window.slider()->value())
            drag(window.slider(), scene.patchSize);
        if (scene.isClipped)
            window.findChild<QCheckBox*>("clipCheckBox")->click();

        QImage const picture = shot(window);
        QVERIFY(picture.save(pictures.filePath(QString(scene.name) + ".png")));
        QVERIFY(window.button("createButton")->isEnabled());
        QImage const shown = picture.copy(20, 300, 500, 280);
        QImage const drawn = window.preview()->grab().toImage();
        QCOMPARE(drawn.size(), shown.size());
        int differing = 0;
        int colored = 0;
        for (int y = 0; y < 280; ++y) {
            for (int x = 0; x < 500; ++x) {
                differing += !isAlike(shown.pixel(x, y), drawn.pixel(x, y));
                colored += !isAlike(shown.pixel(x, y), middleGrey.rgb());
            }
        }
        QCOMPARE(differing, 0);
        QVERIFY(colored > 0);
    }
};

QTEST_MAIN(PreviewGalleryTest)
#include "PreviewGalleryTest.moc"
