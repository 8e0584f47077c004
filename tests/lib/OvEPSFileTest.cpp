// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvEPSFile.h"

#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace
{

using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

std::string contentsOf(std::filesystem::path const& path)
{
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

constexpr std::string_view smallHeader = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 20.000000 10.000000\n\r";

// The whole file of a page of 20 x 10 points.
template <typename Drawing>
std::string fileOf(Drawing const& draw)
{
    TemporaryFolder const folder;
    {
        EPSFile file(folder.pathOf("page.eps"), {20, 10});
        draw(file);
    }
    return contentsOf(folder.path() / "page.eps");
}

// What a drawing writes after the header.
template <typename Drawing>
std::string textOf(Drawing const& draw)
{
    std::string text = fileOf(draw);
    EXPECT_THAT(text, StartsWith(smallHeader));
    return text.substr(smallHeader.size());
}

// A page of 20 x 10 points as Ghostscript paints it, with one pixel for each point. Colours are converted by the simple
// rule red = 1 - min(1, cyan + black).
class Painting
{
public:
    template <typename Drawing>
    explicit Painting(Drawing const& draw)
    {
        TemporaryFolder const folder;
        {
            EPSFile file(folder.pathOf("page.eps"), {20, 10});
            file.startPage("page");
            draw(file);
            file.endPage();
        }
        std::string const command = "cd '" + folder.path().string() +
                                    "' && gs -q -dNOPAUSE -dBATCH -dSAFER -dEPSCrop -dUseFastColor=true -r72 "
                                    "-sDEVICE=ppmraw -sOutputFile=page.ppm page.eps > messages 2>&1";
        status = std::system(command.c_str());
        messages = contentsOf(folder.path() / "messages");
        pixels = contentsOf(folder.path() / "page.ppm");
        auto const headerSize = std::max(pixels.size(), size) - size;
        EXPECT_THAT(pixels.substr(0, headerSize), MatchesRegex("P6\n(#.*\n)?20 10\n255\n"));
        pixels.erase(0, headerSize);
        pixels.resize(size);
    }

    // Red, green and blue as six hexadecimal digits; y counts from the bottom.
    std::string at(std::size_t x, std::size_t y) const
    {
        std::string text;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x",
                          static_cast<unsigned>(static_cast<unsigned char>(pixels[((9 - y) * 20 + x) * 3 + channel])));
            text += digits;
        }
        return text;
    }

    int status = -1;
    std::string messages;

private:
    static constexpr std::size_t size = 20 * 10 * 3;
    std::string pixels;
};

} // namespace

TEST(EPSFile, StartsWithTheSizeOfThePageInPoints)
{
    EXPECT_EQ(fileOf([](EPSFile&) {}), smallHeader);
}

TEST(EPSFile, GivesAnA4PageItsBoundingBox)
{
    TemporaryFolder const folder;
    {
        EPSFile const file(folder.pathOf("a4.eps"), {210.0 * 72 / 25.4, 297.0 * 72 / 25.4});
    }
    EXPECT_EQ(contentsOf(folder.path() / "a4.eps"),
              "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 595.275591 841.889764\n\r");
}

TEST(EPSFile, ReplacesAFileOfTheSameName)
{
    TemporaryFolder const folder;
    String const path = folder.write("page.eps", std::string(1000, 'x'));
    {
        EPSFile const file(path, {20, 10});
    }
    EXPECT_EQ(contentsOf(folder.path() / "page.eps"), smallHeader);
}

TEST(EPSFile, MayBeReadByAllAndWrittenByItsOwner)
{
    TemporaryFolder const folder;
    auto const previous = umask(0);
    {
        EPSFile const file(folder.pathOf("page.eps"), {20, 10});
    }
    umask(previous);
    EXPECT_EQ(std::filesystem::status(folder.path() / "page.eps").permissions(), std::filesystem::perms{0644});
}

