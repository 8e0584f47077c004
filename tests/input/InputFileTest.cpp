// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "InputFile.h"

#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr char const* indexReport = "Array element out of bounds.\r";

// The result of reading a file.
struct Reading
{
    bool isGood = false;
    bool isValid = false;
    ColorSpace colorSpace = undefined;
    std::vector<std::string> rows; // an entry's values with blanks between them
    std::string errors;
};

std::vector<std::string> rowsOf(InputFile& file)
{
    std::vector<std::string> rows;
    for (ColorEntry const& entry : *file.getEntries()) {
        EXPECT_EQ(entry.getStatus(), Data);
        EXPECT_EQ(entry.getColorSpace(), file.getColorSpace());
        std::string row;
        for (String const& value : entry.getValues())
            row += textOf(value) + " ";
        row.resize(row.empty() ? 0 : row.size() - 1);
        rows.push_back(row);
    }
    return rows;
}

Reading readingOf(InputFile& file, String const& path)
{
    Reading reading;
    reading.errors = errorsOf([&] { reading.isGood = file.init(path); });
    reading.isValid = file.isValid();
    reading.colorSpace = file.getColorSpace();
    reading.rows = rowsOf(file);
    return reading;
}

Reading readingOf(std::string const& contents)
{
    TemporaryFolder const folder;
    InputFile file;
    return readingOf(file, folder.write("colours.txt", contents));
}

void expectUnread(Reading const& reading, std::string const& errors = "")
{
    EXPECT_FALSE(reading.isGood);
    EXPECT_FALSE(reading.isValid);
    EXPECT_EQ(reading.colorSpace, undefined);
    EXPECT_THAT(reading.rows, IsEmpty());
    EXPECT_EQ(reading.errors, errors);
}

// Each row in turn is swapped with a random row.
std::vector<std::string> shuffled(std::vector<std::string> rows)
{
    auto const count = static_cast<double>(rows.size());
    srand(0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const drawn = static_cast<std::size_t>((count * rand()) / 2147483647.0);
        std::swap(rows[i], rows[drawn < rows.size() ? drawn : rows.size() - 1]);
    }
    return rows;
}

std::vector<std::string> numberedRows(int count)
{
    std::vector<std::string> rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(std::to_string(i) + " 0 0.50");
    return rows;
}

std::string table(std::vector<std::string> const& rows)
{
    std::string text = "RGB_R RGB_G RGB_B\n";
    for (std::string const& row : rows)
        text += row + "\n";
    return text;
}

} // namespace

TEST(InputFile, StartsEmptyAndWithoutAColourSpace)
{
    InputFile file;
    EXPECT_FALSE(file.isValid());
    EXPECT_EQ(file.getColorSpace(), undefined);
    EXPECT_EQ(file.getEntries()->getCount(), 0U);
    EXPECT_EQ(file.getEntries()->getCapacity(), 1U);
}

TEST(InputFile, ReadsATableOfCmykValuesAsTheyAreWritten)
{
    Reading const reading = readingOf("CMYK_C CMYK_M CMYK_Y CMYK_K\n0 0 0 0\n100 0 007 +3.50\n1e1 -5 300 abc\n");
    EXPECT_TRUE(reading.isGood);
    EXPECT_TRUE(reading.isValid);
    EXPECT_EQ(reading.colorSpace, CMYK);
    EXPECT_THAT(reading.rows, UnorderedElementsAre("0 0 0 0", "100 0 007 +3.50", "1e1 -5 300 abc"));
    EXPECT_EQ(reading.errors, "");
}

TEST(InputFile, ReadsATableOfRgbValues)
{
    Reading const reading = readingOf("RGB_R\tRGB_G\tRGB_B\n255\t0\t12.5\n");
    EXPECT_TRUE(reading.isGood);
    EXPECT_EQ(reading.colorSpace, RGB);
    EXPECT_THAT(reading.rows, ElementsAre("255 0 12.5"));
}

