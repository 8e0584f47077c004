// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a viewer sees: EPS sheets rendered by another program, and TIFF sheets read back.

#include "OutputPage.h"

#include "support/ChartCase.h"
#include "support/Picture.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// One sheet of a chart in both kinds of image, and the places of everything on it.
struct PaintedSheet
{
    OutputPage const* page;
    RealRect block; // of patches and gaps, mm
    RealSize pitch; // from patch to patch, mm
    Picture eps;
    Picture tiff;
};

// A chart of a fixture folder, written and rendered.
class PaintedChart : public testing::TestWithParam<std::filesystem::path>
{
protected:
    void SetUp() override
    {
        chart.layout.setName(String("chart"));
        ASSERT_TRUE(chart.layout.writeOutputFile(folder.pathOf("chart.xml")));
        ASSERT_TRUE(chart.layout.writeOutputImagesEPS(folder.pathWithSlash()));
        ASSERT_TRUE(chart.layout.writeOutputImagesTIFF(folder.pathWithSlash()));
        for (TargetPatch const& patch : readTargetTable(folder.path() / "chart.xml"))
            table[patch.location] = patch.values;

        int number = chart.layout.countOutputPages();
        ASSERT_GT(number, 0);
        Array<ChartPage> const& pages = *chart.layout.getChartPages();
        for (unsigned long long i = 0; i < pages.getCount(); ++i) {
            Array<OutputPage> const& outputPages = *pages[i].getOutputPages();
            for (unsigned long long j = 0; j < outputPages.getCount(); ++j)
                if (outputPages[j].hasPatches())
                    paint(outputPages[j], number--);
        }
    }

    void paint(OutputPage const& page, int number)
    {
        std::string const name = (folder.path() / "chart_00").string() + std::to_string(number);
        RealSize const gap = page.getGapSize();
        PaintedSheet sheet{&page,
                           page.getContentRect(),
                           {page.getPatchSize().width + gap.width, page.getPatchSize().height + gap.height},
                           {},
                           readTiff(name + ".tif")};
        sheet.eps = renderEps(name + ".eps", chart.layout.getColorSpace(), {sheet.tiff.width, sheet.tiff.height});
        ASSERT_GT(sheet.tiff.width, 0);
        ASSERT_EQ(sheet.eps.width, sheet.tiff.width);
        ASSERT_EQ(sheet.eps.height, sheet.tiff.height);
        ASSERT_EQ(sheet.eps.channels, sheet.tiff.channels);
        if (chart.layout.getClipToContent()) {
            RealBorder const border = chart.layout.getBorderForAdditionalInfo();
            RealBorder const margin = chart.layout.getMeasurementLayout().getMinMargin();
            sheet.block.x = border.left + margin.left;
            sheet.block.y = border.bottom + margin.bottom;
        }
        sheets.push_back(sheet);
    }

    // A patch of a sheet, mm.
    static RealRect patchAt(PaintedSheet const& sheet, int column, int row)
    {
        RealSize const patch = sheet.page->getPatchSize();
        return {sheet.block.x + column * sheet.pitch.width, sheet.block.y + row * sheet.pitch.height, patch.width,
                patch.height};
    }

    // A patch's channels from the target description, as bytes with a fraction.
    std::vector<double> tableBytes(PaintedSheet const& sheet, int column, int row) const
    {
        IntRect const coordinates = sheet.page->getCoordRect();
        std::string const label = chart.layout.getCoordinateXString(coordinates.x + column).getNullTerminatedString();
        std::string const rowLabel = chart.layout.getCoordinateYString(coordinates.y + row).getNullTerminatedString();
        double const full = chart.layout.getColorSpace() == CMYK ? 100 : 255;
        std::vector<double> bytes;
        for (std::string const& value : table.at(label + rowLabel))
            bytes.push_back(std::clamp(std::atof(value.c_str()) / full, 0.0, 1.0) * 255);
        return bytes;
    }

    // The label colour, full black.
    Picture::Pixel black() const
    {
        return chart.layout.getColorSpace() == CMYK ? Picture::Pixel{0, 0, 0, 255} : Picture::Pixel{0, 0, 0};
    }

