// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchImport.h"

#include "support/DecimalCommaLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

namespace fs = std::filesystem;

std::string bytesOf(fs::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<fs::path> tableCases()
{
    std::vector<fs::path> folders;
    for (auto const& entry : fs::directory_iterator(PATCHLOOM_TEST_DATA "tables"))
        if (entry.is_directory())
            folders.push_back(entry.path());
    std::sort(folders.begin(), folders.end());
    return folders;
}

ImportOptions optionsOf(fs::path const& path)
{
    ImportOptions options;
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        std::string value;
        if (word == "comma") {
            options.allowsCommaInPlainTable = true;
            continue;
        }
        file >> value;
        if (word == "scale")
            options.scale = static_cast<DeviceScale>(std::stoul(value));
        else if (word == "space")
            options.space = value == "CMYK" ? CMYK : RGB;
        else if (word == "table")
            options.tableNumber = static_cast<std::uint32_t>(std::stoul(value));
        else
            ADD_FAILURE() << "unknown option " << word;
    }
    return options;
}

void print(std::ostream& out, char const* kind, TableMessages const& messages)
{
    for (TableMessage const& message : messages.kept())
        out << kind << ' ' << message.place.line << ':' << message.place.column << ": " << message.text << '\n';
}

std::string messagesOf(TableImport const& table)
{
    std::ostringstream out;
    print(out, "fault", table.faults);
    if (!table.isGood())
        return out.str();
    print(out, "warning", table.warnings);
    for (std::string const& note : table.patches.notes)
        out << "note " << note << '\n';
    out << "scale " << nameOf(table.patches.scale.scale) << ": " << table.patches.scale.reason << '\n';
    return out.str();
}

// A table of two rows with ids, in each of the ways to write it.
std::string cgats(std::string const& names, std::string const& rows)
{
    return "CGATS.17\nBEGIN_DATA_FORMAT\n" + names + "\nEND_DATA_FORMAT\nBEGIN_DATA\n" + rows + "END_DATA\n";
}

class TableCase : public testing::TestWithParam<fs::path>
{
};

TEST_P(TableCase, IsReadAsExpected)
{
    TableImport const table = importTable(bytesOf(GetParam() / "input.txt"), optionsOf(GetParam() / "options"));
    EXPECT_EQ(messagesOf(table), bytesOf(GetParam() / "messages.txt"));
    ASSERT_EQ(table.isGood(), fs::exists(GetParam() / "expected.txt"));
    if (table.isGood()) {
        EXPECT_EQ(plainTableOf(table.patches), bytesOf(GetParam() / "expected.txt"));
    }
    if (fs::exists(GetParam() / "ids.csv")) {
        EXPECT_EQ(idTableOf(table.patches), bytesOf(GetParam() / "ids.csv"));
    }
}

std::string nameOfCase(testing::TestParamInfo<fs::path> const& info)
{
    std::string name = info.param.filename().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Tables, TableCase, testing::ValuesIn(tableCases()), nameOfCase);

TEST(PatchImport, ReadsEveryCaseTheSameUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    for (fs::path const& folder : tableCases()) {
        TableImport const table = importTable(bytesOf(folder / "input.txt"), optionsOf(folder / "options"));
        EXPECT_EQ(messagesOf(table), bytesOf(folder / "messages.txt"));
        if (table.isGood()) {
            EXPECT_EQ(plainTableOf(table.patches), bytesOf(folder / "expected.txt"));
        }
    }
}

