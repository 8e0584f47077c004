// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartReading.h"

#include "ChartFiles.h"
#include "ChartMaking.h"
#include "output/SheetDrawing.h"
#include "support/ChartCase.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<DeviceCandidate> allDevices()
{
    std::vector<DeviceCandidate> devices;
    for (InstrumentPreset const& preset : instrumentPresets)
        devices.push_back({preset.name, preset});
    return devices;
}

std::vector<PaperCandidate> allPapers()
{
    std::vector<PaperCandidate> papers;
    for (int i = 0; i < custom; ++i)
        papers.push_back({paperPresets[i].name, paper(static_cast<PageLayoutPreset>(i))});
    return papers;
}

class ChartReadingTest : public testing::Test
{
protected:
    // Makes a chart named "Chart" of so many patches, and writes its files.
    ChartLayout made(int patches, MeasurementLayout const& device, PageLayout const& sheet, bool isClipped = false,
                     std::vector<ImageKind const*> const& kinds = {&epsImages}, GapRule rule = GapRule::automatic)
    {
        std::vector<std::string> lines;
        for (int i = 0; i < patches; ++i)
            lines.push_back(std::to_string(i * 37 % 101) + " " + std::to_string(i * 53 % 97) + " " +
                            std::to_string(i * 71 % 89) + " 0");
        entries = entriesOf(CMYK, lines);
        ChartLayout chart = chartOf(entries, device, sheet, {8, 8});
        chart.setColorSpace(CMYK);
        chart.setName(String("Chart"));
        chart.setClipToContent(isClipped);
        makeChart(chart, rule);
        EXPECT_FALSE(writeChartFiles(chart, folder.pathWithSlash(), String("Chart.xml"), kinds));
        return chart;
    }

    // Reads the chart, and compares every cell and every sheet's frame.
    void expectSame(ChartLayout const& chart)
    {
        ReadChart read;
        EXPECT_EQ(read.read(folder.path(), allDevices(), allPapers(), false).value_or(""), "");
        ChartLayout const& found = read.layout();
        ASSERT_EQ(found.getPatchesX(), chart.getPatchesX());
        ASSERT_EQ(found.getPatchesY(), chart.getPatchesY());
        for (int x = 0; x < chart.getPatchesX(); ++x)
            for (int y = 0; y < chart.getPatchesY(); ++y)
                expectSame(*found.getColorEntry({x, y}), *chart.getColorEntry({x, y}));
        ASSERT_EQ(found.countOutputPages(), chart.countOutputPages());
        for (int i = 0; i < chart.getChartPagesCount(); ++i) {
            auto const& pages = *(*chart.getChartPages())[i].getOutputPages();
            auto const& foundPages = *(*found.getChartPages())[i].getOutputPages();
            ASSERT_EQ(foundPages.getCount(), pages.getCount());
            for (unsigned long long k = 0; k < pages.getCount(); ++k)
                if (pages[k].hasPatches())
                    expectSame(frameOf(foundPages[k], found), frameOf(pages[k], chart));
        }
        EXPECT_EQ(textOf(found.getName()), "Chart");
    }

    static void expectSame(ColorEntry const& found, ColorEntry const& entry)
    {
        EXPECT_EQ(found.getStatus(), entry.getStatus());
        ASSERT_EQ(found.getValues().getCount(), entry.getValues().getCount());
        for (unsigned long long i = 0; i < entry.getValues().getCount(); ++i)
            EXPECT_EQ(textOf(found.getValues()[i]), textOf(entry.getValues()[i]));
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(found.getLab()[i], entry.getLab()[i]);
        if (ColorGap const* const gap = entry.getGap(Below)) {
            ASSERT_TRUE(found.getGap(Below));
            EXPECT_EQ(found.getGap(Below)->getSqDe(), gap->getSqDe());
            EXPECT_EQ(found.getGap(Below)->getOutColor()[3], gap->getOutColor()[3]);
        }
    }

    static void expectSame(SheetFrame const& found, SheetFrame const& frame)
    {
        EXPECT_NEAR(found.size.width, frame.size.width, 0.01);
        EXPECT_NEAR(found.size.height, frame.size.height, 0.01);
        EXPECT_NEAR(found.content.x, frame.content.x, 0.01);
        EXPECT_NEAR(found.content.y, frame.content.y, 0.01);
        EXPECT_EQ(found.coordRect.x, frame.coordRect.x);
        EXPECT_EQ(found.coordRect.y, frame.coordRect.y);
        EXPECT_EQ(found.coordRect.width, frame.coordRect.width);
        EXPECT_EQ(found.coordRect.height, frame.coordRect.height);
    }

