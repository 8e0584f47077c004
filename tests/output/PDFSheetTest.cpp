// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Whole charts as PDF: against their tables, against their EPS sheets, and through other programs.

#include "SheetFiles.h"

#include "support/ChartCase.h"
#include "support/GeometryValues.h"
#include "support/Picture.h"
#include "support/RandomChart.h"
#include "support/ReadPDF.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::HasSubstr;

// What a shell command prints, with its messages; an exit status other than 0 fails the test.
std::string outputOf(std::string const& command)
{
    std::string text;
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    std::array<char, 4096> bytes{};
    for (std::size_t got = 1; got > 0; text.append(bytes.data(), got))
        got = std::fread(bytes.data(), 1, bytes.size(), pipe);
    EXPECT_EQ(pclose(pipe), 0) << command << '\n' << text;
    return text;
}

bool overlap(RealRect const& a, RealRect const& b)
{
    constexpr double exactly = 1e-5;
    return a.x < b.x + b.width - exactly && b.x < a.x + a.width - exactly && a.y < b.y + b.height - exactly &&
           b.y < a.y + a.height - exactly;
}

bool areEqual(RealRect const& a, RealRect const& b)
{
    constexpr double asPrinted = 2e-6;
    return std::abs(a.x - b.x) < asPrinted && std::abs(a.y - b.y) < asPrinted &&
           std::abs(a.width - b.width) < asPrinted && std::abs(a.height - b.height) < asPrinted;
}

int toPixel(double millimetres)
{
    return static_cast<int>(std::floor(millimetres * 300 / 25.4));
}

// How many pixels of an area have the colour of its centre. The area is a patch with a pixel around it.
int areaOf(Picture const& picture, RealRect const& patch)
{
    Picture::Pixel const colour = picture.at(RealPos{patch.x + patch.width / 2, patch.y + patch.height / 2});
    int count = 0;
    for (int y = toPixel(patch.y) - 1; y <= toPixel(patch.y + patch.height) + 1; ++y)
        for (int x = toPixel(patch.x) - 1; x <= toPixel(patch.x + patch.width) + 1; ++x)
            count += picture.at(x, y) == colour;
    return count;
}

// A chart of a fixture folder as PDF and EPS.
class PDFSheetTest : public testing::TestWithParam<std::filesystem::path>
{
protected:
    void SetUp() override
    {
        chart.layout.setName(String("chart"));
        ASSERT_TRUE(chart.layout.writeOutputFile(folder.pathOf("chart.xml")));
        ASSERT_FALSE(writeSheets(epsImages, chart.layout, folder.pathWithSlash(), {}, options));
        ASSERT_FALSE(writeSheets(pdfImages, chart.layout, folder.pathWithSlash(), {}, options));
        for (TargetPatch const& patch : readTargetTable(folder.path() / "chart.xml"))
            table[patch.location] = patch.values;
        ASSERT_FALSE(sheetsOf(chart.layout).empty());
    }

    std::filesystem::path pdf() const { return folder.path() / "chart.pdf"; }
    std::filesystem::path eps(int number) const
    {
        return folder.path() / ("chart_00" + std::to_string(number) + ".eps");
    }

    // Calls visit(label, rectangle) for each patch of a sheet.
    template <typename Visit>
    void visitPatches(NumberedSheet const& sheet, Visit const& visit) const
    {
        SheetFrame const frame = frameOf(*sheet.page, chart.layout);
        IntRect const& block = frame.coordRect;
        for (int column = 0; column < block.width; ++column)
            for (int row = 0; row < block.height; ++row) {
                String const label = chart.layout.getCoordinateXString(block.x + column) +
                                     chart.layout.getCoordinateYString(block.y + row);
                visit(std::string(label.begin(), label.end()),
                      RealRect{frame.content.x + column * (frame.patch.width + frame.gap.width),
                               frame.content.y + row * (frame.patch.height + frame.gap.height), frame.patch.width,
                               frame.patch.height});
            }
    }

    TemporaryFolder folder;
    ChartCase chart{GetParam()};
    SheetOptions const options{{}, true};
    std::map<std::string, std::vector<std::string>> table;
};

} // namespace

