// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From a table of patches to the files that are printed and measured. The settings are those of a chart made in the
// window: the standard target, the long ruler, A3 paper and patches of 7 x 8 mm.

#include "ChartLayout.h"
#include "InputFile.h"
#include "support/ChartCase.h"
#include "support/DecimalCommaLocale.h"
#include "support/DrawnSheet.h"
#include "support/GeometryValues.h"
#include "support/Picture.h"
#include "support/ProfileColours.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Each;
using testing::ElementsAre;

char const* const exampleFile = PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt";

// The chart files in a folder: their bytes by name, without the time of writing.
std::map<std::string, std::string> chartFilesIn(std::filesystem::path const& folder)
{
    std::map<std::string, std::string> files;
    for (std::string const& name : filesIn(folder))
        if (name.ends_with(".xml") || name.ends_with(".eps"))
            files[name] = withoutCreationTime(bytesOf(folder / name));
    return files;
}

// A chart that a user makes, and its folder.
class ExampleChart
{
public:
    explicit ExampleChart(float gap)
    {
        EXPECT_TRUE(input.init(String(exampleFile)));
        layout.setMeasurementLayout(instrument(longRuler));
        layout.setPageLayout(paper(a3Portrait));
        layout.setPatchSize({7, 8});
        layout.setName(String("New Chart"));
        layout.setColorSpace(input.getColorSpace());
        layout.setOriginalEntries(input.getEntries());
        smallestDifference = layout.computeLayout(gap, 0);
        EXPECT_TRUE(layout.writeOutputFile(folder.pathOf("New Chart.xml")));
        EXPECT_TRUE(layout.writeOutputImagesEPS(folder.pathWithSlash()));
    }

    std::filesystem::path fileOf(std::string const& end) const { return folder.path() / ("New Chart" + end); }
    std::vector<TargetPatch> table() const { return readTargetTable(fileOf(".xml")); }

    TemporaryFolder folder;
    ChartLayout layout;
    float smallestDifference = 0;

private:
    InputFile input;
};

// The colours along each column of a chart, from paper to paper, in the order of its target description.
std::vector<std::vector<ProfileColours::Lab>> columnsOf(ExampleChart const& chart)
{
    ProfileColours const colours(CMYK);
    std::vector<std::vector<ProfileColours::Lab>> columns;
    std::string label;
    for (TargetPatch const& patch : chart.table()) {
        std::string const letters = patch.location.substr(0, patch.location.find_first_of("0123456789"));
        if (columns.empty() || letters != label) {
            if (!columns.empty())
                columns.back().push_back(colours.ofPaper());
            columns.push_back({colours.ofPaper()});
            label = letters;
        }
        columns.back().push_back(colours.of(patch.values));
    }
    if (!columns.empty())
        columns.back().push_back(colours.ofPaper());
    return columns;
}

class WholeChart : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        withoutGaps = std::make_unique<ExampleChart>(0.0F);
        withGaps = std::make_unique<ExampleChart>(1.0F);
    }

    static void TearDownTestSuite()
    {
        withoutGaps.reset();
        withGaps.reset();
    }

    static std::unique_ptr<ExampleChart> withoutGaps;
    static std::unique_ptr<ExampleChart> withGaps;
};

std::unique_ptr<ExampleChart> WholeChart::withoutGaps;
std::unique_ptr<ExampleChart> WholeChart::withGaps;

class ChartFixtures : public testing::TestWithParam<std::filesystem::path>
{
};

} // namespace

TEST_F(WholeChart, FillsOnePageOf36ColumnsAnd46Rows)
{
    // The paper's content of 287 x 400 mm less 18 x 8 mm for labels leaves 269 x 392 mm at (21, 17); the ruler keeps
    // 12.5 mm above and 6.5 mm below, which leaves 373 mm from 23.5 on. So 38 columns of 7 mm and 46 rows of 8 mm fit.
    // 35 columns would hold 1610 of the 1617 patches, 36 hold 1656.
    ChartLayout& layout = withoutGaps->layout;
    EXPECT_EQ(layout.getChartPagesSize(), (IntSize{1, 1}));
    EXPECT_EQ(layout.getPatchesX(), 36);
    EXPECT_EQ(layout.getPatchesY(), 46);
    ASSERT_EQ(layout.getChartPages()->getCount(), 1u);
    OutputPage const& sheet = (*(*layout.getChartPages())[0].getOutputPages())[0];
    EXPECT_EQ(sheet.getContentRect(), (RealRect{21, 23.5, 252, 368}));

    auto const lines = linesOf(bytesOf(withoutGaps->fileOf(".xml")));
    for (char const* line : {"\t<patches>1656</patches>", "\t<pages>1</pages>", "\t<rows>46</rows>",
                             "\t<columns>36</columns>", "\t<width>252.00mm</width>", "\t<height>368.00mm</height>",
                             "\t<verticalGap>0.00mm</verticalGap>", "NUMBER_OF_SETS\t1656"})
        EXPECT_THAT(lines, testing::Contains(line));
}

