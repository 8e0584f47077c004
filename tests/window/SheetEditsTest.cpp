// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

namespace
{

constexpr int customPaper = 8;

} // namespace

/// Paper and margins.
class SheetEditsTest : public WindowTest
{
    Q_OBJECT

private slots:
    void showsThePaperThatIsChosen_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::newRow("A4 Landscape") << "297.0 210.0 5.0 15.0 5.0 5.0";
        QTest::newRow("A3 Portrait") << "297.0 420.0 5.0 5.0 15.0 5.0";
        QTest::newRow("A3 Landscape") << "420.0 297.0 5.0 15.0 5.0 5.0";
        QTest::newRow("Letter Portrait") << "216.0 279.0 5.0 5.0 15.0 5.0";
        QTest::newRow("Letter Landscape") << "279.0 216.0 5.0 15.0 5.0 5.0";
        QTest::newRow("Credit Card Portrait") << "54.0 85.0 0.0 0.0 0.0 0.0";
        QTest::newRow("Credit Card Landscape") << "85.0 54.0 0.0 0.0 0.0 0.0";
    }

    void showsThePaperThatIsChosen()
    {
        QFETCH(QString, shown);
        TestWindow window;
        window.choosePaper(QTest::currentDataTag());
        QCOMPARE(window.sheet(), shown);
        window.choosePaper("A4 Portrait");
        QCOMPARE(window.sheet(), QString("210.0 297.0 5.0 5.0 15.0 5.0"));
    }

    void doesNothingAtAllForCustomPaper()
    {
        TestWindow window;
        // Each change also rewrites the edits.
        window.edit("pageWidthEdit")->setText("untouched");
        window.choosePaper("Custom");
        QCOMPARE(window.combo("pagePresetCombo")->currentIndex(), customPaper);
        QCOMPARE(window.sheet(), QString("untouched 297.0 5.0 5.0 15.0 5.0"));
    }

    void takesANumber_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<QString>("edit");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("isCustom");

        // A4 Portrait: 210 x 297 with the content 5, 15, 200, 277.
        char const a4[] = "210.0 297.0 5.0 5.0 15.0 5.0";
        char const card[] = "54.0 85.0 0.0 0.0 0.0 0.0";
        auto const add = [](char const* test, QString const& paper, QString const& edit, QString const& typed,
                            QString const& shown,
                            bool isCustom) { QTest::newRow(test) << paper << edit << typed << shown << isCustom; };
        auto const onA4 = [&add](char const* test, QString const& edit, QString const& typed, QString const& shown,
                                 bool isCustom = false) { add(test, "A4 Portrait", edit, typed, shown, isCustom); };
        auto const onCard = [&add](char const* test, QString const& edit, QString const& typed, QString const& shown,
                                   bool isCustom = false) {
            add(test, "Credit Card Portrait", edit, typed, shown, isCustom);
        };

        onA4("a wider sheet keeps its margins", "pageWidthEdit", "300", "300.0 297.0 5.0 5.0 15.0 5.0", true);
        onA4("a narrower sheet keeps its margins", "pageWidthEdit", "100.5", "100.5 297.0 5.0 5.0 15.0 5.0", true);
        onA4("a sheet as wide as its margins keeps them", "pageWidthEdit", "10", "10.0 297.0 5.0 5.0 15.0 5.0", true);
        onA4("a sheet narrower than its margins loses them", "pageWidthEdit", "9", "9.0 297.0 5.0 0.0 15.0 0.0", true);
        onA4("the same width changes nothing", "pageWidthEdit", "210", a4);
        onA4("no width is 0", "pageWidthEdit", "0", a4);
        onA4("no width is negative", "pageWidthEdit", "-100", a4);
        onA4("a width is a number", "pageWidthEdit", "wide", a4);
        onA4("a width is something", "pageWidthEdit", "", a4);
        onA4("a width is not nan", "pageWidthEdit", "nan", a4);
        onA4("a unit is read over", "pageWidthEdit", "300 mm", "300.0 297.0 5.0 5.0 15.0 5.0", true);
        onA4("a comma ends the number", "pageWidthEdit", "300,5", "300.0 297.0 5.0 5.0 15.0 5.0", true);
        onA4("an exponent counts", "pageWidthEdit", "3e2", "300.0 297.0 5.0 5.0 15.0 5.0", true);

        onA4("a higher sheet keeps its margins", "pageHeightEdit", "400", "210.0 400.0 5.0 5.0 15.0 5.0", true);
        onA4("a lower sheet keeps its margins", "pageHeightEdit", "100", "210.0 100.0 5.0 5.0 15.0 5.0", true);
        onA4("a sheet as high as its margins keeps them", "pageHeightEdit", "20", "210.0 20.0 5.0 5.0 15.0 5.0", true);
        onA4("a sheet lower than its margins loses them", "pageHeightEdit", "19", "210.0 19.0 0.0 5.0 0.0 5.0", true);
        onA4("the same height changes nothing", "pageHeightEdit", "297.0", a4);
        onA4("no height is 0", "pageHeightEdit", "0", a4);
        onA4("no height is negative", "pageHeightEdit", "-1", a4);
        onA4("a height is a number", "pageHeightEdit", "x", a4);
        onA4("a height is something", "pageHeightEdit", "", a4);
        onA4("a height is not nan", "pageHeightEdit", "nan", a4);

        onA4("a wider top margin", "marginTopEdit", "20", "210.0 297.0 20.0 5.0 15.0 5.0");
        onA4("no top margin", "marginTopEdit", "0", "210.0 297.0 0.0 5.0 15.0 5.0");
        onA4("the same top margin", "marginTopEdit", "5", a4);
        onA4("no top margin is negative", "marginTopEdit", "-1", a4);
        onA4("a top margin that leaves a little", "marginTopEdit", "281.5", "210.0 297.0 281.5 5.0 15.0 5.0");
        onA4("a top margin that leaves nothing", "marginTopEdit", "282", "210.0 297.0 0.0 5.0 0.0 5.0");
        onA4("a top margin that leaves less than nothing", "marginTopEdit", "1000", "210.0 297.0 0.0 5.0 0.0 5.0");
        onA4("a top margin that is no number is 0", "marginTopEdit", "x", "210.0 297.0 0.0 5.0 15.0 5.0");
        onA4("an empty top margin is 0", "marginTopEdit", "", "210.0 297.0 0.0 5.0 15.0 5.0");
        onA4("a top margin is not nan", "marginTopEdit", "nan", a4);
        onA4("an endless top margin leaves nothing", "marginTopEdit", "inf", "210.0 297.0 0.0 5.0 0.0 5.0");

        onA4("a wider right margin", "marginRightEdit", "20", "210.0 297.0 5.0 20.0 15.0 5.0");
        onA4("no right margin", "marginRightEdit", "0", "210.0 297.0 5.0 0.0 15.0 5.0");
        onA4("the same right margin", "marginRightEdit", "5", a4);
        onA4("no right margin is negative", "marginRightEdit", "-1", a4);
        onA4("a right margin that leaves a little", "marginRightEdit", "204.5", "210.0 297.0 5.0 204.5 15.0 5.0");
        onA4("a right margin that leaves nothing", "marginRightEdit", "205", "210.0 297.0 5.0 0.0 15.0 0.0");
        onA4("a right margin that leaves less than nothing", "marginRightEdit", "1000", "210.0 297.0 5.0 0.0 15.0 0.0");
        onA4("a right margin that is no number is 0", "marginRightEdit", "x", "210.0 297.0 5.0 0.0 15.0 5.0");
        onA4("an empty right margin is 0", "marginRightEdit", "", "210.0 297.0 5.0 0.0 15.0 5.0");
        onA4("a right margin is not nan", "marginRightEdit", "nan", a4);
        onA4("an endless right margin leaves nothing", "marginRightEdit", "inf", "210.0 297.0 5.0 0.0 15.0 0.0");

        onA4("a wider bottom margin", "marginBottomEdit", "30", "210.0 297.0 5.0 5.0 30.0 5.0");
        onA4("no bottom margin", "marginBottomEdit", "0", "210.0 297.0 5.0 5.0 0.0 5.0");
        onA4("the same bottom margin", "marginBottomEdit", "15", a4);
        onA4("no bottom margin is negative", "marginBottomEdit", "-1", a4);
        onA4("a bottom margin that leaves a little", "marginBottomEdit", "291.5", "210.0 297.0 5.0 5.0 291.5 5.0");
        onA4("a bottom margin that leaves nothing", "marginBottomEdit", "292", "210.0 297.0 0.0 5.0 0.0 5.0");
        onA4("a bottom margin that leaves less than nothing", "marginBottomEdit", "1000",
             "210.0 297.0 0.0 5.0 0.0 5.0");
        onA4("a bottom margin that is no number is 0", "marginBottomEdit", "x", "210.0 297.0 5.0 5.0 0.0 5.0");
        onA4("an empty bottom margin is 0", "marginBottomEdit", "", "210.0 297.0 5.0 5.0 0.0 5.0");
        onA4("a bottom margin is not nan", "marginBottomEdit", "nan", a4);
        onA4("an endless bottom margin leaves nothing", "marginBottomEdit", "inf", "210.0 297.0 0.0 5.0 0.0 5.0");

        onA4("a wider left margin", "marginLeftEdit", "20", "210.0 297.0 5.0 5.0 15.0 20.0");
        onA4("no left margin", "marginLeftEdit", "0", "210.0 297.0 5.0 5.0 15.0 0.0");
        onA4("the same left margin", "marginLeftEdit", "5", a4);
        onA4("no left margin is negative", "marginLeftEdit", "-1", a4);
        onA4("a left margin that leaves a little", "marginLeftEdit", "204.5", "210.0 297.0 5.0 5.0 15.0 204.5");
        onA4("a left margin that leaves nothing", "marginLeftEdit", "205", "210.0 297.0 5.0 0.0 15.0 0.0");
        onA4("a left margin that leaves less than nothing", "marginLeftEdit", "1000", "210.0 297.0 5.0 0.0 15.0 0.0");
        onA4("a left margin that is no number is 0", "marginLeftEdit", "x", "210.0 297.0 5.0 5.0 15.0 0.0");
        onA4("an empty left margin is 0", "marginLeftEdit", "", "210.0 297.0 5.0 5.0 15.0 0.0");
        onA4("a left margin is not nan", "marginLeftEdit", "nan", a4);
        onA4("an endless left margin leaves nothing", "marginLeftEdit", "inf", "210.0 297.0 5.0 0.0 15.0 0.0");

        onCard("a left margin as wide as the content", "marginLeftEdit", "54", card);
        onCard("a left margin wider than the content", "marginLeftEdit", "60", card);
        onCard("a card narrower than its content", "pageWidthEdit", "10", "10.0 85.0 0.0 0.0 0.0 0.0", true);
    }

    void takesANumber()
    {
        QFETCH(QString, paper);
        QFETCH(QString, edit);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(bool, isCustom);
        TestWindow window;
        if (paper != "A4 Portrait")
            window.choosePaper(paper);
        int const paperBefore = window.combo("pagePresetCombo")->currentIndex();
        enter(window.edit(edit.toLatin1()), typed);
        QCOMPARE(window.sheet(), shown);
        QCOMPARE(window.combo("pagePresetCombo")->currentIndex(), isCustom ? customPaper : paperBefore);
    }

    void takesANumberWhenTheEditIsLeft()
    {
        TestWindow window;
        typeOver(window.edit("marginTopEdit"), "20");
        QTest::keyClick(window.edit("marginTopEdit"), Qt::Key_Tab);
        QCOMPARE(window.edit("marginTopEdit")->text(), QString("20.0"));
        typeOver(window.edit("marginLeftEdit"), "0");
        window.edit("nameEdit")->setFocus();
        QCOMPARE(window.edit("marginLeftEdit")->text(), QString("0.0"));
    }

    void restoresTheOldWidthForZero()
    {
        TestWindow window;
        enter(window.edit("pageWidthEdit"), "123.4");
        enter(window.edit("pageWidthEdit"), "0");
        QCOMPARE(window.edit("pageWidthEdit")->text(), QString("123.4"));
    }

    void keepsCustomPaperUntilOtherPaperIsChosen()
    {
        TestWindow window;
        enter(window.edit("pageWidthEdit"), "300");
        enter(window.edit("marginTopEdit"), "7");
        QCOMPARE(window.combo("pagePresetCombo")->currentText(), QString("Custom"));
        QCOMPARE(window.sheet(), QString("300.0 297.0 7.0 5.0 15.0 5.0"));
        window.choosePaper("A4 Portrait");
        QCOMPARE(window.sheet(), QString("210.0 297.0 5.0 5.0 15.0 5.0"));
    }

    void placesNothingOnEndlessPaper_data()
    {
        QTest::addColumn<QString>("width");
        QTest::newRow("infinite") << "inf";
        QTest::newRow("huge") << "1e300";
        QTest::newRow("narrow") << "0.001";
    }

    void placesNothingOnEndlessPaper()
    {
        QFETCH(QString, width);
        TemporaryFolder const folder;
        TestWindow window;
        window.read(folder.write("table.txt", "RGB\n0 0 0\n255 0 0\n"));
        QVERIFY(window.button("createButton")->isEnabled());
        window.chooseDevice("VT-30 Long Ruler");
        enter(window.edit("pageWidthEdit"), width);
        QCOMPARE(window.combo("pagePresetCombo")->currentIndex(), customPaper);
        QVERIFY(!window.button("createButton")->isEnabled());
        window.choosePaper("A4 Portrait");
        QVERIFY(window.button("createButton")->isEnabled());
    }
};

QTEST_MAIN(SheetEditsTest)
#include "SheetEditsTest.moc"