TEST(PatchImport, GivesTheSamePlainTableForEveryWayToWriteIt)
{
    std::string const plain = "CMYK_C CMYK_M CMYK_Y CMYK_K\n0 100.00 5.5 1e1\n0 0 0 0\n";
    std::string const written[] = {
        plain, cgats("SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K", "1 0 100.00 5.5 1e1\n2 0 0 0 0\n"),
        "ID,Cyan,Magenta,Yellow,Black\r\n1,0,100.00,5.5,1e1\r\n2,0,0,0,0\r\n",
        "<targetdescription>\n\n\t<targetdefinition>\nIS12642\n" +
            cgats("SAMPLE_ID\tSAMPLE_LOC\tCONTROL\tCMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K",
                  "1\tA1\tN\t0\t100.00\t5.5\t1e1\n2\tA2\tI\t0\t0\t0\t0\n3\tA3\tN\t0\t0\t0\t0\n")
                .substr(9) +
            "\t</targetdefinition>\n\n</targetdescription>\n"};
    for (std::string const& text : written) {
        TableImport const table = importTable(text);
        EXPECT_TRUE(table.isGood()) << messagesOf(table);
        EXPECT_EQ(plainTableOf(table.patches), plain);
        EXPECT_EQ(plainTableOf(importTable(plainTableOf(table.patches)).patches), plain);
    }
}

