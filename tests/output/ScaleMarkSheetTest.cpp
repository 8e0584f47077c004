// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The marks of 100 mm on whole sheets: clear of everything else, and as long in a rendering as they should be.

#include "SheetFiles.h"

#include "support/ChartCase.h"
#include "support/DrawnSheet.h"
#include "support/Picture.h"
#include "support/RandomChart.h"
#include "support/ReadPDF.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

SheetOptions const marked{{}, true};

struct Box
{
    double left;
    double right;
    double bottom;
    double top;
};

bool overlap(Box const& a, Box const& b)
{
    constexpr double exactly = 1e-5;
    return a.left < b.right - exactly && b.left < a.right - exactly && a.bottom < b.top - exactly &&
           b.bottom < a.top - exactly;
}

Box boxOf(RealRect r)
{
    return {r.x, r.x + r.width, r.y, r.y + r.height};
}

// A character of Courier is 0.6 of its type wide. Those of the charts' labels have no descenders but for some letters.
Box boxOf(DrawnSheet::Text const& text)
{
    double const width = 0.6 * text.height * static_cast<double>(text.text.size());
    return {text.position.x, text.position.x + width, text.position.y - 0.2 * text.height,
            text.position.y + 0.8 * text.height};
}

Box growing(Box const& box, double by)
{
    return {box.left - by, box.right + by, box.bottom - by, box.top + by};
}

// How many marks the chart's sheets have. They are as long as they should be and touch nothing.
int countClearMarks(ChartLayout& chart)
{
    TemporaryFolder const plain;
    TemporaryFolder const withMarks;
    EXPECT_FALSE(writeSheets(epsImages, chart, plain.pathWithSlash()));
    EXPECT_FALSE(writeSheets(epsImages, chart, withMarks.pathWithSlash(), {}, marked));
    int count = 0;
    for (std::string const& name : filesIn(plain.path())) {
        DrawnSheet const before = readSheet(plain.path() / name);
        DrawnSheet const after = readSheet(withMarks.path() / name);
        EXPECT_GE(after.rectangles.size(), before.rectangles.size());
        std::vector<Box> marks;
        for (std::size_t i = before.rectangles.size(); i < after.rectangles.size(); ++i)
            marks.push_back(boxOf(after.rectangles[i].rect));
        for (std::size_t i = before.texts.size(); i < after.texts.size(); ++i) {
            EXPECT_EQ(after.texts[i].text, "100 mm");
            EXPECT_EQ(after.texts[i].height, 3);
            marks.push_back(boxOf(after.texts[i]));
        }
        RealSize const page{before.page.width / 72 * 25.4, before.page.height / 72 * 25.4};
        for (Box const& mark : marks) {
            EXPECT_GE(mark.left, -1e-5);
            EXPECT_LE(mark.right, page.width + 1e-3);
            EXPECT_LE(mark.top, page.height + 1e-3);
            for (DrawnSheet::Rectangle const& other : before.rectangles)
                EXPECT_FALSE(overlap(growing(mark, 0.25), boxOf(other.rect)));
            for (DrawnSheet::Text const& other : before.texts)
                EXPECT_FALSE(overlap(mark, boxOf(other))) << other.text;
        }
        for (std::size_t i = before.rectangles.size(); i < after.rectangles.size(); i += 3) {
            RealRect const line = after.rectangles[i].rect;
            EXPECT_NEAR(std::max(line.width, line.height), 100, 2e-6);
            ++count;
        }
    }
    return count;
}

} // namespace

TEST(ScaleMarkSheet, IsClearOfEverythingOnEveryPaperWithEveryDevice)
{
    int marks = 0;
    for (int preset = 0; preset <= creditCardLandscape; ++preset)
        for (int device = 0; device <= longRuler; ++device)
            for (float const gap : {0.0F, 1.0F})
                for (bool const clips : {false, true})
                    for (int const count : {30, 700}) {
                        auto entries = distinctEntries(CMYK, count);
                        ChartLayout chart = chartOf(entries, instrument(static_cast<MeasurementLayoutPreset>(device)),
                                                    paper(static_cast<PageLayoutPreset>(preset)), {8, 8});
                        chart.computeLayout(gap, 0);
                        chart.setClipToContent(clips);
                        chart.setName(String("Chart"));
                        SCOPED_TRACE(testing::Message() << "paper " << preset << ", device " << device << ", gap "
                                                        << gap << ", clips " << clips << ", patches " << count);
                        marks += countClearMarks(chart);
                    }
    EXPECT_GT(marks, 100);
}

TEST(ScaleMarkSheet, IsClearOfEverythingOnSheetsOfAnySize)
{
    int marks = 0;
    for (unsigned number = 0; number < 200; ++number) {
        RandomChart chart{RandomSettings(number)};
        SCOPED_TRACE(testing::PrintToString(chart.settings));
        marks += countClearMarks(chart.layout);
    }
    EXPECT_GT(marks, 40);
}

