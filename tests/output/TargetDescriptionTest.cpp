// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TargetDescription.h"

#include "lib/OvFile.h"
#include "support/CapturedOutput.h"
#include "support/ChartCase.h"
#include "support/DecimalCommaLocale.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <set>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// A small chart of a ruler with one chart page. Its entries are not shuffled.
class SmallChart
{
public:
    explicit SmallChart(GrowingArray<ColorEntry> const& patches, IntSize grid = {2, 3}, RealSize patch = {7, 8})
        : entries(patches), layout(chartOf(entries, instrument(standardRuler), rulerSheetFor(grid, patch), patch))
    {
        layout.computeLayout(0, 0);
    }

    // The target description's bytes.
    std::string written() const
    {
        EXPECT_TRUE(layout.writeOutputFile(path()));
        return bytesOf(folder.path() / "target.xml");
    }

    std::vector<std::string> lines() const { return linesOf(written()); }

    std::vector<TargetPatch> table() const
    {
        written();
        return readTargetTable(folder.path() / "target.xml");
    }

    String path() const { return folder.pathOf("target.xml"); }

private:
    TemporaryFolder folder;
    GrowingArray<ColorEntry> entries;

public:
    ChartLayout layout;
};

// Seconds since 1970 of an ISO 8601 time with a zone; -1 for any other text.
std::time_t momentOf(std::string const& text)
{
    std::string shape = text;
    for (char& c : shape)
        if (c >= '0' && c <= '9')
            c = '0';
    if (shape != "0000-00-00T00:00:00+00:00" && shape != "0000-00-00T00:00:00-00:00")
        return -1;
    std::tm time{};
    char sign = '+';
    int hours = 0;
    int minutes = 0;
    std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d%c%d:%d", &time.tm_year, &time.tm_mon, &time.tm_mday, &time.tm_hour,
                &time.tm_min, &time.tm_sec, &sign, &hours, &minutes);
    time.tm_year -= 1900;
    time.tm_mon -= 1;
    int const shift = (hours * 60 + minutes) * 60;
    return timegm(&time) - (sign == '-' ? -shift : shift);
}

class TimeZone
{
public:
    explicit TimeZone(char const* zone)
    {
        setenv("TZ", zone, 1);
        tzset();
    }
    ~TimeZone()
    {
        unsetenv("TZ");
        tzset();
    }
};

class Umask
{
public:
    explicit Umask(mode_t mask) : before(umask(mask)) {}
    ~Umask() { umask(before); }

private:
    mode_t const before;
};

int permissionsOf(String const& path)
{
    struct stat status
    {
    };
    EXPECT_EQ(stat(path.getNullTerminatedString(), &status), 0);
    return static_cast<int>(status.st_mode & 07777);
}

class ChartFixtures : public testing::TestWithParam<std::filesystem::path>
{
};

} // namespace

TEST_P(ChartFixtures, HaveTheExpectedTargetDescriptionApartFromItsTime)
{
    ChartCase const chart(GetParam());
    TemporaryFolder const folder;

    EXPECT_TRUE(chart.layout.writeOutputFile(folder.pathOf("target.xml")));

    std::string const target = bytesOf(folder.path() / "target.xml");
    EXPECT_EQ(withoutCreationTime(target), bytesOf(GetParam() / "expected.xml"));
    EXPECT_NE(momentOf(creationTimeIn(target)), -1) << creationTimeIn(target);
}

INSTANTIATE_TEST_SUITE_P(, ChartFixtures, testing::ValuesIn(chartCases()),
                         [](auto const& test) { return caseName(test.param); });