TEST(PatchImport, ReadsTheExampleTableFromItsSource)
{
    TableImport const table = importTable(bytesOf("/usr/share/color/icc/FOGRA39L.ti3"));
    EXPECT_THAT(table.warnings.kept(), IsEmpty());
    EXPECT_EQ(plainTableOf(table.patches), bytesOf(PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt"));
}

struct KnownTable
{
    char const* name;
    std::size_t patches;
    char const* firstPatch;
    char const* lastPatch;
};

class InstalledTable : public testing::TestWithParam<KnownTable>
{
};

// Of the installed package of characterisation data.
TEST_P(InstalledTable, IsReadWithAllItsPatches)
{
    fs::path const path = fs::path("/usr/share/color/icc") / GetParam().name;
    ASSERT_TRUE(fs::exists(path));
    TableImport const table = importTable(bytesOf(path));
    ASSERT_TRUE(table.isGood()) << messagesOf(table);
    EXPECT_THAT(table.warnings.kept(), IsEmpty());
    EXPECT_EQ(table.patches.colorSpace, CMYK);
    ASSERT_EQ(table.patches.count(), GetParam().patches);
    EXPECT_EQ(table.patches.valuesOf(0), GetParam().firstPatch);
    EXPECT_EQ(table.patches.valuesOf(GetParam().patches - 1), GetParam().lastPatch);
    EXPECT_EQ(table.patches.labelOf(GetParam().patches - 1).id, std::to_string(GetParam().patches));
}

INSTANTIATE_TEST_SUITE_P(Tables, InstalledTable,
                         testing::Values(KnownTable{"FOGRA28L.ti3", 1485, "0 0 0 0", "3 40 40 40"},
                                         KnownTable{"FOGRA29L.ti3", 1485, "0 0 0 0", "3 40 40 40"},
                                         KnownTable{"FOGRA30L.ti3", 1485, "0 0 0 0", "3 40 40 40"},
                                         KnownTable{"FOGRA39L.ti3", 1617, "0 0 0 0", "100 100 0 10"},
                                         KnownTable{"FOGRA40L.ti3", 1617, "0 0 0 0", "100 100 0 10"},
                                         KnownTable{"TR002.ti3", 928, "100 0 0 0", "100 100 100 80"},
                                         KnownTable{"TR003.ti3", 1617, "0 0 0 0", "100 100 0 10"},
                                         KnownTable{"TR005.ti3", 1617, "0 0 0 0", "100 100 0 10"},
                                         KnownTable{"TR006.ti3", 1617, "0 0 0 0", "100 100 0 10"}),
                         [](auto const& known) {
                             std::string const name = known.param.name;
                             return name.substr(0, name.find('.'));
                         });

TEST(PatchImport, KeepsTwentyFaultsAndCountsAll)
{
    std::string text = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < 30; ++i)
        text += "0 x 256\n";
    TableImport const table = importTable(text);
    ASSERT_EQ(table.faults.kept().size(), 20U);
    EXPECT_EQ(table.faults.total(), 60U);
    EXPECT_EQ(table.faults.kept().back().place, (TextPlace{11, 5}));
}

TEST(PatchImport, TakesValuesABitAboveFullStrengthForFullStrength)
{
    TableImport const table =
        importTable(cgats("SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K", "1 100.00001 100 50.0 0\n2 100.02 0 0 0\n"));
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_EQ(table.faults.kept()[0].place, (TextPlace{7, 3}));

    TableImport const good = importTable(cgats("SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K", "1 100.00001 100 50.0 0\n"));
    ASSERT_TRUE(good.isGood());
    EXPECT_EQ(good.patches.valuesOf(0), "100 100 50.0 0");
    EXPECT_EQ(good.warnings.total(), 1U);
}

TEST(PatchImport, RefusesValuesAboveWhatTheFileStates)
{
    TableImport const table = importTable("MAX_DEVICE_VALUE 100\n" + cgats("RGB_R RGB_G RGB_B", "10 101 0\n"));
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_EQ(table.faults.kept()[0].text,
              "RGB_G is \"101\", which is above 100: correct it, or say with --scale what full strength is");
}

TEST(PatchImport, TellsTheLineOfEachPatch)
{
    TableImport const table = importTable("RGB_R RGB_G RGB_B\n\n1 2 3\n\n4 5 6\n");
    ASSERT_EQ(table.patches.count(), 2U);
    EXPECT_EQ(table.patches.lineOf(0), 3U);
    EXPECT_EQ(table.patches.lineOf(1), 5U);
}

TEST(PatchImport, CountsTheColumnOfAFaultInCharacters)
{
    TableImport const table = importTable("ID;RGB_R;RGB_G;RGB_B\n\xC3\x9F\xE2\x82\xAC;255;2;x\n");
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_EQ(table.faults.kept()[0].place, (TextPlace{2, 10}));
}

TEST(PatchImport, FindsTheLineOfAFaultBehindALineBreakInQuotes)
{
    TableImport const table = importTable("ID,RGB_R,RGB_G,RGB_B\n\"a\nb\",255,x,0\n1,2,3,y\n");
    ASSERT_EQ(table.faults.total(), 2U);
    EXPECT_EQ(table.faults.kept()[0].place, (TextPlace{3, 8}));
    EXPECT_EQ(table.faults.kept()[1].place, (TextPlace{4, 7}));
}

TEST(PatchImport, RefusesAMillionColumns)
{
    std::string names = "RGB_R,RGB_G,RGB_B";
    for (int i = 0; i < 1'000'000; ++i)
        names += ",X";
    EXPECT_FALSE(importTable(names + "\n").isGood());
    EXPECT_FALSE(importTable("BEGIN_DATA_FORMAT\n" + names + "\nEND_DATA_FORMAT\nBEGIN_DATA\nEND_DATA\n").isGood());
}

TEST(PatchImport, RefusesAThousandTablesAndMore)
{
    std::string text = "BEGIN_DATA_FORMAT\nRGB_R RGB_G RGB_B\nEND_DATA_FORMAT\n";
    for (int i = 0; i < 1001; ++i)
        text += "BEGIN_DATA\n255 0 0\nEND_DATA\n";
    TableImport const table = importTable(text);
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_THAT(table.faults.kept()[0].text, testing::StartsWith("too many tables"));
}

TEST(PatchImport, ReadsARowWithMillionsOfEmptyCellsBehindIt)
{
    TableImport const table = importTable("RGB_R,RGB_G,RGB_B\n255,0,0" + std::string(3'000'000, ',') + "\n");
    ASSERT_TRUE(table.isGood()) << messagesOf(table);
    EXPECT_EQ(table.patches.valuesOf(0), "255 0 0");
}

TEST(PatchImport, ReadsAHundredThousandRows)
{
    std::string rows;
    for (int i = 0; i < 100'000; ++i)
        rows += std::to_string(i) + " 0 0 0 100\n";
    TableImport const table = importTable(cgats("SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K", rows));
    ASSERT_TRUE(table.isGood()) << messagesOf(table);
    EXPECT_EQ(table.patches.count(), 100'000U);
}

TEST(PatchImport, OpensNoFileThatATableNames)
{
    TableImport const table = importTable(
        cgats("SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K", "1 0 0 0 0\n.INCLUDE \"/usr/share/color/icc/TR002.ti3\"\n"));
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_EQ(table.faults.kept()[0].place, (TextPlace{7, 1}));
}

} // namespace