TEST(EPSFile, SaysNothingOfAFileThatCannotBeCreated)
{
    TemporaryFolder const folder;
    EXPECT_EQ(errorsOf([&] {
                  EPSFile file(folder.pathOf("missing/page.eps"), {20, 10});
                  file.drawRectangle({0, 0, 1, 1});
                  file.endPage();
              }),
              "");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(EPSFile, HasFailedWhereItCannotBeCreated)
{
    TemporaryFolder const folder;
    EPSFile file(folder.pathOf("missing/page.eps"), {20, 10});
    EXPECT_TRUE(file.hasFailed());
}

TEST(EPSFile, TellsWhetherTheWholePageReachedTheDisk)
{
    TemporaryFolder const folder;
    for (bool const isDiskFull : {false, true}) {
        std::optional<FileSizeLimit> limit;
        if (isDiskFull)
            limit.emplace(smallHeader.size() + 10);
        EPSFile file(folder.pathOf("page.eps"), {20, 10});
        file.drawRectangle({1, 1, 4, 3});
        file.endPage();
        EXPECT_EQ(file.sync(), !isDiskFull);
        file.Close();
        EXPECT_EQ(file.hasFailed(), isDiskFull);
    }
}

TEST(EPSFile, WritesNothingToStartThePage)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.startPage("first"); }), "");
}

TEST(EPSFile, ShowsThePageAtItsEnd)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.endPage(); }), "\nshowpage\n\r");
}

TEST(EPSFile, ScalesBothAxesAlike)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.setScale(72 / 25.4); }), "2.834646 2.834646 scale\r");
}

TEST(EPSFile, SetsTheLineWidth)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.setLineWidth(0.25); }), "0.250000 setlinewidth\r");
}

TEST(EPSFile, DrawsLinesBetweenWholePositions)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawLine(1, -2, 30, 2147483647); }),
              "newpath 1 -2 moveto 30 2147483647 lineto stroke\r");
}

TEST(EPSFile, FillsRectanglesAroundTheirFourCorners)
{
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawRectangle({1, 2, 3.5, 0.25});
              }),
              "newpath 1.000000 2.000000 moveto 4.500000 2.000000 lineto 4.500000 2.250000 lineto "
              "1.000000 2.250000 lineto 1.000000 2.000000 lineto fill\r");
}

TEST(EPSFile, StrokesTheOutlineOfARectangle)
{
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawRectangleOutline({1, 2, 3, 4});
              }),
              "newpath 1.000000 2.000000 moveto 4.000000 2.000000 lineto 4.000000 6.000000 lineto "
              "1.000000 6.000000 lineto 1.000000 2.000000 lineto stroke\r");
}

TEST(EPSFile, FillsAndStrokesTriangles)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawTriangle(1, 2, 3, 4, -5, 6); }),
              "newpath 1 2 moveto 3 4 lineto -5 6 lineto closepath gsave stroke grestore fill\r");
}

TEST(EPSFile, ClosesAWholeEllipse)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 15, false); }),
              "newpath 2.000000 1.000000 moveto "
              "2.000000 1.552285 1.552285 2.000000 1.000000 2.000000 curveto "
              "0.447715 2.000000 0.000000 1.552285 0.000000 1.000000 curveto "
              "0.000000 0.447715 0.447715 0.000000 1.000000 0.000000 curveto "
              "1.552285 0.000000 2.000000 0.447715 2.000000 1.000000 curveto "
              "closepath stroke \r");
}

TEST(EPSFile, FillsAnEllipseAfterStrokingIt)
{
    EXPECT_THAT(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 15, true); }),
                EndsWith("curveto closepath gsave stroke grestore fill \r"));
}

TEST(EPSFile, LeavesHalfAnEllipseOpen)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 4, 2, 6, true); }),
              "newpath 2.000000 2.000000 moveto "
              "0.895431 2.000000 0.000000 1.552285 0.000000 1.000000 curveto "
              "0.000000 0.447715 0.895431 0.000000 2.000000 0.000000 curveto "
              "gsave stroke grestore fill \r");
}

TEST(EPSFile, StartsASingleQuarterAtItsOwnStart)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 4, false); }),
              "newpath 0.000000 1.000000 moveto 0.000000 0.447715 0.447715 0.000000 1.000000 0.000000 curveto "
              "stroke \r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 8, false); }),
              "newpath 1.000000 0.000000 moveto 1.552285 0.000000 2.000000 0.447715 2.000000 1.000000 curveto "
              "stroke \r");
}