TEST(InputFile, KnowsTheColourSpaceFromTheFirstNameUpToItsFirstUnderscore)
{
    for (char const* const header :
         {"CMYK", "CMYK_C", "CMYK_", "CMYK_anything_else", "CMYK M Y K", "CMYK_C RGB_G", "  \t CMYK_C"}) {
        Reading const reading = readingOf(std::string(header) + "\n1 2 3 4\n");
        EXPECT_TRUE(reading.isGood) << header;
        EXPECT_EQ(reading.colorSpace, CMYK) << header;
        EXPECT_THAT(reading.rows, ElementsAre("1 2 3 4")) << header;
        EXPECT_EQ(reading.errors, "") << header;
    }
    for (char const* const header : {"RGB", "RGB_R", "RGB_", "RGB_CMYK", "RGB 1 2 3 4 5 6 7 8 9"})
        EXPECT_EQ(readingOf(std::string(header) + "\n1 2 3\n").colorSpace, RGB) << header;
}

TEST(InputFile, RejectsAnyOtherName)
{
    for (char const* const header : {"cmyk_C", "CMYKX", "CMYKX_C", "CMY_C", "_CMYK", "Rgb", "rgb_R", "RGBA_R",
                                     "RGB\x7f_R", "Lab_L", "SAMPLE_ID CMYK_C", "1 2 3", "\"RGB\"", "undefined", "R"}) {
        SCOPED_TRACE(header);
        expectUnread(readingOf(std::string(header) + "\n1 2 3\n"));
    }
}

TEST(InputFile, AHeaderAloneIsReadAndGivesNoPatch)
{
    for (char const* const contents : {"RGB_R RGB_G RGB_B", "RGB_R RGB_G RGB_B\n", "RGB\r\n\r\n \t\n", "RGB\n\n\n"}) {
        Reading const reading = readingOf(contents);
        EXPECT_TRUE(reading.isGood);
        EXPECT_TRUE(reading.isValid);
        EXPECT_EQ(reading.colorSpace, RGB);
        EXPECT_THAT(reading.rows, IsEmpty());
        EXPECT_EQ(reading.errors, "");
    }
}

TEST(InputFile, AMissingUnreadableOrEmptyFileIsNotRead)
{
    TemporaryFolder const folder;
    InputFile file;
    expectUnread(readingOf(file, folder.pathOf("missing.txt")));
    expectUnread(readingOf(file, folder.pathWithSlash()));
    expectUnread(readingOf(file, String()));
    expectUnread(readingOf(file, folder.write("empty.txt", "")));
}

TEST(InputFile, AnEmptyFirstLineReportsAMissingName)
{
    for (char const* const contents :
         {"\nRGB\n1 2 3\n", "  \t\nRGB\n1 2 3\n", "\r\nRGB\r\n1 2 3\r\n", "\n", "   ", "\xA0\xEF"})
        expectUnread(readingOf(contents), indexReport);
}

TEST(InputFile, ReadsEveryKindOfLineEndTheSame)
{
    std::string const lines[] = {"RGB_R RGB_G RGB_B", "1 2 3", "4 5 6", "7 8 9"};
    Reading const expected = readingOf("RGB_R RGB_G RGB_B\n1 2 3\n4 5 6\n7 8 9\n");
    ASSERT_THAT(expected.rows, UnorderedElementsAre("1 2 3", "4 5 6", "7 8 9"));
    for (char const* const end :
         {"\n", "\r", "\r\n", "\n\r", "\n\n", "\r\r\r", "\r\n\r\n", " \t\n", "\n \n\t\r\n", "\n   "})
        for (bool const isLastEnded : {true, false}) {
            std::string contents;
            for (std::string const& line : lines)
                contents += line + (isLastEnded || &line != &lines[3] ? end : "");
            Reading const reading = readingOf(contents);
            EXPECT_TRUE(reading.isGood);
            EXPECT_EQ(reading.rows, expected.rows) << testing::PrintToString(end);
            EXPECT_EQ(reading.errors, "");
        }
}

TEST(InputFile, SplitsALineAtTabsControlCharactersAndBytesBeyondAscii)
{
    for (std::string const separator : {" ", "   ", "\t", " \t ", "\v", "\f", "\x01", "\x1f", "\xA0", "\xC3",
                                        "\xC2\xA0", "\x80", "\xFF", "\xE2\x80\x83"}) {
        Reading const reading = readingOf("RGB" + separator + "G\n1" + separator + "2" + separator + "3\n");
        EXPECT_TRUE(reading.isGood) << testing::PrintToString(separator);
        EXPECT_THAT(reading.rows, ElementsAre("1 2 3"));
    }
}

