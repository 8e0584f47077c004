// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RowCells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::vector<std::string> cellsOf(std::string_view row, Separation separation)
{
    std::vector<std::string> contents;
    RowCells cells(row, separation);
    for (Cell cell; cells.next(cell);)
        contents.push_back(cell.content());
    return contents;
}

TEST(RowCells, SeparatesAtRunsOfBlanks)
{
    EXPECT_THAT(cellsOf("  1 \t2\xC2\xA0 3  ", Separation::blanks), ElementsAre("1", "2", "3"));
    EXPECT_THAT(cellsOf(" \t ", Separation::blanks), IsEmpty());
}

TEST(RowCells, KeepsQuotedBlanks)
{
    EXPECT_THAT(cellsOf(R"(1 "dark skin" "" "a ""b""" 2)", Separation::blanks),
                ElementsAre("1", "dark skin", "", "a \"b\"", "2"));
}

TEST(RowCells, SeparatesAtSingleTabs)
{
    EXPECT_THAT(cellsOf("1\t dark skin \t\t3c\t", Separation::tab), ElementsAre("1", "dark skin", "", "3c", ""));
}

TEST(RowCells, SeparatesAtCommasAndSemicolons)
{
    EXPECT_THAT(cellsOf(R"(1,"a, b", "say ""x""" ,5)", Separation::comma), ElementsAre("1", "a, b", "say \"x\"", "5"));
    EXPECT_THAT(cellsOf("1;;a,b;", Separation::semicolon), ElementsAre("1", "", "a,b", ""));
    EXPECT_THAT(cellsOf("\"a\nb\";2", Separation::semicolon), ElementsAre("a\nb", "2"));
}

TEST(RowCells, TakesQuotesThatEmbraceNoWholeCellAsTheyAre)
{
    EXPECT_THAT(cellsOf(R"("12"34 5)", Separation::blanks), ElementsAre("\"12\"34", "5"));
    EXPECT_THAT(cellsOf(R"("12"34,5)", Separation::comma), ElementsAre("\"12\"34", "5"));
    EXPECT_THAT(cellsOf(R"(1,"2,3)", Separation::comma), ElementsAre("1", "\"2", "3"));
    EXPECT_THAT(cellsOf(R"(5" pipe,2)", Separation::comma), ElementsAre("5\" pipe", "2"));
}

TEST(RowCells, HaveAnEmptyCellInAnEmptyRowBetweenSeparators)
{
    EXPECT_THAT(cellsOf("", Separation::comma), ElementsAre(""));
    EXPECT_THAT(cellsOf("", Separation::blanks), IsEmpty());
}

TEST(CountCells, TellsEmptyCellsAtTheEndApart)
{
    CellCount const count = countCells("1,2,,\"\",,", Separation::comma);
    EXPECT_EQ(count.all, 6U);
    EXPECT_EQ(count.withoutEmptyEnd, 4U);
}

TEST(SplitRow, StopsAtTheMostCells)
{
    std::vector<Cell> cells(7);
    splitRow("1,2,3,4", Separation::comma, 3, cells);
    ASSERT_EQ(cells.size(), 3U);
    EXPECT_EQ(cells[2].text, "3");
}

TEST(QuotedLength, EndsAtAQuoteThatIsNotDoubled)
{
    EXPECT_EQ(quotedLength("\"ab\"\"c\" d"), 7U);
    EXPECT_EQ(quotedLength("\"\""), 2U);
    EXPECT_EQ(quotedLength("\"ab\"\""), 0U);
}

} // namespace