TEST_F(WholeChart, FillsTwoPagesOf20ColumnsAnd41RowsWithGaps)
{
    // 373 mm hold 41 rows of 9 mm; 38 x 41 cells are too few for one page. On two pages, 19 columns would hold 1558 of
    // the 1617 patches, 20 hold 1640. The gap moves the block up by 1 mm.
    ChartLayout& layout = withGaps->layout;
    EXPECT_EQ(layout.getChartPagesSize(), (IntSize{2, 1}));
    EXPECT_EQ(layout.getPatchesX(), 40);
    EXPECT_EQ(layout.getPatchesY(), 41);
    ASSERT_EQ(layout.getChartPages()->getCount(), 2u);
    for (unsigned long long page = 0; page < 2; ++page) {
        OutputPage const& sheet = (*(*layout.getChartPages())[page].getOutputPages())[0];
        EXPECT_EQ(sheet.getContentRect(), (RealRect{21, 24.5, 140, 369}));
        EXPECT_EQ(sheet.getCoordRect(), (IntRect{page == 0 ? 0 : 20, 0, 20, 41}));
    }

    auto const lines = linesOf(bytesOf(withGaps->fileOf(".xml")));
    for (char const* line : {"\t<patches>1640</patches>", "\t<pages>2</pages>", "\t<rows>41</rows>",
                             "\t<columns>20</columns>", "\t<width>140.00mm</width>", "\t<height>370.00mm</height>",
                             "\t<verticalGap>1.00mm</verticalGap>", "NUMBER_OF_SETS\t1640"})
        EXPECT_THAT(lines, testing::Contains(line));
}

TEST_F(WholeChart, HasOneNumberedSheetForEachPage)
{
    EXPECT_THAT(filesIn(withoutGaps->folder.path()), ElementsAre("New Chart.xml", "New Chart_001.eps"));
    EXPECT_THAT(filesIn(withGaps->folder.path()),
                ElementsAre("New Chart.xml", "New Chart_001.eps", "New Chart_002.eps"));
}