TEST(InputFile, TreatsNulsAsWhitespace)
{
    using namespace std::string_literals;
    Reading const reading = readingOf("\0RGB\0RGB_G\n1\0002 3\0\n\0\0\n4 5\0006"s);
    EXPECT_TRUE(reading.isGood);
    EXPECT_THAT(reading.rows, UnorderedElementsAre("1 2 3", "4 5 6"));
    expectUnread(readingOf("\0\0\0\0"s), indexReport);
}

TEST(InputFile, SkipsAByteOrderMark)
{
    Reading const reading = readingOf("\xEF\xBB\xBFRGB_R RGB_G RGB_B\n1 2 3\n");
    EXPECT_TRUE(reading.isGood);
    EXPECT_THAT(reading.rows, ElementsAre("1 2 3"));
}

TEST(InputFile, DropsALineWithTheWrongNumberOfValuesAndKeepsTheOthers)
{
    Reading const reading = readingOf("RGB\n1 2 3\n1 2 3 4\n5 6\n7 8 9\n");
    EXPECT_FALSE(reading.isGood);
    EXPECT_TRUE(reading.isValid);
    EXPECT_EQ(reading.colorSpace, RGB);
    EXPECT_THAT(reading.rows, UnorderedElementsAre("1 2 3", "7 8 9"));
    std::string reports;
    for (int i = 0; i < 2 * 3; ++i)
        reports += indexReport;
    EXPECT_EQ(reading.errors, reports);
}

TEST(InputFile, ReportsEachOfTheFourChannelsOfABadCmykLine)
{
    Reading const reading = readingOf("CMYK\n1 2 3\n");
    EXPECT_FALSE(reading.isGood);
    EXPECT_TRUE(reading.isValid);
    EXPECT_THAT(reading.rows, IsEmpty());
    EXPECT_EQ(reading.errors, std::string(indexReport) + indexReport + indexReport + indexReport);
}

TEST(InputFile, ShufflesTheRemainingLines)
{
    std::vector<std::string> rows = numberedRows(60);
    std::string contents = table(rows);
    contents += "bad line\n";
    Reading const reading = readingOf(contents);
    EXPECT_FALSE(reading.isGood);
    EXPECT_EQ(reading.rows, shuffled(rows));
}

TEST(InputFile, ShufflesEveryFileTheSameWay)
{
    for (int const count : {1, 2, 3, 10, 100, 1617}) {
        std::vector<std::string> const rows = numberedRows(count);
        Reading const reading = readingOf(table(rows));
        EXPECT_TRUE(reading.isGood);
        EXPECT_EQ(reading.rows, shuffled(rows)) << count;
    }
}

TEST(InputFile, MovesWholeEntriesWhenItShuffles)
{
    TemporaryFolder const folder;
    InputFile file;
    ASSERT_TRUE(file.init(folder.write("colours.txt", table(numberedRows(200)))));
    for (ColorEntry const& entry : *file.getEntries()) {
        ColorEntry const expected = entryOf(RGB, textOf(entry.getValues()[0]) + " 0 0.5");
        EXPECT_TRUE(std::equal(expected.getLab(), expected.getLab() + 3, entry.getLab()));
        EXPECT_TRUE(std::equal(expected.getDisplayColor(), expected.getDisplayColor() + 3, entry.getDisplayColor()));
    }
}

TEST(InputFile, GivesTheSameOrderOnEveryReading)
{
    TemporaryFolder const folder;
    String const path = folder.write("colours.txt", table(numberedRows(100)));
    InputFile file;
    Reading const first = readingOf(file, path);
    srand(77);
    EXPECT_EQ(readingOf(file, path).rows, first.rows);
    InputFile other;
    EXPECT_EQ(readingOf(other, path).rows, first.rows);
}