TEST_P(PDFSheetTest, PaintsEachPatchInTheTablesColourAndNothingOnIt)
{
    ReadPDF read(pdf());
    std::size_t seen = 0;
    for (NumberedSheet const& sheet : sheetsOf(chart.layout)) {
        DrawnSheet const drawn = read.drawing(static_cast<std::size_t>(sheet.number - 1));
        visitPatches(sheet, [&](std::string const& label, RealRect const& patch) {
            auto const last = std::find_if(drawn.rectangles.rbegin(), drawn.rectangles.rend(),
                                           [&](auto const& drawing) { return overlap(drawing.rect, patch); });
            ASSERT_NE(last, drawn.rectangles.rend()) << label;
            EXPECT_TRUE(areEqual(last->rect, patch)) << label;
            std::vector<std::string> const& values = table.at(label);
            ASSERT_EQ(last->colour.size(), values.size());
            double const full = chart.layout.getColorSpace() == CMYK ? 100 : 255;
            for (std::size_t i = 0; i < values.size(); ++i)
                EXPECT_NEAR(last->colour[i], std::clamp(std::atof(values[i].c_str()) / full, 0.0, 1.0), 6e-11) << label;
            ++seen;
        });
    }
    EXPECT_GT(seen, 0u);
}

TEST_P(PDFSheetTest, IsTheSameDrawingAsTheEpsSheets)
{
    ReadPDF read(pdf());
    ASSERT_EQ(read.countPages(), sheetsOf(chart.layout).size());
    for (int number = 1; number <= chart.layout.countOutputPages(); ++number) {
        DrawnSheet const page = read.drawing(static_cast<std::size_t>(number - 1));
        DrawnSheet const sheet = readSheet(eps(number));
        EXPECT_NEAR(page.page.width, sheet.page.width, 1e-6);
        EXPECT_NEAR(page.page.height, sheet.page.height, 1e-6);
        ASSERT_EQ(page.rectangles.size(), sheet.rectangles.size());
        for (std::size_t i = 0; i < page.rectangles.size(); ++i) {
            EXPECT_TRUE(areEqual(page.rectangles[i].rect, sheet.rectangles[i].rect));
            // The EPS has a gap's channels beyond the limits as they are.
            DrawnSheet::Colour expected = sheet.rectangles[i].colour;
            for (double& channel : expected)
                channel = std::clamp(channel, 0.0, 1.0);
            EXPECT_THAT(page.rectangles[i].colour, testing::Pointwise(testing::DoubleNear(1e-6), expected));
        }
        ASSERT_EQ(page.texts.size(), sheet.texts.size());
        for (std::size_t i = 0; i < page.texts.size(); ++i) {
            EXPECT_EQ(page.texts[i].text, sheet.texts[i].text);
            EXPECT_EQ(page.texts[i].height, sheet.texts[i].height);
            EXPECT_NEAR(page.texts[i].position.x, sheet.texts[i].position.x, 2e-6);
            EXPECT_NEAR(page.texts[i].position.y, sheet.texts[i].position.y, 2e-6);
            EXPECT_EQ(page.texts[i].colour, sheet.texts[i].colour);
        }
    }
}

TEST_P(PDFSheetTest, LooksLikeTheEpsSheets)
{
    for (NumberedSheet const& sheet : sheetsOf(chart.layout)) {
        IntSize const pixels = pixelsOf(frameOf(*sheet.page, chart.layout).size);
        ColorSpace const device = chart.layout.getColorSpace();
        Picture const page = renderPdf(pdf(), sheet.number, device, pixels);
        Picture const drawn = renderEps(eps(sheet.number), device, pixels);
        ASSERT_GT(page.width, 0);
        ASSERT_EQ(page.bytes.size(), drawn.bytes.size());
        visitPatches(sheet, [&](std::string const& label, RealRect const& patch) {
            RealPos const centre{patch.x + patch.width / 2, patch.y + patch.height / 2};
            for (std::size_t i = 0; i < page.at(centre).size(); ++i)
                EXPECT_NEAR(page.at(centre)[i], drawn.at(centre)[i], 1) << label;
            EXPECT_EQ(areaOf(page, patch), areaOf(drawn, patch)) << label;
        });
    }
}