TEST(TargetDescription, IsStampedWithTheTimeOfWritingInTheLocalZone)
{
    struct
    {
        char const* zone;
        char const* offset;
    } const zones[] = {
        {"UTC0", "+00:00"}, {"EAST-05:30", "+05:30"}, {"WEST+03:30", "-03:30"}, {"WEST+00:30", "-00:30"}};
    SmallChart const chart(greyEntries(6));
    for (auto const& [zone, offset] : zones) {
        TimeZone const local(zone);
        std::time_t const before = std::time(nullptr);
        std::string const created = creationTimeIn(chart.written());
        std::time_t const after = std::time(nullptr);
        EXPECT_THAT(created, testing::EndsWith(offset));
        EXPECT_GE(momentOf(created), before) << created;
        EXPECT_LE(momentOf(created), after) << created;
    }
}

TEST(TargetDescription, HasSixFieldsForAnRgbChart)
{
    auto const lines = SmallChart(greyEntries(6)).lines();
    EXPECT_THAT(lines, Contains("NUMBER_OF_FIELDS\t6"));
    EXPECT_THAT(lines, Contains("SAMPLE_ID\tSAMPLE_LOC\tCONTROL\tRGB_R\tRGB_G\tRGB_B"));
    EXPECT_THAT(lines, Contains("\t<colorSpace>RGB</colorSpace>"));
}

TEST(TargetDescription, HasSevenFieldsForACmykChart)
{
    auto const lines = SmallChart(entriesOf(CMYK, {"0 0 0 0", "0 0 0 100", "50 0 0 0"})).lines();
    EXPECT_THAT(lines, Contains("NUMBER_OF_FIELDS\t7"));
    EXPECT_THAT(lines, Contains("SAMPLE_ID\tSAMPLE_LOC\tCONTROL\tCMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K"));
    EXPECT_THAT(lines, Contains("\t<colorSpace>CMYK</colorSpace>"));
}

