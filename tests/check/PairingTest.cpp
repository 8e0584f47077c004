// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Pairing.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Four patches in two columns, each on a sheet of its own.
ChartReference smallChart()
{
    return readReference("<targetdescription>\n<pages>2</pages><columns>1</columns><rows>2</rows>\n<targetdefinition>\n"
                         "IS12642\nBEGIN_DATA_FORMAT\nSAMPLE_ID\tSAMPLE_LOC\tCONTROL\tRGB_R\tRGB_G\tRGB_B\n"
                         "END_DATA_FORMAT\nBEGIN_DATA\n1\tA1\tN\t255\t255\t255\n2\tA2\tN\t255\t0\t0\n"
                         "3\tB1\tN\t0\t255\t0\n4\tB2\tI\t255\t255\t255\nEND_DATA\n</targetdefinition>\n"
                         "</targetdescription>\n")
        .chart;
}

Measurement file(std::string const& fields, std::string const& rows, std::string const& path = "m.txt")
{
    return readMeasurement("CGATS.17\nBEGIN_DATA_FORMAT\n" + fields + "\tLAB_L\tLAB_A\tLAB_B\nEND_DATA_FORMAT\n" +
                               "BEGIN_DATA\n" + rows + "END_DATA\n",
                           path);
}

std::vector<double> lightnesses(PairedMeasurement const& measurement)
{
    std::vector<double> values;
    for (auto const& reading : measurement.readings)
        values.push_back(reading.value_or(LabColor{-1, 0, 0})[0]);
    return values;
}

Pairing pair(std::vector<Measurement> const& files)
{
    return pairMeasurements(smallChart(), files);
}

TEST(Pairing, FindsPatchesByTheirPlaces)
{
    Pairing const pairing = pair({file("SAMPLE_ID\tSAMPLE_LOC", "1\tB2\t1\t0\t0\n2\tA1\t2\t0\t0\n")});
    ASSERT_EQ(pairing.measurements.size(), 1U);
    EXPECT_THAT(lightnesses(pairing.measurements[0]), ElementsAre(2, -1, -1, 1));
}

TEST(Pairing, FindsPatchesByPlacesInTheColumnOfNames)
{
    Pairing const pairing = pair({file("SAMPLE_ID\tSAMPLE_NAME", "9\tA01\t1\t0\t0\n8\t2B\t2\t0\t0\n")});
    EXPECT_THAT(lightnesses(pairing.measurements.at(0)), ElementsAre(1, -1, -1, 2));
}

TEST(Pairing, FindsPatchesByTheirIds)
{
    Pairing const pairing = pair({file("SAMPLE_ID", "3\t1\t0\t0\n002\t2\t0\t0\n")});
    EXPECT_THAT(lightnesses(pairing.measurements.at(0)), ElementsAre(-1, 2, 1, -1));
}

TEST(Pairing, FindsPatchesByTheirDeviceValuesOnAnyScale)
{
    for (char const* rows : {"0\t255\t0\t1\t0\t0\n255\t0\t0\t2\t0\t0\n255\t255\t255\t3\t0\t0\n255\t255\t255\t4\t0\t0\n",
                             "0\t100\t0\t1\t0\t0\n100\t0\t0\t2\t0\t0\n100\t100\t100\t3\t0\t0\n100\t100\t100\t4\t0\t0\n",
                             "0\t1\t0\t1\t0\t0\n1\t0\t0\t2\t0\t0\n1\t1\t1\t3\t0\t0\n1\t1\t1\t4\t0\t0\n"}) {
        Pairing const pairing = pair({file("RGB_R\tRGB_G\tRGB_B", rows)});
        EXPECT_THAT(lightnesses(pairing.measurements.at(0)), ElementsAre(3, 2, 1, 4));
    }
}

TEST(Pairing, TakesDeviceValuesWhereThePlacesContradictAllOfThem)
{
    Pairing const pairing =
        pair({file("SAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B", "A1\t0\t255\t0\t1\t0\t0\nA2\t255\t255\t255\t2\t0\t0\n"
                                                      "B1\t255\t0\t0\t3\t0\t0\nB2\t255\t255\t255\t4\t0\t0\n")});
    ASSERT_EQ(pairing.fault, "");
    EXPECT_THAT(lightnesses(pairing.measurements.at(0)), ElementsAre(2, 3, 1, 4));
    ASSERT_EQ(pairing.measurements[0].findings.size(), 1U);
    EXPECT_EQ(pairing.measurements[0].findings[0].kind, FindingKind::order);
}

