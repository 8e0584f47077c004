// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The command's files against those of the window, for all that both can choose.

#include "command/Run.h"

#include "StartedCommand.h"
#include "command/Choices.h"
#include "input/InputFile.h"
#include "layout/SheetAxis.h"
#include "making/ChartFiles.h"
#include "making/ChartMaking.h"
#include "support/ChartCase.h"
#include "support/DecimalCommaLocale.h"
#include "support/TargetTable.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <map>

// Thousands of files are written here; it does not matter whether they are on the disk.
extern "C" int fsync(int)
{
    return 0;
}

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

Files filesOf(fs::path const& folder)
{
    Files files;
    for (std::string const& name : filesIn(folder))
        files[name] = withoutCreationTime(bytesOf(folder / name));
    return files;
}

// What the window's controls are set to.
struct Controls
{
    int device = 0;
    int paper = 0;
    int slider = 8;
    bool clips = false;
    std::vector<ImageKind const*> kinds = {&epsImages};
    std::optional<std::array<double, 4>> margins; ///< top, right, bottom, left
};

class WindowFilesTest : public testing::Test
{
protected:
    WindowFilesTest() { setenv("HOME", work.path().c_str(), 1); }

    // As the window does it, step by step.
    Files windowFiles(String const& table, Controls const& controls) const
    {
        ChartLayout chart;
        chart.setDirection(mirrored);
        chart.setPatchSize({8, 8});
        chart.setPageLayout(paper(a4Portrait));
        chart.setName(String("Chart"));
        chart.setMeasurementLayout(instrument(static_cast<MeasurementLayoutPreset>(controls.device)));
        PageLayout sheet = paper(static_cast<PageLayoutPreset>(controls.paper));
        if (controls.margins) {
            auto const [top, right, bottom, left] = *controls.margins;
            SheetAxis across{sheet.getSize().width, sheet.getContent().x, sheet.getContent().width};
            SheetAxis up{sheet.getSize().height, sheet.getContent().y, sheet.getContent().height};
            up.setFarMargin(top);
            across.setFarMargin(right);
            up.setNearMargin(bottom);
            across.setNearMargin(left);
            sheet.setContent({across.start, up.start, across.extent, up.extent});
        }
        chart.setPageLayout(sheet);
        RealSize const smallest = chart.getMeasurementLayout().getMinPatchSize();
        double const side = controls.slider;
        chart.setPatchSize({std::max(smallest.width, side), std::max(smallest.height, side)});
        chart.setClipToContent(controls.clips);
        InputFile input;
        EXPECT_TRUE(input.init(table));
        chart.setColorSpace(input.getColorSpace());
        chart.setOriginalEntries(input.getEntries());
        makeChart(chart);
        if (!chart.hasSomethingToOutpot())
            return {};
        fs::path const folder = work.path() / "window" / "Chart";
        fs::remove_all(folder);
        fs::create_directories(folder);
        EXPECT_FALSE(writeChartFiles(chart, String(folder.c_str()), String("Chart.xml"), controls.kinds));
        return filesOf(folder);
    }

    Files commandFiles(String const& table, Controls const& controls) const
    {
        fs::path const parent = work.path() / "command";
        fs::remove_all(parent);
        fs::create_directories(parent);
        Choices const choices = builtInChoices();
        std::string formats;
        for (ImageKind const* kind : controls.kinds)
            formats += (formats.empty() ? "" : ",") + std::string(kind->name);
        std::vector<std::string> arguments = {"chart",
                                              table.getNullTerminatedString(),
                                              "-q",
                                              "-n",
                                              "Chart",
                                              "-o",
                                              parent.string(),
                                              "-d",
                                              choices.devices[static_cast<std::size_t>(controls.device)].id,
                                              "-p",
                                              choices.papers[static_cast<std::size_t>(controls.paper)].name,
                                              "-s",
                                              std::to_string(controls.slider),
                                              "-f",
                                              formats};
        if (controls.clips)
            arguments.emplace_back("--clip");
        if (controls.margins) {
            std::string margins;
            for (double const margin : *controls.margins)
                margins += (margins.empty() ? "" : ",") + millimetreText(margin);
            arguments.insert(arguments.end(), {"-m", margins});
        }
        return run(arguments) == 0 ? filesOf(parent / "Chart") : Files{};
    }

    static std::string millimetreText(double length)
    {
        int const tenths = static_cast<int>(length * 10);
        return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    }

    void expectSame(String const& table, Controls const& controls, bool hasRoom = true) const
    {
        Files const window = windowFiles(table, controls);
        EXPECT_EQ(window.empty(), !hasRoom);
        EXPECT_TRUE(commandFiles(table, controls) == window)
            << measurementlayout_strings[controls.device] << ", " << pagelayoutpreset_strings[controls.paper] << ", "
            << controls.slider << " mm, " << (controls.clips ? "clipped" : "whole");
    }

    TemporaryFolder const work;
    String const tables[2] = {work.write("rgb.txt", rgbTable(110)), work.write("cmyk.txt", cmykTable(150))};
    String const smallTables[2] = {work.write("small-rgb.txt", rgbTable(20)),
                                   work.write("small-cmyk.txt", cmykTable(31))};
};

} // namespace

TEST_F(WindowFilesTest, AreTheCommandsForEachDevicePaperAndSize)
{
    for (int device = 0; device < 4; ++device)
        for (int sheet = a4Portrait; sheet <= letterLandscape; ++sheet)
            for (int const slider : {6, 8, 12})
                for (bool const clips : {false, true})
                    for (String const& table : tables)
                        expectSame(table, {device, sheet, slider, clips, {&epsImages}, std::nullopt});
}

TEST_F(WindowFilesTest, AreTheCommandsForBothFormatsOnSmallPapers)
{
    for (int device = 0; device < 4; ++device)
        for (int sheet : {creditCardPortrait, creditCardLandscape})
            for (int const slider : {6, 8, 12})
                for (bool const clips : {false, true})
                    for (String const& table : smallTables)
                        expectSame(table, {device, sheet, slider, clips, {&epsImages, &tiffImages}, std::nullopt});
}

TEST_F(WindowFilesTest, AreTheCommandsWithGapsAndMargins)
{
    std::string greys = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < 60; ++i)
        greys += std::to_string(i) + " " + std::to_string(i) + " " + std::to_string(2 * i) + "\n";
    String const table = work.write("greys.txt", greys);
    for (int device = 0; device < 4; ++device)
        for (auto const& margins : {std::array{12.3, 7.1, 20.7, 4.9}, std::array{0.0, 0.0, 0.0, 0.0}})
            expectSame(table, {device, a4Landscape, 9, false, {&epsImages}, margins});
}

TEST_F(WindowFilesTest, AreTheCommandsUnderADecimalCommaLocale)
{
    Controls const controls{longRuler, letterPortrait, 9, true, {&epsImages}, std::array{12.3, 7.1, 20.7, 4.9}};
    Files const window = windowFiles(tables[1], controls);
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    EXPECT_FALSE(window.empty());
    EXPECT_EQ(commandFiles(tables[1], controls), window);
}