TEST_F(WholeChart, IsDescribedInWellFormedXml)
{
    for (ExampleChart const* chart : {withoutGaps.get(), withGaps.get()}) {
        std::string const command = "xmllint --noout '" + chart->fileOf(".xml").string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
}

TEST_F(WholeChart, HoldsEachPatchOfTheInputOnceAndWhiteInTheOtherCells)
{
    std::vector<std::string> expected = linesOf(bytesOf(exampleFile));
    expected.erase(expected.begin());
    std::erase(expected, "");
    ASSERT_EQ(expected.size(), 1617u);
    std::sort(expected.begin(), expected.end());

    for (ExampleChart const* chart : {withoutGaps.get(), withGaps.get()}) {
        std::vector<std::string> data;
        for (TargetPatch const& patch : chart->table()) {
            ASSERT_EQ(patch.values.size(), 4u);
            if (patch.control == "N")
                data.push_back(patch.values[0] + ' ' + patch.values[1] + ' ' + patch.values[2] + ' ' + patch.values[3]);
            else
                EXPECT_THAT(patch.values, Each("0"));
        }
        std::sort(data.begin(), data.end());
        EXPECT_EQ(data, expected);
    }
    EXPECT_EQ(withoutGaps->table().size(), 1656u);
    EXPECT_EQ(withGaps->table().size(), 1640u);
}

TEST_F(WholeChart, LabelsEachCellOnce)
{
    for (ExampleChart const* chart : {withoutGaps.get(), withGaps.get()}) {
        std::vector<TargetPatch> const table = chart->table();
        std::set<std::string> labels;
        for (std::size_t i = 0; i < table.size(); ++i) {
            labels.insert(table[i].location);
            EXPECT_EQ(table[i].sampleId, static_cast<int>(i) + 1);
        }
        EXPECT_EQ(labels.size(), table.size());
        ASSERT_FALSE(table.empty());
    }
    EXPECT_EQ(withoutGaps->table().front().location, "A1");
    EXPECT_EQ(withoutGaps->table().back().location, "j46"); // column 36
    EXPECT_EQ(withGaps->table().back().location, "n41");    // column 40
}

TEST_F(WholeChart, DiffersAlongTheScanByTheReportedDifference)
{
    for (ExampleChart const* chart : {withoutGaps.get(), withGaps.get()}) {
        double smallest = 1000;
        auto const columns = columnsOf(*chart);
        EXPECT_EQ(columns.size(), chart == withoutGaps.get() ? 36u : 40u);
        for (auto const& column : columns)
            for (std::size_t i = 1; i < column.size(); ++i)
                smallest = std::min(smallest, deltaE(column[i - 1], column[i]));
        EXPECT_NEAR(smallest, chart->smallestDifference, 0.02);
        EXPECT_GT(smallest, 1);
    }
}

TEST_F(WholeChart, HasBlackGapsBetweenLightPatchesAndWhiteOnesBetweenDarkPatches)
{
    auto const columns = columnsOf(*withGaps);
    ASSERT_EQ(columns.size(), 40u);
    std::map<std::pair<int, int>, DrawnSheet::Colour> drawn[2];
    for (int number : {1, 2})
        for (auto const& [rect, colour] :
             readSheet(withGaps->fileOf("_00" + std::to_string(number) + ".eps")).rectangles)
            if (std::abs(rect.width - 7) < 0.001 && std::abs(rect.height - 1) < 0.001)
                drawn[number - 1][{static_cast<int>(std::lround((rect.x - 21) / 7)),
                                   static_cast<int>(std::lround((rect.y - 23.5) / 9))}] = colour;

    int white = 0;
    for (int column = 0; column < 40; ++column)
        for (int gap = 0; gap <= 41; ++gap) {
            auto const& lab = columns[static_cast<std::size_t>(column)];
            auto const i = static_cast<std::size_t>(gap);
            double const lightness = (lab[i][0] + lab[i + 1][0]) / 2;
            // The table starts at the last column and its last row: sheet 1 has the last 20 columns.
            auto const& gaps = drawn[column < 20 ? 0 : 1];
            auto const found = gaps.find({19 - column % 20, 41 - gap});
            ASSERT_NE(found, gaps.end()) << column << ' ' << gap;
            if (std::abs(lightness - 50) > 0.05) // closer, the program's single precision decides
            {
                EXPECT_THAT(found->second, ElementsAre(0, 0, 0, lightness > 50 ? 1 : 0)) << column << ' ' << gap;
            }
            white += found->second.back() == 0;
        }
    EXPECT_GT(white, 0);
}

TEST_F(WholeChart, ShowsEveryPatchOfTheTableOnItsSheets)
{
    std::map<std::string, std::vector<std::string>> table;
    for (TargetPatch const& patch : withGaps->table())
        table[patch.location] = patch.values;

    IntSize const pixels = pixelsOf({297, 420});
    for (int number : {1, 2}) {
        Picture const picture = renderEps(withGaps->fileOf("_00" + std::to_string(number) + ".eps"), CMYK, pixels);
        ASSERT_EQ(picture.width, 3507);
        ASSERT_EQ(picture.height, 4960);
        for (int column = 0; column < 20; ++column)
            for (int row = 0; row < 41; ++row) {
                int const x = number == 2 ? column : 20 + column;
                std::string const label = withGaps->layout.getCoordinateXString(x).getNullTerminatedString();
                std::string const location = label + std::to_string(41 - row);
                Picture::Pixel const pixel = picture.at(RealPos{21 + column * 7 + 3.5, 24.5 + row * 9 + 4});
                for (std::size_t i = 0; i < 4; ++i)
                    EXPECT_NEAR(pixel[i], std::stod(table.at(location)[i]) * 2.55, 1.01) << location;
            }
    }
}

TEST_F(WholeChart, IsTheSameOnEveryRun)
{
    EXPECT_EQ(chartFilesIn(ExampleChart(0).folder.path()), chartFilesIn(withoutGaps->folder.path()));
}

TEST_F(WholeChart, IsTheSameUnderADecimalCommaLocale)
{
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    ExampleChart const chart(1);
    ASSERT_TRUE(german.isInForce());
    EXPECT_EQ(chartFilesIn(chart.folder.path()), chartFilesIn(withGaps->folder.path()));
    EXPECT_EQ(chart.smallestDifference, withGaps->smallestDifference);
}

TEST_P(ChartFixtures, HaveTheExpectedFilesUnderADecimalCommaLocaleToo)
{
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    ChartCase chart(GetParam());
    TemporaryFolder const folder;
    EXPECT_TRUE(chart.layout.writeOutputFile(folder.pathOf("expected.xml")));
    chart.layout.setName(String("expected"));
    EXPECT_TRUE(chart.layout.writeOutputImagesEPS(folder.pathWithSlash()));
    EXPECT_EQ(chartFilesIn(folder.path()), chartFilesIn(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(, ChartFixtures, testing::ValuesIn(chartCases()),
                         [](auto const& test) { return caseName(test.param); });