    Picture::Pixel red() const
    {
        return chart.layout.getColorSpace() == CMYK ? Picture::Pixel{0, 255, 255, 0} : Picture::Pixel{255, 0, 0};
    }

    TemporaryFolder folder;
    ChartCase chart{GetParam()};
    std::map<std::string, std::vector<std::string>> table;
    std::vector<PaintedSheet> sheets;
};

int toPixel(double millimetres)
{
    return static_cast<int>(std::floor(millimetres * 300 / 25.4));
}

// The mean place of an area's pixels of one colour, mm, and their number.
struct Ink
{
    RealPos centre{0, 0};
    int pixels = 0;
};

Ink inkIn(Picture const& picture, RealRect area, Picture::Pixel const& colour)
{
    Ink ink;
    for (int y = toPixel(area.y); y < toPixel(area.y + area.height); ++y)
        for (int x = toPixel(area.x); x < toPixel(area.x + area.width); ++x)
            if (picture.at(x, y) == colour) {
                ink.centre.x += x + 0.5;
                ink.centre.y += y + 0.5;
                ++ink.pixels;
            }
    ink.centre.x *= 25.4 / 300 / std::max(ink.pixels, 1);
    ink.centre.y *= 25.4 / 300 / std::max(ink.pixels, 1);
    return ink;
}

// Whether all pixels wholly inside an area, mm, have the colour of its centre.
bool isUniform(Picture const& picture, RealRect area)
{
    Picture::Pixel const colour = picture.at(RealPos{area.x + area.width / 2, area.y + area.height / 2});
    for (int y = toPixel(area.y) + 1; y < toPixel(area.y + area.height); ++y)
        for (int x = toPixel(area.x) + 1; x < toPixel(area.x + area.width); ++x)
            if (picture.at(x, y) != colour)
                return false;
    return true;
}

bool areAlike(Picture::Pixel const& a, Picture::Pixel const& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](int p, int q) { return std::abs(p - q) <= 1; });
}

// Whether a pixel, or one of the eight around it, has a colour.
bool isNear(Picture const& picture, int x, int y, Picture::Pixel const& colour)
{
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (areAlike(picture.at(x + dx, y + dy), colour))
                return true;
    return false;
}

} // namespace

TEST_P(PaintedChart, ShowsEachPatchOfTheTargetDescriptionAtItsCentre)
{
    for (PaintedSheet const& sheet : sheets)
        for (int column = 0; column < sheet.page->getPatchesPerPage().width; ++column)
            for (int row = 0; row < sheet.page->getPatchesPerPage().height; ++row) {
                RealRect const patch = patchAt(sheet, column, row);
                RealPos const centre{patch.x + patch.width / 2, patch.y + patch.height / 2};
                std::vector<double> const expected = tableBytes(sheet, column, row);
                Picture::Pixel const eps = sheet.eps.at(centre);
                Picture::Pixel const tiff = sheet.tiff.at(centre);
                ASSERT_EQ(tiff.size(), expected.size());
                for (std::size_t i = 0; i < expected.size(); ++i) {
                    // An EPS renderer rounds. In CMYK it has a method of its own.
                    EXPECT_NEAR(eps[i], expected[i], chart.layout.getColorSpace() == CMYK ? 1 : 0.51);
                    EXPECT_EQ(tiff[i], static_cast<int>(expected[i])) << column << ' ' << row << ' ' << i;
                }
            }
}

TEST_P(PaintedChart, DrawsNothingElseOnThePatches)
{
    for (PaintedSheet const& sheet : sheets)
        for (int column = 0; column < sheet.page->getPatchesPerPage().width; ++column)
            for (int row = 0; row < sheet.page->getPatchesPerPage().height; ++row) {
                EXPECT_TRUE(isUniform(sheet.eps, patchAt(sheet, column, row))) << column << ' ' << row;
                EXPECT_TRUE(isUniform(sheet.tiff, patchAt(sheet, column, row))) << column << ' ' << row;
            }
}