namespace
{

// A chart on A4 with room for both marks.
class MeasuredMarkTest : public testing::TestWithParam<ColorSpace>
{
protected:
    MeasuredMarkTest()
    {
        chart.computeLayout(0, 0);
        chart.setName(String("Chart"));
        std::vector<NumberedSheet> const sheets = sheetsOf(chart);
        EXPECT_EQ(sheets.size(), 1u);
        frame = frameOf(sheets.at(0), chart, marked);
    }

    // Measures both marks in a picture. Their ends lie within a pixel of their places.
    void expectMarksIn(Picture const& picture, double resolution) const
    {
        ASSERT_GT(picture.width, 0);
        ASSERT_TRUE(frame.scaleMark.across && frame.scaleMark.up);
        double const pixels = resolution / 25.4;
        double const middle = 25.4 / 144;
        RealPos const across = frame.scaleMark.across.value_or(RealPos());
        RealPos const up = frame.scaleMark.up.value_or(RealPos());
        expectRun(picture, static_cast<int>((across.y + middle) * pixels), true, across.x * pixels, 100 * pixels);
        expectRun(picture, static_cast<int>((up.x + middle) * pixels), false, up.y * pixels, 100 * pixels);
    }

    void expectRun(Picture const& picture, int line, bool isAcross, double start, double length) const
    {
        auto const isBlack = [&](int i) { return (isAcross ? picture.at(i, line) : picture.at(line, i)) == black(); };
        int first = static_cast<int>(start + length / 2);
        int past = first;
        while (isBlack(first - 1))
            --first;
        while (isBlack(past))
            ++past;
        EXPECT_NEAR(first, start, 1);
        EXPECT_NEAR(past, start + length, 1);
    }

    Picture::Pixel black() const { return GetParam() == CMYK ? Picture::Pixel{0, 0, 0, 255} : Picture::Pixel{0, 0, 0}; }

    TemporaryFolder folder;
    GrowingArray<ColorEntry> entries = distinctEntries(GetParam(), 60);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {8, 8});
    SheetFrame frame;
};

} // namespace

TEST_P(MeasuredMarkTest, IsExactIn100MillimetresOfEps)
{
    ASSERT_FALSE(writeSheets(epsImages, chart, folder.pathWithSlash(), {}, marked));
    expectMarksIn(renderEps(folder.path() / "Chart_001.eps", GetParam(), pixelsOf({210, 297})), 300);
}

TEST_P(MeasuredMarkTest, IsExactIn100MillimetresOfPdf)
{
    ASSERT_FALSE(writeSheets(pdfImages, chart, folder.pathWithSlash(), {}, marked));
    expectMarksIn(renderPdf(folder.path() / "Chart.pdf", 1, GetParam(), pixelsOf({210, 297})), 300);
}

TEST_P(MeasuredMarkTest, IsExactIn100MillimetresOfTiff)
{
    for (TIFFFormat const format :
         {TIFFFormat{300, TIFFCompression::none}, TIFFFormat{300, TIFFCompression::lzw},
          TIFFFormat{72, TIFFCompression::none}, TIFFFormat{150, TIFFCompression::deflate},
          TIFFFormat{304.8, TIFFCompression::lzw}, TIFFFormat{600, TIFFCompression::deflate}}) {
        ASSERT_FALSE(writeSheets(tiffImages, chart, folder.pathWithSlash(), {}, {format, true}));
        expectMarksIn(readTiff(folder.path() / "Chart_001.tif"), format.resolution);
    }
}

TEST_P(MeasuredMarkTest, PutsInkOnlyOnBarePaper)
{
    // What changes with the mark was paper, and all of it is black now.
    ASSERT_FALSE(writeSheets(tiffImages, chart, folder.pathWithSlash()));
    Picture const before = readTiff(folder.path() / "Chart_001.tif");
    ASSERT_FALSE(writeSheets(tiffImages, chart, folder.pathWithSlash(), {}, marked));
    Picture const after = readTiff(folder.path() / "Chart_001.tif");
    ASSERT_EQ(after.bytes.size(), before.bytes.size());
    Picture::Pixel const white = GetParam() == CMYK ? Picture::Pixel{0, 0, 0, 0} : Picture::Pixel{255, 255, 255};
    int changed = 0;
    for (std::size_t i = 0; i < before.bytes.size(); i += static_cast<std::size_t>(before.channels))
        if (!std::equal(&before.bytes[i], &before.bytes[i] + before.channels, &after.bytes[i])) {
            ++changed;
            auto const pixel = static_cast<int>(i) / before.channels;
            int const x = pixel % before.width;
            int const y = before.height - 1 - pixel / before.width;
            ASSERT_EQ(before.at(x, y), white) << x << ' ' << y;
            ASSERT_EQ(after.at(x, y), black()) << x << ' ' << y;
        }
    // Two lines of 1181 pixels, four or five thick, and their ticks and texts.
    EXPECT_GT(changed, 2 * 1181 * 4);
    EXPECT_LT(changed, 2 * 1181 * 7);
}

INSTANTIATE_TEST_SUITE_P(, MeasuredMarkTest, testing::Values(CMYK, RGB),
                         [](auto const& test) { return test.param == CMYK ? "CMYK" : "RGB"; });
