// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Properties of every chart's files, read back over hundreds of settings.

#include "support/ChartCase.h"
#include "support/DrawnSheet.h"
#include "support/GeometryValues.h"
#include "support/Picture.h"
#include "support/ProfileColours.h"
#include "support/RandomChart.h"
#include "support/StringText.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Contains;
using testing::ElementsAreArray;

// A chart and the files that it was written to.
class WrittenChart
{
public:
    explicit WrittenChart(RandomSettings const& settings) : chart(settings)
    {
        chart.layout.writeOutputFile(folder.pathOf("Chart.xml"));
        table = readTargetTable(folder.path() / "Chart.xml");
    }

    std::filesystem::path fileOf(int number, std::string const& suffix) const
    {
        std::string const digits = std::to_string(number);
        return folder.path() /
               ("Chart_" + std::string(3 - std::min<std::size_t>(digits.size(), 3), '0') + digits + suffix);
    }

    // The sheets with patches, in the order of their numbers from the highest down to 1.
    std::vector<OutputPage const*> sheets() const
    {
        std::vector<OutputPage const*> found;
        for (ChartPage const& page : *chart.layout.getChartPages())
            for (OutputPage const& sheet : *page.getOutputPages())
                if (sheet.getCoordRect().width > 0 && sheet.getCoordRect().height > 0)
                    found.push_back(&sheet);
        return found;
    }

    std::string locationOf(int x, int y) const
    {
        return textOf(chart.layout.getCoordinateXString(x)) + textOf(chart.layout.getCoordinateYString(y));
    }

    RandomChart chart;
    TemporaryFolder folder;
    std::vector<TargetPatch> table;
};

// Checks the files of charts with chosen settings. The choice may change the settings. A failure names them.
template <typename Look, typename Choice>
void forEachWrittenChart(unsigned howMany, Look look, Choice isChosen)
{
    unsigned written = 0;
    for (unsigned number = 0; written < howMany; ++number) {
        RandomSettings settings(number);
        if (!isChosen(settings))
            continue;
        SCOPED_TRACE(testing::Message() << number << ": " << testing::PrintToString(settings));
        WrittenChart const chart(settings);
        if (!chart.chart.layout.hasSomethingToOutpot())
            continue;
        ++written;
        look(chart);
    }
}

// The same for all settings.
template <typename Look>
void forEachWrittenChart(unsigned howMany, Look look)
{
    forEachWrittenChart(howMany, look, [](RandomSettings const&) { return true; });
}

std::vector<std::string> textsOf(ColorEntry const& entry)
{
    std::vector<std::string> texts;
    for (String const& value : entry.getValues())
        texts.push_back(textOf(value));
    return texts;
}

// The drawn device values, from 0 to 1, with the digits of an EPS file.
DrawnSheet::Colour drawnColour(ColorSpace colorSpace, std::vector<std::string> const& values)
{
    DrawnSheet::Colour colour;
    for (std::string const& value : values)
        colour.push_back(std::round(std::stod(value) / (colorSpace == CMYK ? 100 : 255) * 1e6) / 1e6);
    return colour;
}

bool isNear(double a, double b)
{
    return std::abs(a - b) < 1e-5;
}

// The rectangles that have a patch's size.
std::vector<DrawnSheet::Rectangle> patchesOn(DrawnSheet const& sheet, RealSize patch)
{
    std::vector<DrawnSheet::Rectangle> patches;
    for (DrawnSheet::Rectangle const& rectangle : sheet.rectangles)
        if (isNear(rectangle.rect.width, patch.width) && isNear(rectangle.rect.height, patch.height))
            patches.push_back(rectangle);
    return patches;
}

// The labels of a patch's column and row; empty if there are none. A sheet's texts start with the labels of the
// columns, 1 mm right of their middle. Then come the labels of the rows, 1.8 mm below their middle, and the sheet's
// number.
std::string labelsAt(DrawnSheet const& sheet, IntRect block, RealRect const& patch, RealSize gap)
{
    if (sheet.texts.size() != static_cast<std::size_t>(block.width + block.height + 1))
        return "";
    auto const rows = sheet.texts.begin() + block.width;
    auto const column = std::find_if(sheet.texts.begin(), rows, [&](DrawnSheet::Text const& text) {
        double const middle = text.position.x + 2.4 * static_cast<double>(text.text.size()) - 1;
        return isNear(middle, patch.x + (patch.width + gap.width) / 2);
    });
    auto const row = std::find_if(rows, sheet.texts.end() - 1, [&](DrawnSheet::Text const& text) {
        return isNear(text.position.y + 1.8, patch.y + (patch.height + gap.height) / 2);
    });
    return column == rows || row == sheet.texts.end() - 1 ? "" : column->text + row->text;
}