TEST(TargetDescription, ListsPatchesByColumnsFromA1AtTheGridsFarCorner)
{
    std::vector<std::string> locations;
    std::vector<int> ids;
    for (TargetPatch const& patch : SmallChart(greyEntries(6)).table()) {
        locations.push_back(patch.location);
        ids.push_back(patch.sampleId);
    }
    EXPECT_THAT(locations, ElementsAre("A1", "A2", "A3", "B1", "B2", "B3"));
    EXPECT_THAT(ids, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(TargetDescription, CountsFromTheNearCornerInAnyOtherDirection)
{
    SmallChart chart(greyEntries(6));
    chart.layout.setDirection(ChartDirection(1));
    std::vector<std::string> locations;
    for (TargetPatch const& patch : chart.table())
        locations.push_back(patch.location);
    EXPECT_THAT(locations, ElementsAre("B3", "B2", "B1", "A3", "A2", "A1"));
}

TEST(TargetDescription, WritesTheValuesAsTheInputSpelledThem)
{
    // One column and one row: nothing to arrange.
    auto const table = SmallChart(entriesOf(CMYK, {"007.50 1e1 -0 none%s"}), {1, 1}).table();
    ASSERT_EQ(table.size(), 1u);
    EXPECT_THAT(table[0].values, ElementsAre("007.50", "1e1", "-0", "none%s"));
    EXPECT_EQ(table[0].control, "N");
}

TEST(TargetDescription, MarksWhiteFillersAsAddedByTheProgram)
{
    struct
    {
        ColorSpace colorSpace;
        char const* patch;
        std::vector<std::string> white;
    } const charts[] = {{RGB, "10 20 30", {"255", "255", "255"}}, {CMYK, "10 20 30 40", {"0", "0", "0", "0"}}};
    for (auto const& [colorSpace, patch, white] : charts) {
        // Five patches take 2 x 3 cells: 1 x 3 are too few.
        auto const table = SmallChart(entriesOf(colorSpace, std::vector<std::string>(5, patch))).table();
        ASSERT_EQ(table.size(), 6u);
        EXPECT_EQ(std::count_if(table.begin(), table.end(), [](auto const& row) { return row.control == "N"; }), 5);
        auto const filler =
            std::find_if(table.begin(), table.end(), [](auto const& row) { return row.control == "I"; });
        ASSERT_NE(filler, table.end());
        EXPECT_EQ(filler->values, white);
    }
}

TEST(TargetDescription, LabelsTheFiftyThirdColumnWithTwoLetters)
{
    SmallChart const chart(greyEntries(53), {53, 1}, {1, 1});
    ASSERT_EQ(chart.layout.getPatchesX(), 53);
    auto const table = chart.table();
    ASSERT_EQ(table.size(), 53u);
    EXPECT_EQ(table[0].location, "A1");
    EXPECT_EQ(table[25].location, "Z1");
    EXPECT_EQ(table[26].location, "a1");
    EXPECT_EQ(table[51].location, "z1");
    EXPECT_EQ(table[52].location, "AA1");
}

TEST(TargetDescription, LabelsColumnsWithAsManyLettersAsNeeded)
{
    constexpr int columns = 2860;
    SmallChart const chart(greyEntries(columns), {columns, 1}, {1, 1});
    ASSERT_EQ(chart.layout.getPatchesX(), columns);
    struct
    {
        int number;
        char const* label;
    } const labels[] = {{0, "A"},    {25, "Z"},    {26, "a"},     {51, "z"},     {52, "AA"},    {103, "Az"},
                        {104, "BA"}, {2755, "zz"}, {2756, "AAA"}, {2757, "AAB"}, {2807, "AAz"}, {2808, "ABA"}};
    for (auto const& [number, label] : labels)
        EXPECT_TRUE(chart.layout.getCoordinateXString(columns - 1 - number) == label) << number;

    std::set<std::string> all;
    for (int x = 0; x < columns; ++x)
        all.insert(chart.layout.getCoordinateXString(x).getNullTerminatedString());
    EXPECT_EQ(all.size(), columns);
}

TEST(TargetDescription, NumbersRowsFromTheLastOne)
{
    SmallChart const chart(greyEntries(120), {1, 120}, {1, 1});
    ASSERT_EQ(chart.layout.getPatchesY(), 120);
    EXPECT_TRUE(chart.layout.getCoordinateYString(119) == "1");
    EXPECT_TRUE(chart.layout.getCoordinateYString(110) == "10");
    EXPECT_TRUE(chart.layout.getCoordinateYString(0) == "120");
}

TEST(TargetDescription, GivesTheExtentOfPatchesAndGaps)
{
    auto const narrow = SmallChart(greyEntries(20), {10, 2}, {6.5, 8}).lines();
    EXPECT_THAT(narrow, Contains("\t<width>65.00mm</width>"));
    EXPECT_THAT(narrow, Contains("\t<height>16.00mm</height>"));
    EXPECT_THAT(narrow, Contains("\t<patchWidth>6.50mm</patchWidth>"));
    EXPECT_THAT(narrow, Contains("\t<patchHeight>8.00mm</patchHeight>"));
    EXPECT_THAT(narrow, Contains("\t<horizontalGap>0.00mm</horizontalGap>"));
    EXPECT_THAT(narrow, Contains("\t<verticalGap>0.00mm</verticalGap>"));
}

TEST(TargetDescription, CountsOneMoreGapThanPatchesEachWay)
{
    GrowingArray<ColorEntry> entries = greyEntries(6);
    MeasurementLayout ruler = instrument(standardRuler);
    ruler.setGap(2, 0.5);
    ChartLayout chart = chartOf(entries, ruler, rulerSheetFor({2, 3}, {9.25, 8.5}), {7.25, 8});
    chart.computeMultiPageLayout(0);
    TemporaryFolder const folder;
    ASSERT_TRUE(chart.writeOutputFile(folder.pathOf("target.xml")));
    auto const lines = linesOf(bytesOf(folder.path() / "target.xml"));

    EXPECT_THAT(lines, Contains("\t<columns>2</columns>"));
    EXPECT_THAT(lines, Contains("\t<rows>3</rows>"));
    EXPECT_THAT(lines, Contains("\t<width>20.50mm</width>"));   // 2 x (7.25 + 2) + 2
    EXPECT_THAT(lines, Contains("\t<height>26.00mm</height>")); // 3 x (8 + 0.5) + 0.5
    EXPECT_THAT(lines, Contains("\t<horizontalGap>2.00mm</horizontalGap>"));
    EXPECT_THAT(lines, Contains("\t<verticalGap>0.50mm</verticalGap>"));
}

TEST(TargetDescription, CountsThePatchesOfAllChartPages)
{
    // 14 patches on pages of at most 2 x 3 take three pages, and still do at 2 x 3: 3 x 1 x 3 would be too few.
    auto const lines = SmallChart(greyEntries(14)).lines();
    EXPECT_THAT(lines, Contains("\t<pages>3</pages>"));
    EXPECT_THAT(lines, Contains("\t<columns>2</columns>"));
    EXPECT_THAT(lines, Contains("\t<rows>3</rows>"));
    EXPECT_THAT(lines, Contains("\t<patches>18</patches>"));
    EXPECT_THAT(lines, Contains("NUMBER_OF_SETS\t18"));
    EXPECT_EQ(SmallChart(greyEntries(14)).table().size(), 18u);
}

TEST(TargetDescription, EndsInAnEmptyLine)
{
    EXPECT_THAT(SmallChart(greyEntries(6)).written(),
                testing::EndsWith("END_DATA\n\t</targetdefinition>\n\n</targetdescription>\n\n"));
}

TEST(TargetDescription, HasOnlyLineFeedsAndNoTrailingBlanks)
{
    std::string const target = SmallChart(greyEntries(6)).written();
    EXPECT_EQ(target.find('\r'), std::string::npos);
    EXPECT_EQ(target.find(" \n"), std::string::npos);
    EXPECT_EQ(target.find("\t\n"), std::string::npos);
}

TEST(TargetDescription, HasTheDefaultNameUntilOneIsSet)
{
    auto const lines = SmallChart(greyEntries(6)).lines();
    EXPECT_THAT(lines, Contains("\t<name>Patchloom Output File</name>"));
    EXPECT_THAT(lines, Contains("DESCRIPTOR\t\"Patchloom Output File\""));
}

TEST(TargetDescription, WritesTheChartsNameUnchangedAtAnyLength)
{
    SmallChart chart(greyEntries(6));
    std::string const names[] = {"a<b&c>\"d\"'e' 100% %s%n \\", "", "\xc3\xa4\xff\x80", std::string(100000, '%')};
    for (std::string const& name : names) {
        chart.layout.setName(String(name.c_str()));
        auto const lines = chart.lines();
        EXPECT_THAT(lines, Contains("\t<name>" + name + "</name>"));
        EXPECT_THAT(lines, Contains("DESCRIPTOR\t\"" + name + "\""));
        EXPECT_EQ(lines.back(), "");
    }
}

TEST(TargetDescription, TouchesNoFileWithoutAColourSpace)
{
    SmallChart chart(greyEntries(6));
    chart.layout.setColorSpace(undefined);
    TemporaryFolder const folder;
    EXPECT_FALSE(chart.layout.writeOutputFile(folder.pathOf("new.xml")));
    EXPECT_FALSE(chart.layout.writeOutputFile(folder.write("old.xml", "old")));
    EXPECT_THAT(filesIn(folder.path()), ElementsAre("old.xml"));
    EXPECT_EQ(bytesOf(folder.path() / "old.xml"), "old");
}

TEST(TargetDescription, TouchesNoFileWithoutChartPages)
{
    SmallChart chart(greyEntries(6));
    chart.layout.setOriginalEntries(nullptr);
    TemporaryFolder const folder;
    std::string const errors = errorsOf([&] {
        EXPECT_FALSE(chart.layout.writeOutputFile(folder.pathOf("new.xml")));
        EXPECT_FALSE(chart.layout.writeOutputFile(folder.write("old.xml", "old")));
        EXPECT_FALSE(ChartLayout().writeOutputFile(folder.pathOf("new.xml")));
    });
    EXPECT_EQ(errors, "");
    EXPECT_THAT(filesIn(folder.path()), ElementsAre("old.xml"));
    EXPECT_EQ(bytesOf(folder.path() / "old.xml"), "old");
}

TEST(TargetDescription, WritingReportsNothingIfTheFileCannotBeCreated)
{
    SmallChart const chart(greyEntries(6));
    TemporaryFolder const folder;
    std::string const errors = errorsOf([&] {
        EXPECT_TRUE(chart.layout.writeOutputFile(folder.pathOf("missing/target.xml")));
        EXPECT_TRUE(chart.layout.writeOutputFile(folder.pathOf("")));
        EXPECT_TRUE(chart.layout.writeOutputFile(String()));
    });
    EXPECT_EQ(errors, "");
    EXPECT_THAT(filesIn(folder.path()), IsEmpty());
}

TEST(TargetDescription, ReplacesAFileOfItsName)
{
    SmallChart const chart(greyEntries(6));
    std::string const target = withoutCreationTime(chart.written());
    std::FILE* const file = std::fopen(chart.path().getNullTerminatedString(), "a");
    ASSERT_TRUE(file);
    std::fputs(std::string(20000, 'x').c_str(), file);
    std::fclose(file);
    EXPECT_EQ(withoutCreationTime(chart.written()), target);
}

TEST(TargetDescription, IsWritableByItsOwnerAndReadableByAll)
{
    SmallChart const chart(greyEntries(6));
    TemporaryFolder const folder;
    {
        Umask const nothingWithheld(0);
        chart.layout.writeOutputFile(folder.pathOf("open.xml"));
    }
    {
        Umask const othersShutOut(077);
        chart.layout.writeOutputFile(folder.pathOf("private.xml"));
    }
    EXPECT_EQ(permissionsOf(folder.pathOf("open.xml")), 0644);
    EXPECT_EQ(permissionsOf(folder.pathOf("private.xml")), 0600);
}

TEST(TargetDescription, KeepsTheDecimalPointUnderADecimalCommaLocale)
{
    SmallChart const chart(entriesOf(CMYK, {"12.5 0.25 1e1 0", "0 0 0 99.5"}), {1, 2}, {7.25, 8.5});
    std::string const target = withoutCreationTime(chart.written());
    EXPECT_THAT(linesOf(target), Contains("\t<patchWidth>7.25mm</patchWidth>"));
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    EXPECT_EQ(withoutCreationTime(chart.written()), target);
}

TEST(TargetDescription, ChartPagesAddNothing)
{
    SmallChart chart(greyEntries(6));
    TemporaryFolder const folder;
    int counter = 7;
    {
        WFile file(folder.pathOf("page.txt"), false, 0644);
        (*chart.layout.getChartPages())[0].writeToOutputFile(&file, counter, &chart.layout);
    }
    EXPECT_EQ(bytesOf(folder.path() / "page.txt"), "");
    EXPECT_EQ(counter, 7);
}

TEST(TargetDescription, TheControlLetterTellsWhetherTheInputHadTheEntry)
{
    ColorEntry white;
    EXPECT_TRUE(entryOf(RGB, "1 2 3").getControlString() == "N");
    errorsOf([] { EXPECT_TRUE(entryOf(RGB, "1 2").getControlString() == "I"); });
    white.initAsWhite(RGB, false);
    EXPECT_TRUE(white.getControlString() == "I");
    EXPECT_TRUE(ColorEntry::whitePatch.getControlString() == "I");
}

TEST(TargetDescription, WritesARowWithSingleTabsAndTheFilesOwnLineEnd)
{
    TemporaryFolder const folder;
    {
        WFile file(folder.pathOf("row.txt"), false, 0644);
        String location("Bc12");
        entryOf(CMYK, "1.50 2 %d 4").printToOutFile(&file, 42, location);
    }
    EXPECT_EQ(bytesOf(folder.path() / "row.txt"), "42\tBc12\tN\t1.50\t2\t%d\t4\r");
}