TEST_P(PaintedChart, HasLabelsAboveItsColumnsAndBesideItsRows)
{
    for (PaintedSheet const& sheet : sheets)
        for (Picture const* picture : {&sheet.eps, &sheet.tiff}) {
            double const above = sheet.block.y + sheet.block.height + sheet.page->getMinMargin().top;
            for (int column = 0; column < sheet.page->getPatchesPerPage().width; ++column) {
                double const left = sheet.block.x + column * sheet.pitch.width;
                Ink const ink = inkIn(*picture, {left, above + 0.5, sheet.pitch.width, 5.5}, black());
                EXPECT_GT(ink.pixels, 100) << column;
                EXPECT_NEAR(ink.centre.x, left + sheet.pitch.width / 2, 1.5) << column;
                EXPECT_NEAR(ink.centre.y, above + 3, 1.5) << column;
            }
            double const besides = sheet.block.x - sheet.page->getMinMargin().left;
            for (int row = 0; row < sheet.page->getPatchesPerPage().height; ++row) {
                double const bottom = sheet.block.y + row * sheet.pitch.height;
                Ink const ink = inkIn(*picture, {besides - 12, bottom, 11.5, sheet.pitch.height}, black());
                EXPECT_GT(ink.pixels, 100) << row;
                EXPECT_NEAR(ink.centre.y, bottom + sheet.pitch.height / 2, 1) << row;
            }
            Ink const number = inkIn(*picture, {besides - 12, above + 0.5, 8, 5.5}, red());
            EXPECT_GT(number.pixels, 100);
            EXPECT_NEAR(number.centre.y, above + 3, 1.5);
        }
}

TEST_P(PaintedChart, HasRedCrossesAroundThePatches)
{
    for (PaintedSheet const& sheet : sheets)
        for (Picture const* picture : {&sheet.eps, &sheet.tiff}) {
            RealRect const& block = sheet.block;
            double const low = block.y - sheet.page->getGapSize().height;
            struct
            {
                RealPos centre;
                RealPos outwards;
            } const crosses[] = {{{block.x - 0.25, low - 0.25}, {-1, -1}},
                                 {{block.x - 0.25, block.y + block.height + 0.25}, {-1, 1}},
                                 {{block.x + block.width + 0.25, block.y + block.height + 0.25}, {1, 1}},
                                 {{block.x + block.width + 0.25, low - 0.25}, {1, -1}}};
            for (auto const& [centre, outwards] : crosses) {
                EXPECT_EQ(picture->at(centre), red());
                EXPECT_EQ(picture->at(RealPos{centre.x + 1.3 * outwards.x, centre.y}), red());
                EXPECT_EQ(picture->at(RealPos{centre.x, centre.y + 1.3 * outwards.y}), red());
                EXPECT_NE(picture->at(RealPos{centre.x + 1.8 * outwards.x, centre.y}), red());
                EXPECT_NE(picture->at(RealPos{centre.x + 0.9 * outwards.x, centre.y + 0.9 * outwards.y}), red());
            }
        }
}

TEST_P(PaintedChart, IsTheSameDrawingInBothKindsOfImage)
{
    for (PaintedSheet const& sheet : sheets) {
        // Everything except the texts: their typefaces differ.
        RealRect const& block = sheet.block;
        double const above = std::min(2.0, sheet.page->getMinMargin().top + 0.5);
        int different = 0;
        for (int y = toPixel(block.y - 4); y < toPixel(block.y + block.height + above); ++y)
            for (int x = toPixel(block.x - 1.7); x < toPixel(block.x + block.width + 3); ++x) {
                Picture::Pixel const eps = sheet.eps.at(x, y);
                Picture::Pixel const tiff = sheet.tiff.at(x, y);
                if (!areAlike(eps, tiff) && !(isNear(sheet.tiff, x, y, eps) && isNear(sheet.eps, x, y, tiff)))
                    ++different;
            }
        EXPECT_EQ(different, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(, PaintedChart, testing::ValuesIn(chartCases()),
                         [](auto const& test) { return caseName(test.param); });