TEST(Pairing, RefusesTheMeasurementOfAnotherChart)
{
    Pairing const pairing =
        pair({file("SAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B", "A1\t255\t255\t255\t1\t0\t0\nA2\t9\t9\t9\t2\t0\t0\n")});
    EXPECT_THAT(pairing.fault, HasSubstr("m.txt: the device values of 1 rows"));
    EXPECT_THAT(pairing.fault, HasSubstr("A2 (line 7)"));
    EXPECT_THAT(pair({file("SAMPLE_LOC", "X9\t1\t0\t0\n")}).fault, HasSubstr("neither places"));
}

TEST(Pairing, JoinsFilesOfDifferentSheets)
{
    Pairing const pairing =
        pair({file("SAMPLE_LOC", "A1\t1\t0\t0\nA2\t2\t0\t0\n"), file("SAMPLE_LOC", "B1\t3\t0\t0\nB2\t4\t0\t0\n")});
    ASSERT_EQ(pairing.measurements.size(), 1U);
    EXPECT_THAT(lightnesses(pairing.measurements[0]), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(pairing.measurements[0].files, ElementsAre(0, 1));
    EXPECT_EQ(pairing.measurements[0].rows[2].file, 1U);
    EXPECT_EQ(pairing.measurements[0].rows[2].row, 0U);
}

TEST(Pairing, KeepsMeasurementsOfTheSamePatchesApart)
{
    Pairing const pairing = pair({file("SAMPLE_LOC", "A1\t1\t0\t0\n"), file("SAMPLE_LOC", "A1\t3\t0\t0\n")});
    ASSERT_EQ(pairing.measurements.size(), 2U);
    EXPECT_THAT(lightnesses(pairing.measurements[1]), ElementsAre(3, -1, -1, -1));
}

TEST(Pairing, ReportsRowsWithoutAPatch)
{
    Pairing const pairing = pair({file("SAMPLE_LOC", "A1\t1\t0\t0\nA1\t2\t0\t0\nA3\t3\t0\t0\nB1\t4\t0\t0\n")});
    auto const& findings = pairing.measurements.at(0).findings;
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0].kind, FindingKind::extra);
    EXPECT_THAT(findings[0].text, HasSubstr("has a reading already"));
    EXPECT_THAT(findings[1].patches, ElementsAre("A3"));
    EXPECT_EQ(lightnesses(pairing.measurements[0])[0], 1);
}

TEST(Pairing, ReportsValuesThatNoColourHas)
{
    Pairing const pairing =
        pair({file("SAMPLE_LOC", "A1\t-5.5\t0\t0\nA2\t110.5\t0\t0\nB1\tnan\t0\t0\nB2\t110\t0\t0\n")});
    auto const& measurement = pairing.measurements.at(0);
    ASSERT_EQ(measurement.findings.size(), 3U);
    for (Finding const& finding : measurement.findings)
        EXPECT_EQ(finding.kind, FindingKind::impossible);
    EXPECT_EQ(measurement.findings[0].text, "line 6, patch A1: L* is -5.5, outside 0 to 110");
    EXPECT_THAT(measurement.findings[2].patches, ElementsAre("B1"));
    EXPECT_EQ(measurement.findings[2].sheet, 2U);
    EXPECT_THAT(lightnesses(measurement), ElementsAre(-1, -1, -1, 110));
}

TEST(Pairing, BearsNumbersOfAnySize)
{
    Pairing const pairing =
        pair({file("SAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B", "A1\t1e300\t1e-300\t0\t1e308\t-1e308\t1e308\n")});
    EXPECT_NE(pairing.fault, "");
    EXPECT_THAT(pair({file("SAMPLE_LOC", "A1\t50\t1e308\t1e308\n")}).fault, IsEmpty());
}

} // namespace
