// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartDescription.h"

#include "support/ChartCase.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

// Two chart pages of one column and one row.
std::string const whole = "<targetdescription>\n\n"
                          "\t<name>A </name> & more</name>\n"
                          "\t<colorSpace>RGB</colorSpace>\n"
                          "\t<pages>2</pages>\n"
                          "\t<rows>1</rows>\n"
                          "\t<columns>1</columns>\n"
                          "\t<patchWidth>7.50mm</patchWidth>\n"
                          "\t<patchHeight>8.00mm</patchHeight>\n"
                          "\t<horizontalGap>0.00mm</horizontalGap>\n"
                          "\t<verticalGap>1.00mm</verticalGap>\n\n"
                          "\t<targetdefinition>\nIS12642\nNUMBER_OF_FIELDS\t6\n\nBEGIN_DATA_FORMAT\n"
                          "SAMPLE_ID\tSAMPLE_LOC\tCONTROL\tRGB_R\tRGB_G\tRGB_B\nEND_DATA_FORMAT\n\n"
                          "NUMBER_OF_SETS\t2\n\nBEGIN_DATA\n"
                          "1\tA1\tN\t10\t20.5\t030\n"
                          "2\tB1\tI\t255\t255\t255\n"
                          "END_DATA\n\t</targetdefinition>\n\n</targetdescription>\n\n";

// The description with one text replaced by another.
std::string with(std::string const& old, std::string const& replacement)
{
    std::string text = whole;
    EXPECT_NE(text.find(old), std::string::npos) << old;
    return text.replace(text.find(old), old.size(), replacement);
}

std::string faultOf(std::string const& text)
{
    auto const result = readChartDescription(text);
    return std::holds_alternative<std::string>(result) ? std::get<std::string>(result) : "";
}

} // namespace

TEST(ChartDescription, HasTheValuesOfTheEnvelope)
{
    auto const result = readChartDescription(whole);
    ASSERT_TRUE(std::holds_alternative<ChartDescription>(result)) << std::get<std::string>(result);
    auto const& chart = std::get<ChartDescription>(result);
    EXPECT_EQ(chart.name, "A </name> & more");
    EXPECT_EQ(chart.colorSpace, RGB);
    EXPECT_EQ(chart.pages, 2);
    EXPECT_EQ(chart.grid.width, 1);
    EXPECT_EQ(chart.grid.height, 1);
    EXPECT_EQ(chart.patch.width, 7.5);
    EXPECT_EQ(chart.patch.height, 8);
    EXPECT_EQ(chart.gap.width, 0);
    EXPECT_EQ(chart.gap.height, 1);
}

TEST(ChartDescription, HasTheCellsAsTheyAreWritten)
{
    auto const result = readChartDescription(whole);
    ASSERT_TRUE(std::holds_alternative<ChartDescription>(result));
    auto const& cells = std::get<ChartDescription>(result).cells;
    ASSERT_THAT(cells, SizeIs(2));
    EXPECT_EQ(cells[0].label, "A1");
    EXPECT_TRUE(cells[0].isOfTable);
    EXPECT_THAT(cells[0].values, ElementsAre("10", "20.5", "030"));
    EXPECT_EQ(cells[1].label, "B1");
    EXPECT_FALSE(cells[1].isOfTable);
}

TEST(ChartDescription, ReadsWhatTheProgramWrites)
{
    for (auto const& folder : chartCases()) {
        SCOPED_TRACE(folder);
        ChartCase const chart(folder);
        auto const result = readChartDescription(bytesOf(folder / "expected.xml"));
        ASSERT_TRUE(std::holds_alternative<ChartDescription>(result)) << std::get<std::string>(result);
        auto const& described = std::get<ChartDescription>(result);
        EXPECT_EQ(described.pages, chart.layout.getChartPagesCount());
        EXPECT_EQ(described.grid.width * described.pages, chart.layout.getPatchesX());
        EXPECT_EQ(described.grid.height, chart.layout.getPatchesY());
    }
}

TEST(ChartDescription, RefusesDamagedEnvelopes)
{
    EXPECT_THAT(faultOf("RGB_R RGB_G RGB_B\n1 2 3\n"), HasSubstr("no target description"));
    EXPECT_THAT(faultOf(with("<pages>2<", "<pages>two<")), HasSubstr("<pages> is no count"));
    EXPECT_THAT(faultOf(with("<rows>1<", "<rows>0<")), HasSubstr("<rows> is no count"));
    EXPECT_THAT(faultOf(with("<columns>1<", "<columns>99999999999<")), HasSubstr("<columns> is no count"));
    EXPECT_THAT(faultOf(with("7.50mm", "7.50in")), HasSubstr("<patchWidth> is no length"));
    EXPECT_THAT(faultOf(with("7.50mm", "0.00mm")), HasSubstr("patches have no size"));
    EXPECT_THAT(faultOf(with("1.00mm", "-1mm")), HasSubstr("<verticalGap> is no length"));
    EXPECT_THAT(faultOf(with(">RGB<", ">HSV<")), HasSubstr("neither CMYK nor RGB"));
    EXPECT_THAT(faultOf(with("\t<pages>2</pages>\n", "")), HasSubstr("<pages> is no count"));
}

TEST(ChartDescription, RefusesTablesThatDoNotFitTheEnvelope)
{
    EXPECT_THAT(faultOf(with("<pages>2<", "<pages>3<")), HasSubstr("another number of rows"));
    EXPECT_THAT(faultOf(with(">RGB<", ">CMYK<")), HasSubstr("other columns"));
    EXPECT_THAT(faultOf(with("SAMPLE_LOC", "LOCATION")), HasSubstr("other columns"));
    EXPECT_NE(faultOf(whole.substr(0, whole.find("2\tB1"))), "");
}