TEST(EPSFile, StartsAtTheFirstOfTwoSeparateQuarters)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 5, false); }),
              "newpath 2.000000 1.000000 moveto "
              "2.000000 1.552285 1.552285 2.000000 1.000000 2.000000 curveto "
              "0.000000 0.447715 0.447715 0.000000 1.000000 0.000000 curveto "
              "stroke \r");
}

TEST(EPSFile, DrawsNoPathForAnEllipseWithoutQuarters)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 0, false); }), "stroke \r");
}

TEST(EPSFile, ClosesNothingWhenTheMaskHasMoreThanTheFourQuarters)
{
    EXPECT_THAT(textOf([](EPSFile& file) { file.drawEllipse(0, 0, 2, 2, 31, false); }), EndsWith("curveto stroke \r"));
}

TEST(EPSFile, SpacesTheCharactersOfAFixedRunByEight)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(10, -4, "A1%", 3); }),
              "10 -4 moveto (A) show 18 -4 moveto (1) show 26 -4 moveto (%) show \n");
}

TEST(EPSFile, DrawsOnlyAsManyCharactersAsAskedFor)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(0, 0, "AB", 1); }), "0 0 moveto (A) show \n");
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(0, 0, "AB", 0); }), "\n");
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(0, 0, "AB", -1); }), "\n");
}

TEST(EPSFile, EscapesWhatWouldEndAFixedRun)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(0, 0, "(\\)", 3); }),
              "0 0 moveto (\\() show 8 0 moveto (\\\\) show 16 0 moveto (\\)) show \n");
}

TEST(EPSFile, ContinuesAFixedRunPastTheLargestInteger)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.drawText(2147483647, 0, "AB", 2); }),
              "2147483647 0 moveto (A) show 2147483655 0 moveto (B) show \n");
}

TEST(EPSFile, DrawsATextAtItsPosition)
{
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawText(RealPos{1.5, -2}, "B12");
              }),
              "1.500000 -2.000000 moveto (B12) show\r");
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawText(RealPos{0, 0}, String());
              }),
              "0.000000 0.000000 moveto () show\r");
}

TEST(EPSFile, SetsTheHeightOfTexts)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.setTextHeight(3); }), "/Courier findfont 3.000000 scalefont setfont\r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.setTextHeight(0.5); }), "/Courier findfont 0.500000 scalefont setfont\r");
}

TEST(EPSFile, DoesNotTreatATextAsAFormat)
{
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawText(RealPos{0, 0}, "100%% %s%n%d");
              }),
              "0.000000 0.000000 moveto (100%% %s%n%d) show\r");
}

TEST(EPSFile, KeepsATextInsideItsParentheses)
{
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawText(RealPos{0, 0}, ")) showpage (\\");
              }),
              "0.000000 0.000000 moveto (\\)\\) showpage \\(\\\\) show\r");
}

TEST(EPSFile, WritesEveryOtherByteOfATextAsItStands)
{
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        if (std::string_view("()\\").find(static_cast<char>(value)) == std::string_view::npos)
            bytes += static_cast<char>(value);
    EXPECT_EQ(textOf([&](EPSFile& file) {
                  file.drawText(RealPos{0, 0}, String(bytes.data(), false, bytes.size()));
              }),
              "0.000000 0.000000 moveto (" + bytes + ") show\r");
}

TEST(EPSFile, WritesALongTextWhole)
{
    std::string text(1'000'000, 'x');
    EXPECT_EQ(textOf([&](EPSFile& file) {
                  file.drawText(RealPos{0, 0}, String(text.data(), false, text.size()));
              }),
              "0.000000 0.000000 moveto (" + text + ") show\r");
}