// The number of the last rectangle that covers each pixel, rows from the top; -1 for none. A place beyond an edge
// counts as on the edge. A run past the right edge continues in the next row, up to the last pixel.
std::vector<int> coveringRectangles(DrawnSheet const& sheet, IntSize size)
{
    auto const toPixel = [](double millimetres) { return static_cast<int>(std::floor(millimetres * 300 / 25.4)); };
    int const pixels = size.width * size.height;
    std::vector<int> covering(static_cast<std::size_t>(pixels), -1);
    for (std::size_t i = 0; i < sheet.rectangles.size(); ++i) {
        RealRect const rect = sheet.rectangles[i].rect;
        int const left = toPixel(rect.x);
        int const run = toPixel(rect.x + rect.width) - left;
        for (int y = toPixel(rect.y); y < toPixel(rect.y + rect.height); ++y) {
            int const row = size.height - 1 - std::clamp(y, 0, size.height - 1);
            int const first = row * size.width + std::clamp(left, 0, size.width - 1);
            std::fill(covering.begin() + first, covering.begin() + std::min(first + run, pixels), static_cast<int>(i));
        }
    }
    return covering;
}

// Whether a pixel has a colour, apart from the rounding of its last digits.
bool isPainted(Picture::Pixel const& pixel, DrawnSheet::Colour const& colour)
{
    return std::equal(pixel.begin(), pixel.end(), colour.begin(), colour.end(), [](int byte, double channel) {
        return byte >= std::floor(channel * 255 - 0.01) && byte <= std::floor(channel * 255 + 0.01);
    });
}

// The smallest delta E between a patch and the next one of its column, and between the column's ends and the paper.
double smallestDifference(WrittenChart const& written)
{
    ProfileColours const colours(written.chart.settings.colorSpace);
    auto const rows = static_cast<std::size_t>(written.chart.layout.getPatchesY());
    double smallest = 1000;
    for (std::size_t i = 0; i < written.table.size(); i += rows) {
        ProfileColours::Lab last = colours.ofPaper();
        for (std::size_t j = i; j < i + rows; ++j) {
            TargetPatch const& patch = written.table.at(j);
            ProfileColours::Lab const colour = patch.control == "N" ? colours.of(patch.values) : colours.ofPaper();
            smallest = std::min(smallest, deltaE(last, colour));
            last = colour;
        }
        smallest = std::min(smallest, deltaE(last, colours.ofPaper()));
    }
    return smallest;
}

// Whether a chart's rasters are painted quickly.
bool isSmall(RandomSettings const& settings)
{
    RealSize const paper = settings.paper.getSize();
    return paper.width * paper.height < 5000 && settings.entries < 100;
}

void expectPaintedAsDrawn(WrittenChart const& written)
{
    written.chart.layout.writeOutputImagesEPS(written.folder.pathWithSlash());
    written.chart.layout.writeOutputImagesTIFF(written.folder.pathWithSlash());
    // Paper, or a label's ink.
    std::vector<Picture::Pixel> const around =
        written.chart.settings.colorSpace == CMYK
            ? std::vector<Picture::Pixel>{{0, 0, 0, 0}, {0, 0, 0, 255}, {0, 255, 255, 0}}
            : std::vector<Picture::Pixel>{{255, 255, 255}, {0, 0, 0}, {255, 0, 0}};
    for (int number = written.chart.layout.countOutputPages(); number > 0; --number) {
        DrawnSheet const drawn = readSheet(written.fileOf(number, ".eps"));
        Picture const picture = readTiff(written.fileOf(number, ".tif"));
        IntSize const size = pixelsOf({drawn.page.width * 25.4 / 72, drawn.page.height * 25.4 / 72});
        ASSERT_EQ((IntSize{picture.width, picture.height}), size);
        std::vector<int> const covering = coveringRectangles(drawn, size);
        int wrong = 0;
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                int const rectangle = covering[static_cast<std::size_t>((size.height - 1 - y) * size.width + x)];
                Picture::Pixel const pixel = picture.at(x, y);
                bool const isRight =
                    rectangle < 0 ? std::find(around.begin(), around.end(), pixel) != around.end()
                                  : isPainted(pixel, drawn.rectangles[static_cast<std::size_t>(rectangle)].colour);
                wrong += isRight ? 0 : 1;
            }
        EXPECT_EQ(wrong, 0) << "sheet " << number;
    }
}

} // namespace

TEST(AnyChartsFiles, HoldEachPatchOfTheInputOnce)
{
    forEachWrittenChart(600, [](WrittenChart const& written) {
        std::vector<std::vector<std::string>> expected;
        for (ColorEntry const& entry :
             distinctEntries(written.chart.settings.colorSpace, written.chart.settings.entries))
            expected.push_back(textsOf(entry));
        std::vector<std::vector<std::string>> found;
        std::string const unprinted = written.chart.settings.colorSpace == CMYK ? "0" : "255";
        for (TargetPatch const& patch : written.table)
            if (patch.control == "N")
                found.push_back(patch.values);
            else
                EXPECT_EQ(patch.values, std::vector<std::string>(patch.values.size(), unprinted));
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
    });
}

