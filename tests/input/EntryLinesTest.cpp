// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EntryLines.h"

#include "support/CapturedOutput.h"
#include "support/StringText.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using Triple = std::array<float, 3>;

Triple tripleOf(float const* values)
{
    return {values[0], values[1], values[2]};
}

Triple labOf(ColorSpace colorSpace, std::string const& line)
{
    return tripleOf(entryOf(colorSpace, line).getLab());
}

std::vector<std::string> textsOf(ColorEntry const& entry)
{
    std::vector<std::string> texts;
    for (String const& value : entry.getValues())
        texts.push_back(textOf(value));
    return texts;
}

// Lines of random values. Some lines are repeats, and some values are no colours.
std::vector<std::string> variedLines(ColorSpace colorSpace, int count)
{
    std::mt19937 random(1);
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        std::string line;
        for (int channel = 0; channel < colorspace_nof_channels[colorSpace]; ++channel)
            line += std::to_string(static_cast<int>(random() % 300) - 20) + "." + std::to_string(random() % 10) + " ";
        if (i % 50 == 7)
            line = lines.back();
        if (i % 50 == 9)
            line = colorSpace == CMYK ? "inf x 1e400 nan" : "inf x 1e400";
        lines.push_back(line);
    }
    return lines;
}

} // namespace

TEST(EntryLines, AnEntryTakesItsValuesFromALineAsTheyAreWritten)
{
    ColorEntry const entry = entryOf(CMYK, "\t 0.50 +007 1e2  \t-3,5 ");
    EXPECT_EQ(entry.getStatus(), Data);
    EXPECT_EQ(entry.getColorSpace(), CMYK);
    EXPECT_THAT(textsOf(entry), ElementsAre("0.50", "+007", "1e2", "-3,5"));
}

TEST(EntryLines, ParsingTakesOneLineAndTheWhitespaceAfterItOffTheText)
{
    for (char const* const text : {"1 2 3\n4 5 6", "1 2 3\r4 5 6", "1 2 3\r\n4 5 6", "1 2 3\n\r\n \t\n 4 5 6"}) {
        String rest(text);
        ColorEntry entry;
        entry.parseFromString(rest, RGB);
        EXPECT_THAT(textsOf(entry), ElementsAre("1", "2", "3"));
        EXPECT_EQ(textOf(rest), "4 5 6");
        entry = ColorEntry();
        entry.parseFromString(rest, RGB);
        EXPECT_THAT(textsOf(entry), ElementsAre("4", "5", "6"));
        EXPECT_EQ(rest.getCount(), 0U);
    }
}

TEST(EntryLines, ControlCharactersAndBytesBeyondAsciiSplitALine)
{
    EXPECT_THAT(textsOf(entryOf(RGB, "1\xA0"
                                     "2\xC3\xA4"
                                     "3")),
                ElementsAre("1", "2", "3"));
    EXPECT_THAT(textsOf(entryOf(RGB, "\xEF\xBB\xBF"
                                     "1\x01"
                                     "2\v3\x80")),
                ElementsAre("1", "2", "3"));
}

TEST(EntryLines, ALineWithTheWrongNumberOfValuesIsInvalidAndReportsEveryChannel)
{
    struct Line
    {
        ColorSpace colorSpace;
        char const* text;
        int reports;
    };
    for (Line const& line : {Line{RGB, "1 2", 3}, Line{RGB, "1 2 3 4", 3}, Line{RGB, "", 3}, Line{CMYK, "1 2 3", 4},
                             Line{CMYK, "1 2 3 4 5", 4}, Line{undefined, "1", 0}}) {
        SCOPED_TRACE(line.text);
        ColorEntry entry;
        std::string reports;
        for (int i = 0; i < line.reports; ++i)
            reports += "Array element out of bounds.\r";
        EXPECT_EQ(errorsOf([&] { entry = entryOf(line.colorSpace, line.text); }), reports);
        EXPECT_EQ(entry.getStatus(), Invalid);
        EXPECT_EQ(entry.getColorSpace(), line.colorSpace);
        EXPECT_EQ(entry.getValues().getCount(), 0U);
    }
}

TEST(EntryLines, ManyLinesAtOnceGiveTheSameEntriesAsSingleLines)
{
    for (ColorSpace const colorSpace : {CMYK, RGB})
        // 256 lines are converted at once: test fewer, as many and more.
        for (int const count : {0, 1, 2, 255, 256, 257, 512, 700}) {
            std::vector<std::string> const lines = variedLines(colorSpace, count);
            std::string text;
            for (std::string const& line : lines)
                text += line + "\n";
            String rest(text.c_str());
            GrowingArray<ColorEntry> entries;
            EXPECT_TRUE(takeEntries(rest, colorSpace, entries));
            EXPECT_EQ(rest.getCount(), 0U);
            ASSERT_EQ(entries.getCount(), lines.size());
            for (std::size_t i = 0; i < lines.size(); ++i) {
                ColorEntry const alone = entryOf(colorSpace, lines[i]);
                EXPECT_EQ(std::memcmp(entries[i].getLab(), alone.getLab(), sizeof(Triple)), 0) << lines[i];
                EXPECT_EQ(std::memcmp(entries[i].getDisplayColor(), alone.getDisplayColor(), sizeof(Triple)), 0);
                EXPECT_EQ(textsOf(entries[i]), textsOf(alone));
                EXPECT_EQ(entries[i].getStatus(), Data);
                EXPECT_EQ(entries[i].getColorSpace(), colorSpace);
            }
        }
}

TEST(EntryLines, InvalidLinesAreLeftOut)
{
    // The first and the last of 256 lines that are converted at once, and a longer stretch.
    auto const isBad = [](int line) { return line == 0 || line == 255 || line == 256 || (line > 600 && line < 1200); };
    std::string text;
    std::vector<std::string> good;
    std::string reports;
    for (int i = 0; i < 1300; ++i) {
        std::string const first = std::to_string(i);
        text += first + (isBad(i) ? " 2\n" : " 2 3\n");
        if (!isBad(i))
            good.push_back(first);
        else
            for (int channel = 0; channel < 3; ++channel)
                reports += "Array element out of bounds.\r";
    }
    String rest(text.c_str());
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"9 9 9"});
    EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(takeEntries(rest, RGB, entries)); }), reports);
    EXPECT_EQ(rest.getCount(), 0U);
    ASSERT_EQ(entries.getCount(), good.size() + 1);
    EXPECT_EQ(tripleOf(entries[0].getLab()), labOf(RGB, "9 9 9"));
    for (std::size_t i = 0; i < good.size(); ++i) {
        EXPECT_THAT(textsOf(entries[i + 1]), ElementsAre(good[i], "2", "3"));
        EXPECT_EQ(tripleOf(entries[i + 1].getLab()), labOf(RGB, good[i] + " 2 3"));
    }
}

TEST(EntryLines, AnEntryKeepsItsValuesWhenTheOthersChange)
{
    ColorEntry second;
    {
        String text("1 2 3\n4 5 6\n7 8 9\n");
        GrowingArray<ColorEntry> entries;
        ASSERT_TRUE(takeEntries(text, RGB, entries));
        entries[0].initAsWhite(CMYK, false);
        entries[2].initAsWhite(CMYK, false);
        second = entries[1];
        entries[1].initAsWhite(CMYK, false);
    }
    EXPECT_THAT(textsOf(second), ElementsAre("4", "5", "6"));
    EXPECT_EQ(second.getRealValue(2), 6);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(second.getRealValue(3), 0); }), "Array element out of bounds.\r");
}