TEST(EPSFile, SetsColoursFromChannelsAsTheyAre)
{
    double const values[] = {0.1, 0.2, 0.3, 1.5};
    EXPECT_EQ(textOf([](EPSFile& file) { file.setCMYK(0, 0.25, 1, -1); }),
              "0.000000 0.250000 1.000000 -1.000000 setcmykcolor\r");
    EXPECT_EQ(textOf([&](EPSFile& file) { file.setCMYK(values); }),
              "0.100000 0.200000 0.300000 1.500000 setcmykcolor\r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.setRGB(1, 128 / 255.0, 0); }),
              "1.000000 0.501961 0.000000 setrgbcolor\r");
    EXPECT_EQ(textOf([&](EPSFile& file) { file.setRGB(values); }), "0.100000 0.200000 0.300000 setrgbcolor\r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.setGray(0.5); }), "0.500000 setgray\r");
}

TEST(EPSFile, WritesAStyleWithItsPercentSignsHalved)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.writeStyle("/Courier findfont\n6 scalefont %% a %%%% b\n"); }),
              "/Courier findfont\n6 scalefont % a %% b\n\r");
}

TEST(EPSFile, SubstitutesNothingInAStyle)
{
    EXPECT_EQ(textOf([](EPSFile& file) { file.writeStyle("%s %d %n %%s %"); }), "%s %d %n %s %\r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.writeStyle(""); }), "\r");
}

TEST(EPSFile, RoundsNumbersAsPrintfDoes)
{
    for (double const value : {0.0, -0.0, 0.0000005, 0.0000015, -0.0000004, 2.5e-7, 1e-300, 0.1, 2.0 / 3, 1e15 + 0.3,
                               123456789.1234565, -1e22, 72 / 25.4, 3e38}) {
        char expected[80];
        std::snprintf(expected, sizeof expected, "%f setgray\r", value);
        EXPECT_EQ(textOf([=](EPSFile& file) { file.setGray(value); }), expected);
    }
}

TEST(EPSFile, RoundsRandomNumbersAndThoseHalfWayAsPrintfDoes)
{
    std::vector<double> values;
    auto const addWithNeighbours = [&values](double value) {
        for (double const near : {value, std::nextafter(value, infinity), std::nextafter(value, -infinity)}) {
            values.push_back(near);
            values.push_back(-near);
        }
    };
    std::mt19937_64 random(1);
    auto const drawnBelow = [&random](double bound) { return static_cast<double>(random()) * 0x1p-64 * bound; };
    for (int i = 0; i < 20000; ++i) {
        // Odd multiples of 1/128 end in a 5 at the seventh place: half way between two texts.
        addWithNeighbours(i / 128.0);
        addWithNeighbours((std::floor(drawnBelow(1e6)) + 0.5) / 128);
        addWithNeighbours(i / 1e6);
        addWithNeighbours((i + 0.5) / 1e6);
        addWithNeighbours((std::floor(drawnBelow(1e12)) + 0.5) / 1e6);
        addWithNeighbours(drawnBelow(300) * 72 / 25.4);
        auto const anyNumber = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        if (std::abs(anyNumber) < static_cast<double>(std::numeric_limits<float>::max()))
            addWithNeighbours(anyNumber);
    }
    for (double power = 1e-9; power < 1e18; power *= 10) {
        addWithNeighbours(power);
        addWithNeighbours(power - 5e-7);
    }
    std::istringstream written(textOf([&values](EPSFile& file) {
        for (double const value : values)
            file.setGray(value);
    }));
    for (double const value : values) {
        char expected[80];
        std::snprintf(expected, sizeof expected, "%f setgray", value);
        std::string line;
        std::getline(written, line, '\r');
        ASSERT_EQ(line, expected);
    }
}

TEST(EPSFile, HoldsNumbersAtTheLimitsOfPostScript)
{
    std::string const largest = "340282346638528859811704183484516925440.000000";
    EXPECT_EQ(textOf([](EPSFile& file) { file.setRGB(infinity, -infinity, notANumber); }),
              largest + " -" + largest + " 0.000000 setrgbcolor\r");
    EXPECT_EQ(textOf([](EPSFile& file) { file.setRGB(1e300, -1e39, std::numeric_limits<float>::max()); }),
              largest + " -" + largest + " " + largest + " setrgbcolor\r");
    std::string const corner = "-" + largest + " -" + largest;
    EXPECT_EQ(textOf([](EPSFile& file) {
                  file.drawRectangleOutline({-infinity, -infinity, -infinity, -infinity});
              }),
              "newpath " + corner + " moveto " + corner + " lineto " + corner + " lineto " + corner + " lineto " +
                  corner + " lineto stroke\r");
    TemporaryFolder const folder;
    {
        EPSFile const file(folder.pathOf("page.eps"), {infinity, notANumber});
    }
    EXPECT_EQ(contentsOf(folder.path() / "page.eps"),
              "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 " + largest + " 0.000000\n\r");
}

TEST(EPSFile, KeepsTheDecimalPointUnderACommaLocale)
{
    auto const draw = [](EPSFile& file) {
        file.setScale(1.5);
        file.drawRectangle({0.5, 1.5, 2.25, 3});
        file.drawText(RealPos{0.5, 0.5}, "0.5");
    };
    std::string const expected = fileOf(draw);
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(fileOf(draw), expected);
}

TEST(EPSFile, IsPaintedWithItsColoursInPlace)
{
    Painting const painting([](EPSFile& file) {
        file.writeStyle("1 setlinewidth\n/Courier findfont\n6 scalefont\nsetfont\n");
        file.setRGB(1, 0, 0);
        file.drawRectangle({1, 1, 4, 3});
        file.setCMYK(1, 0, 0, 0);
        file.drawRectangle({6, 1, 4, 3});
        file.setGray(0.2);
        file.drawRectangle({11, 1, 4, 3});
        file.setScale(2);
        file.setRGB(0, 0, 1);
        file.drawRectangle({1, 3, 2, 1});
        file.setLineWidth(1);
        file.drawLine(4, 4, 9, 4);
    });
    EXPECT_EQ(painting.status, 0) << painting.messages;
    EXPECT_EQ(painting.messages, "");
    EXPECT_EQ(painting.at(0, 0), "ffffff");
    EXPECT_EQ(painting.at(1, 1), "ff0000");
    EXPECT_EQ(painting.at(4, 3), "ff0000");
    EXPECT_EQ(painting.at(5, 1), "ffffff");
    EXPECT_EQ(painting.at(7, 2), "00ffff");
    EXPECT_EQ(painting.at(12, 2), "333333");
    EXPECT_EQ(painting.at(3, 7), "0000ff");
    EXPECT_EQ(painting.at(12, 7), "0000ff");
    EXPECT_EQ(painting.at(12, 9), "ffffff");
}

TEST(EPSFile, IsPaintedWithEllipsesAndTriangles)
{
    Painting const painting([](EPSFile& file) {
        file.setLineWidth(0.1);
        file.setRGB(0, 0.6, 0);
        file.drawEllipse(0, 0, 10, 10, 15, true);
        file.setRGB(0, 0, 0.6);
        file.drawTriangle(11, 0, 19, 0, 15, 9);
    });
    EXPECT_EQ(painting.messages, "");
    EXPECT_EQ(painting.at(5, 5), "009900");
    EXPECT_EQ(painting.at(2, 7), "009900");
    EXPECT_EQ(painting.at(0, 0), "ffffff");
    EXPECT_EQ(painting.at(9, 9), "ffffff");
    EXPECT_EQ(painting.at(15, 2), "000099");
    EXPECT_EQ(painting.at(12, 7), "ffffff");
}

TEST(EPSFile, IsPaintedWithAnyTextsAndNumbers)
{
    Painting const painting([](EPSFile& file) {
        file.writeStyle("/Courier findfont\n6 scalefont\nsetfont\n");
        file.drawText(RealPos{100, 100}, ") show 0 1 0 setrgbcolor (");
        file.drawText(RealPos{100, 100}, "\\");
        file.drawText(100, 100, ")(\\", 3);
        file.drawText(RealPos{infinity, notANumber}, "%!PS\r\n\x80\xff");
        file.setLineWidth(notANumber);
        file.drawEllipse(-infinity, 0, infinity, 1e300, 15, true);
        file.setRGB(infinity, -1, notANumber);
        file.drawRectangle({-infinity, -1e300, infinity, infinity});
        file.drawRectangle({-1e30, -1e30, 1e31, 1e31});
    });
    EXPECT_EQ(painting.status, 0);
    EXPECT_EQ(painting.messages, "");
    EXPECT_EQ(painting.at(10, 5), "ff0000");
}