    std::string faultOf(std::vector<DeviceCandidate> const& devices, std::vector<PaperCandidate> const& papers,
                        bool isPaperKnown = false) const
    {
        ReadChart read;
        return read.read(folder.path(), devices, papers, isPaperKnown).value_or("");
    }

    TemporaryFolder folder;
    GrowingArray<ColorEntry> entries;
};

} // namespace

TEST_F(ChartReadingTest, ReadsAScannedChartBack)
{
    expectSame(made(700, instrument(tableScan), paper(a4Portrait)));
}

TEST_F(ChartReadingTest, ReadsAChartWithGapsBack)
{
    expectSame(made(300, instrument(standardRuler), paper(a4Landscape), false, {&epsImages}, GapRule::always));
}

TEST_F(ChartReadingTest, ReadsSpotsOnSeveralSheetsBack)
{
    expectSame(made(1100, instrument(tableSpot), paper(a4Portrait)));
}

TEST_F(ChartReadingTest, ReadsAClippedChartBack)
{
    expectSame(made(120, instrument(tableSpot), paper(letterPortrait), true));
}

TEST_F(ChartReadingTest, ReadsAChartOnAPaperOfItsOwnBack)
{
    expectSame(made(400, instrument(tableScan), sheetOf({250, 333}, {10, 9, 232, 317})));
}

TEST_F(ChartReadingTest, ReadsAChartWithoutEpsSheetsBack)
{
    expectSame(made(200, instrument(tableSpot), paper(a4Portrait), false, {&tiffImages}));
}

TEST_F(ChartReadingTest, NamesAllDevicesThatGiveTheSameSheets)
{
    made(200, instrument(longRuler), paper(a4Portrait));
    ReadChart read;
    ASSERT_FALSE(read.read(folder.path(), allDevices(), allPapers(), false));
    EXPECT_THAT(read.devices(), ElementsAre("GB+ Scan", "VT-30 Standard Ruler", "VT-30 Long Ruler"));
    EXPECT_THAT(read.papers(), ElementsAre("A4 Portrait"));
}

TEST_F(ChartReadingTest, NamesAllPapersWhereNoSheetTellsThem)
{
    made(20, instrument(tableScan), paper(a4Portrait), false, {&tiffImages});
    ReadChart read;
    ASSERT_FALSE(read.read(folder.path(), allDevices(), allPapers(), false));
    EXPECT_THAT(read.papers(), Contains("A4 Portrait"));
    EXPECT_GT(read.papers().size(), 1U);
}

TEST_F(ChartReadingTest, TakesOnlyWhatIsNamed)
{
    made(700, instrument(tableScan), paper(a4Portrait));
    EXPECT_EQ(faultOf({allDevices()[1]}, {allPapers()[0]}, true), "");
    EXPECT_THAT(faultOf({allDevices()[0]}, {allPapers()[0]}, true), HasSubstr("no device and paper give this chart"));
    EXPECT_THAT(faultOf({allDevices()[1]}, {allPapers()[4]}, true), HasSubstr("no device and paper give this chart"));
}

TEST_F(ChartReadingTest, RefusesAFolderWithoutADescription)
{
    EXPECT_THAT(faultOf(allDevices(), allPapers()), HasSubstr("has no target description"));
}

TEST_F(ChartReadingTest, RefusesADamagedDescription)
{
    made(20, instrument(tableScan), paper(a4Portrait));
    std::string text = bytesOf(folder.path() / "Chart.xml");
    text.replace(text.find("\tA2\t"), 4, "\tA9\t");
    folder.write("Chart.xml", text);
    EXPECT_THAT(faultOf(allDevices(), allPapers()), HasSubstr("Chart.xml: its rows are not those of a chart"));
    folder.write("Chart.xml", text.substr(0, 100));
    EXPECT_THAT(faultOf(allDevices(), allPapers()), HasSubstr("Chart.xml: "));
}

TEST_F(ChartReadingTest, AMissingSheetIsNotOverlooked)
{
    made(700, instrument(tableScan), paper(a4Portrait));
    std::filesystem::remove(folder.path() / "Chart_002.eps");
    EXPECT_THAT(faultOf(allDevices(), allPapers()), HasSubstr("no device and paper give this chart"));
}