TEST(InputFile, ForgetsTheLastFileWithEveryNewOne)
{
    TemporaryFolder const folder;
    String const rgb = folder.write("rgb.txt", "RGB\n1 2 3\n");
    String const cmyk = folder.write("cmyk.txt", "CMYK\n1 2 3 4\n");
    InputFile file;
    GrowingArray<ColorEntry>* const entries = file.getEntries();
    EXPECT_THAT(readingOf(file, rgb).rows, ElementsAre("1 2 3"));
    EXPECT_THAT(readingOf(file, cmyk).rows, ElementsAre("1 2 3 4"));
    EXPECT_EQ(file.getColorSpace(), CMYK);
    expectUnread(readingOf(file, folder.pathOf("missing.txt")));
    EXPECT_THAT(readingOf(file, rgb).rows, ElementsAre("1 2 3"));
    expectUnread(readingOf(file, folder.write("other.txt", "something else")));
    EXPECT_EQ(file.getEntries(), entries) << "the chart keeps the pointer";
}

TEST(InputFile, ReadsDecimalPointsUnderADecimalCommaLocale)
{
    TemporaryFolder const folder;
    String const path = folder.write("colours.txt", "RGB\n12.75 0.5 100.25\n");
    ColorEntry const expected = entryOf(RGB, "12.75 0.5 100.25");
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    InputFile file;
    EXPECT_TRUE(file.init(path));
    ASSERT_EQ(file.getEntries()->getCount(), 1U);
    EXPECT_TRUE(std::equal(expected.getLab(), expected.getLab() + 3, (*file.getEntries())[0].getLab()));
}

TEST(InputFile, SplitsTokensTheSameUnderAnyLocale)
{
    std::string const contents = "RGB\xC3\xA4 G\n1\xA0"
                                 "2\xC3\x9F"
                                 "3\n";
    Reading const expected = readingOf(contents);
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(readingOf(contents).rows, expected.rows);
    EXPECT_THAT(expected.rows, ElementsAre("1 2 3"));
}

TEST(InputFile, ReadsAHundredThousandLines)
{
    std::vector<std::string> const rows = numberedRows(100000);
    Reading const reading = readingOf(table(rows));
    EXPECT_TRUE(reading.isGood);
    EXPECT_TRUE(reading.rows == shuffled(rows));
}

TEST(InputFile, AnEndlessLineIsNoChart)
{
    expectUnread(readingOf(std::string(8 << 20, 'x')));
    expectUnread(readingOf(std::string(8 << 20, ' ')), indexReport);
    Reading const reading = readingOf("RGB\n" + std::string(4 << 20, '1'));
    EXPECT_FALSE(reading.isGood);
    EXPECT_THAT(reading.rows, IsEmpty());
}

TEST(InputFile, ALineOfManyValuesGivesNoPatch)
{
    std::string contents = "RGB\n";
    for (int i = 0; i < 500000; ++i)
        contents += "1 ";
    Reading const reading = readingOf(contents);
    EXPECT_FALSE(reading.isGood);
    EXPECT_TRUE(reading.isValid);
    EXPECT_THAT(reading.rows, IsEmpty());
    EXPECT_EQ(reading.errors, std::string(indexReport) + indexReport + indexReport);
}

TEST(InputFile, AFileThatIsNoTextIsNoChart)
{
    std::string bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += static_cast<char>((i * 7919 + i / 256) % 256);
    expectUnread(readingOf("\x7f"
                           "ELF" +
                           bytes));
}

TEST(InputFile, ReadsTheExampleTables)
{
    struct Example
    {
        char const* name;
        ColorSpace colorSpace;
        std::size_t patches;
    };
    for (Example const& example : {Example{"it8.7-4-cmyk.txt", CMYK, 1617}, Example{"rgb-24.txt", RGB, 24}}) {
        InputFile file;
        Reading const reading = readingOf(file, String((std::string(PATCHLOOM_EXAMPLES) + example.name).c_str()));
        EXPECT_TRUE(reading.isGood) << example.name;
        EXPECT_EQ(reading.colorSpace, example.colorSpace);
        EXPECT_EQ(reading.rows.size(), example.patches);
        EXPECT_EQ(reading.errors, "");
    }
}
