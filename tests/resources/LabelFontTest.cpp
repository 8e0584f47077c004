// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The font of labels in PDF: its generator, and the measures that a document tells of it.

#include "Generators.h"
#include "lib/OvPDFFile.h"
#include "support/ChartCase.h"
#include "support/ReadPDF.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace
{

// A TrueType file's numbers have the most significant byte first.
class FontTables
{
public:
    explicit FontTables(std::string const& fontBytes) : bytes(fontBytes)
    {
        for (int i = 0; i < unsignedAt(4); ++i) {
            auto const entry = static_cast<std::size_t>(12 + 16 * i);
            starts[bytes.substr(entry, 4)] = longAt(entry + 8);
        }
    }

    bool has(std::string const& table) const { return starts.contains(table); }
    int unsignedIn(std::string const& table, std::size_t offset) const { return unsignedAt(starts.at(table) + offset); }
    int signedIn(std::string const& table, std::size_t offset) const
    {
        int const value = unsignedIn(table, offset);
        return value < 0x8000 ? value : value - 0x10000;
    }

private:
    std::size_t byteAt(std::size_t i) const { return static_cast<unsigned char>(bytes.at(i)); }
    int unsignedAt(std::size_t i) const { return static_cast<int>(byteAt(i) << 8 | byteAt(i + 1)); }
    std::size_t longAt(std::size_t i) const
    {
        return byteAt(i) << 24 | byteAt(i + 1) << 16 | byteAt(i + 2) << 8 | byteAt(i + 3);
    }

    std::string const bytes;
    std::map<std::string, std::size_t> starts;
};

FontTables labelFont()
{
    return FontTables(bytesOf(sourceFile("res/labels.ttf")));
}

// The font as a document describes it.
class DescribedFont : public testing::Test
{
protected:
    DescribedFont()
    {
        PDFFile file(folder.pathOf("page.pdf"), String("title"));
        file.startPage({100, 100});
        file.endPage();
        file.Close();
        read.emplace(folder.path() / "page.pdf");
        dictionary = read->page(0).getKey("/Resources").getKey("/Font").getKey("/F");
        descriptor = dictionary.getKey("/FontDescriptor");
    }

    // A measure of the font's units in thousandths of its size.
    int thousandths(int units) const
    {
        return static_cast<int>(std::lround(units * 1000.0 / font.unsignedIn("head", 18)));
    }

    long long measure(char const* name) { return descriptor.getKey(name).getIntValue(); }

    TemporaryFolder folder;
    FontTables const font = labelFont();
    std::optional<ReadPDF> read;
    QPDFObjectHandle dictionary;
    QPDFObjectHandle descriptor;
};

// The generator's command in tools/CMakeLists.txt, with another file to write to.
std::string generatorCommand(std::string const& output)
{
    std::string const recipe = bytesOf(sourceFile("tools/CMakeLists.txt"));
    std::smatch found;
    EXPECT_TRUE(std::regex_search(recipe, found, std::regex("COMMAND (hb-subset [^\"]*?labels\\.ttf \\S+\\.ttf)")));
    std::string const command = std::regex_replace(found[1].str(), std::regex("\\s+"), " ");
    return std::regex_replace(command, std::regex("\\$\\{PROJECT_SOURCE_DIR\\}/res/labels\\.ttf"), output);
}

} // namespace

TEST(LabelFont, IsRebuiltByItsGenerator)
{
    TemporaryFolder const folder;
    std::istringstream words(generatorCommand((folder.path() / "labels.ttf").string()));
    std::vector<std::string> command;
    for (std::string word; words >> word;)
        command.push_back(word);
    ASSERT_EQ(run(command), 0);
    expectSameBytes(folder.path() / "labels.ttf", "res/labels.ttf");
}

TEST(LabelFont, HasOneWidthForAllCharacters)
{
    FontTables const font = labelFont();
    // Glyphs past the last of these measures share its width.
    int const measures = font.unsignedIn("hhea", 34);
    ASSERT_GE(measures, 1);
    for (int glyph = 0; glyph < measures; ++glyph)
        EXPECT_EQ(font.unsignedIn("hmtx", static_cast<std::size_t>(4 * glyph)), font.unsignedIn("hmtx", 0)) << glyph;
}

TEST(LabelFont, HasNoTablesThatDocumentsDoNotNeed)
{
    FontTables const font = labelFont();
    for (char const* const needed : {"glyf", "loca", "head", "hhea", "hmtx", "maxp", "cmap"})
        EXPECT_TRUE(font.has(needed)) << needed;
    for (char const* const spare : {"GSUB", "GPOS", "GDEF", "DSIG", "FFTM", "kern", "gasp", "prep", "fpgm", "cvt "})
        EXPECT_FALSE(font.has(spare)) << spare;
}

TEST_F(DescribedFont, HasTheWidthsOfItsTable)
{
    auto const widths = dictionary.getKey("/Widths").getArrayAsVector();
    EXPECT_EQ(widths.size(), 95u);
    for (QPDFObjectHandle const& width : widths)
        EXPECT_EQ(QPDFObjectHandle(width).getIntValue(), thousandths(font.unsignedIn("hmtx", 0)));
}

TEST_F(DescribedFont, HasTheHeightsOfItsTable)
{
    EXPECT_EQ(measure("/Ascent"), thousandths(font.signedIn("hhea", 4)));
    EXPECT_EQ(measure("/Descent"), thousandths(font.signedIn("hhea", 6)));
    // Since version 2 the table OS/2 tells the capitals' height.
    if (font.has("OS/2") && font.unsignedIn("OS/2", 0) >= 2) {
        EXPECT_EQ(measure("/CapHeight"), thousandths(font.signedIn("OS/2", 88)));
    }
    EXPECT_EQ(measure("/ItalicAngle"), 0);
}

TEST_F(DescribedFont, HasTheBoxOfItsTable)
{
    auto const box = descriptor.getKey("/FontBBox").getArrayAsVector();
    ASSERT_EQ(box.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(static_cast<double>(QPDFObjectHandle(box[i]).getIntValue()),
                    font.signedIn("head", 36 + 2 * i) * 1000.0 / font.unsignedIn("head", 18), 1);
}

TEST_F(DescribedFont, IsOfFixedPitchAndLatin)
{
    constexpr int fixedPitch = 1;
    constexpr int nonsymbolic = 32;
    EXPECT_EQ(measure("/Flags"), fixedPitch + nonsymbolic);
}