TEST(AnyChartsFiles, LabelEachCellOnceAndAgreeOnTheirCount)
{
    forEachWrittenChart(600, [](WrittenChart const& written) {
        std::set<std::string> labels;
        int sampleId = 0;
        for (TargetPatch const& patch : written.table) {
            labels.insert(patch.location);
            EXPECT_EQ(patch.sampleId, ++sampleId);
        }
        EXPECT_EQ(labels.size(), written.table.size());

        ChartLayout const& layout = written.chart.layout;
        std::string const cells = std::to_string(layout.getPatchesX() * layout.getPatchesY());
        IntRect const block = (*layout.getChartPages())[0].getCoordRect();
        std::vector<std::string> const lines = linesOf(bytesOf(written.folder.path() / "Chart.xml"));
        EXPECT_EQ(std::to_string(sampleId), cells);
        for (std::string const& line : {"NUMBER_OF_SETS\t" + cells, "\t<patches>" + cells + "</patches>",
                                        "\t<pages>" + std::to_string(layout.getChartPagesCount()) + "</pages>",
                                        "\t<rows>" + std::to_string(block.height) + "</rows>",
                                        "\t<columns>" + std::to_string(block.width) + "</columns>"})
            EXPECT_THAT(lines, Contains(line));
        EXPECT_EQ(block.width * block.height * layout.getChartPagesCount(), sampleId);
    });
}

TEST(AnyChartsFiles, AreNumberedFromOneToTheCountOfSheets)
{
    forEachWrittenChart(300, [](WrittenChart const& written) {
        written.chart.layout.writeOutputImagesEPS(written.folder.pathWithSlash());
        std::vector<std::string> expected{"Chart.xml"};
        for (int number = 1; number <= written.chart.layout.countOutputPages(); ++number)
            expected.push_back(written.fileOf(number, ".eps").filename().string());
        std::sort(expected.begin(), expected.end());
        EXPECT_THAT(filesIn(written.folder.path()), ElementsAreArray(expected));
        EXPECT_EQ(written.sheets().size() + 1, expected.size());
    });
}

TEST(AnyChartsFiles, ShowEveryVisibleCellOnceInTheColourOfItsLabel)
{
    forEachWrittenChart(300, [](WrittenChart const& written) {
        written.chart.layout.writeOutputImagesEPS(written.folder.pathWithSlash());
        std::map<std::string, DrawnSheet::Colour> described;
        for (TargetPatch const& patch : written.table)
            described[patch.location] = drawnColour(written.chart.settings.colorSpace, patch.values);
        std::map<std::string, DrawnSheet::Colour> expected;
        std::map<std::string, DrawnSheet::Colour> shown;
        int number = written.chart.layout.countOutputPages();
        for (OutputPage const* const sheet : written.sheets()) {
            IntRect const block = sheet->getCoordRect();
            DrawnSheet const drawn = readSheet(written.fileOf(number--, ".eps"));
            std::vector<DrawnSheet::Rectangle> const patches = patchesOn(drawn, sheet->getPatchSize());
            EXPECT_EQ(patches.size(), static_cast<std::size_t>(block.width) * static_cast<std::size_t>(block.height));
            for (DrawnSheet::Rectangle const& patch : patches) {
                std::string const location = labelsAt(drawn, block, patch.rect, sheet->getGapSize());
                EXPECT_TRUE(shown.emplace(location, patch.colour).second) << location;
            }
            for (int x = block.x; x < block.x + block.width; ++x)
                for (int y = block.y; y < block.y + block.height; ++y)
                    expected[written.locationOf(x, y)] = described[written.locationOf(x, y)];
        }
        EXPECT_EQ(shown, expected);
        for (TargetPatch const& patch : written.table)
            EXPECT_TRUE(patch.control == "I" || shown.contains(patch.location)) << patch.location;
    });
}

TEST(AnyChartsFiles, PaintTheirDrawingOnARaster)
{
    forEachWrittenChart(20, expectPaintedAsDrawn, isSmall);
}

TEST(AnyChartsFiles, StayWithinARasterThatIsTooSmall)
{
    forEachWrittenChart(20, expectPaintedAsDrawn, [](RandomSettings& settings) {
        // A printable area that is partly beyond the paper, on any side.
        RealSize const size = settings.paper.getSize();
        RealRect content = settings.paper.getContent();
        content.x -= 25;
        content.y -= 15;
        settings.paper = sheetOf({size.width - 40, size.height - 30}, content);
        bool const isPaper = size.width > 41 && size.height > 31;
        return isPaper && isSmall(settings) && settings.instrument.getScanDirection() != none;
    });
}

TEST(AnyChartsFiles, ShowTheSmallestDifferenceThatTheChartReports)
{
    int arranged = 0;
    forEachWrittenChart(600, [&](WrittenChart const& written) {
        if (written.chart.settings.instrument.getScanDirection() != alongY)
            return;
        ++arranged;
        EXPECT_NEAR(written.chart.result, smallestDifference(written), 0.02);
    });
    EXPECT_GT(arranged, 200);
}
