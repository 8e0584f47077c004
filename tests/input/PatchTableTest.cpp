// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchImport.h"

#include "support/ChartCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace
{

std::vector<std::string> sortedLinesOf(std::string const& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
}

TEST(PatchTable, GivesValuesAndLabelsOfEachPatch)
{
    TableImport const table =
        importTable("SAMPLE_ID;SAMPLE_NAME;SAMPLE_LOC;R;G;B\n007;dark;A1;255;0;1,5\n8;;A2;0;0;0\n");
    PatchTable const& patches = table.patches;
    ASSERT_EQ(patches.count(), 2U);
    EXPECT_EQ(patches.valuesOf(0), "255 0 1.5");
    EXPECT_EQ(patches.valuesOf(1), "0 0 0");
    EXPECT_EQ(patches.labelOf(0).id, "007");
    EXPECT_EQ(patches.labelOf(0).name, "dark");
    EXPECT_EQ(patches.labelOf(0).location, "A1");
    EXPECT_EQ(plainTableOf(patches), "RGB_R RGB_G RGB_B\n255 0 1.5\n0 0 0\n");
}

TEST(PatchTable, WritesIdsWithThePlaceWhereThereIsNoName)
{
    TableImport const table = importTable("SAMPLE_ID;SAMPLE_NAME;SAMPLE_LOC;R;G;B\n"
                                          "007;\"a;\"\"b\"\", c\";A1;255;0;0\n"
                                          "8;;A2;0;0;0\n");
    EXPECT_EQ(idTableOf(table.patches), "LINE,SAMPLE_ID,SAMPLE_NAME\n"
                                        "2,007,\"a;\"\"b\"\", c\"\n"
                                        "3,8,A2\n");
}

// The charts that the tests know by all their files: what was written comes back, whatever its order.
TEST(PatchTable, GetsTheTableOfAChartBackFromItsTargetDescription)
{
    for (auto const& folder : chartCases()) {
        TableImport const written = importTable(bytesOf(folder / "expected.xml"));
        TableImport const source = importTable(bytesOf(folder / "input.txt"));
        if (!source.isGood())
            continue;
        ASSERT_TRUE(written.isGood()) << folder;
        EXPECT_EQ(sortedLinesOf(written.patches.valueLines), sortedLinesOf(source.patches.valueLines)) << folder;
    }
}

} // namespace