TEST_P(PDFSheetTest, PassesTheChecksOfOtherPrograms)
{
    std::string const file = "'" + pdf().string() + "'";
    EXPECT_THAT(outputOf("qpdf --check " + file), HasSubstr("No syntax or stream encoding errors found"));
    EXPECT_THAT(outputOf("qpdf --check " + file), testing::Not(HasSubstr("WARNING")));
    std::string const information = outputOf("pdfinfo -box " + file);
    EXPECT_THAT(information, HasSubstr("Title:           chart\n"));
    EXPECT_THAT(information, HasSubstr("Creator:         Patchloom\n"));
    EXPECT_THAT(information, HasSubstr("\nPages:           " + std::to_string(chart.layout.countOutputPages()) + "\n"));
    EXPECT_THAT(information, HasSubstr("PDF version:     1.7\n"));
    EXPECT_THAT(information, testing::Not(HasSubstr("rror")));
    std::istringstream fonts(outputOf("pdffonts " + file));
    std::string line;
    for (int i = 0; i < 3; ++i)
        std::getline(fonts, line);
    std::istringstream words(line);
    std::string name;
    std::string type;
    std::string encoding;
    std::string embedded;
    std::string subset;
    words >> name >> type >> encoding >> embedded >> subset;
    EXPECT_EQ(type, "TrueType");
    EXPECT_EQ(encoding, "WinAnsi");
    EXPECT_EQ(embedded, "yes");
    EXPECT_EQ(subset, "yes");
    EXPECT_FALSE(std::getline(fonts, line)) << line;
    // The labels can be read as text.
    EXPECT_THAT(outputOf("pdftotext " + file + " -"), HasSubstr("A"));
}

INSTANTIATE_TEST_SUITE_P(, PDFSheetTest, testing::ValuesIn(chartCases()),
                         [](auto const& test) { return caseName(test.param); });

TEST(PDFSheets, HaveThePapersSizeToAThousandthOfAPoint)
{
    for (int preset = 0; preset <= creditCardLandscape; ++preset)
        for (bool const clips : {false, true}) {
            auto entries = distinctEntries(RGB, 4);
            ChartLayout chart =
                chartOf(entries, instrument(tableSpot), paper(static_cast<PageLayoutPreset>(preset)), {8, 8});
            chart.computeLayout(0, 0);
            chart.setClipToContent(clips);
            chart.setName(String("Chart"));
            TemporaryFolder const folder;
            ASSERT_FALSE(writeSheets(pdfImages, chart, folder.pathWithSlash()));
            ReadPDF read(folder.path() / "Chart.pdf");
            RealSize const size = clips ? frameOf(*sheetsOf(chart).at(0).page, chart).size
                                        : paper(static_cast<PageLayoutPreset>(preset)).getSize();
            for (char const* const name : {"/MediaBox", "/CropBox", "/TrimBox"}) {
                std::vector<double> const box = numbersOf(read.page(0).getKey(name));
                EXPECT_EQ(box[0], 0);
                EXPECT_EQ(box[1], 0);
                EXPECT_NEAR(box[2], size.width / 25.4 * 72, 0.001);
                EXPECT_NEAR(box[3], size.height / 25.4 * 72, 0.001);
            }
        }
}

TEST(PDFSheets, AreInTheOrderOfTheirNumbers)
{
    auto entries = distinctEntries(CMYK, 200);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(creditCardPortrait), {8, 8});
    chart.computeLayout(0, 0);
    chart.setName(String("Chart"));
    TemporaryFolder const folder;
    ASSERT_FALSE(writeSheets(pdfImages, chart, folder.pathWithSlash()));
    EXPECT_THAT(filesIn(folder.path()), testing::ElementsAre("Chart.pdf"));
    ReadPDF read(folder.path() / "Chart.pdf");
    ASSERT_GT(read.countPages(), 5u);
    EXPECT_EQ(read.countPages(), static_cast<std::size_t>(chart.countOutputPages()));
    for (std::size_t i = 0; i < read.countPages(); ++i)
        EXPECT_EQ(read.drawing(i).lastText().text, std::to_string(i + 1)); // the sheet's number
}

TEST(PDFSheets, AreNoFileWhenTheCallbackReturnsFalse)
{
    auto entries = distinctEntries(CMYK, 200);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(creditCardPortrait), {8, 8});
    chart.computeLayout(0, 0);
    chart.setName(String("Chart"));
    TemporaryFolder const folder;
    int calls = 0;
    EXPECT_FALSE(writeSheets(pdfImages, chart, folder.pathWithSlash(), [&] { return ++calls < 3; }));
    EXPECT_EQ(calls, 3);
    EXPECT_THAT(filesIn(folder.path()), testing::IsEmpty());
}
