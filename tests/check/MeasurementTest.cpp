// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Measurement.h"

#include "support/DecimalCommaLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

std::string cgats(std::string const& fields, std::string const& rows, std::string const& keywords = "")
{
    return "CGATS.17\n" + keywords + "BEGIN_DATA_FORMAT\n" + fields + "\nEND_DATA_FORMAT\nBEGIN_DATA\n" + rows +
           "END_DATA\n";
}

LabColor firstColor(Measurement const& measurement)
{
    return measurement.rows.empty() ? LabColor{} : measurement.rows[0].lab.value_or(LabColor{});
}

TEST(Measurement, ReadsPlacesAndColours)
{
    Measurement const measurement = readMeasurement(
        cgats("SAMPLE_ID\tSAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B\tLAB_L\tLAB_A\tLAB_B", "7\tC12\t255\t0\t51\t50.5\t-3\t4e1\n"),
        "m.txt");
    ASSERT_EQ(measurement.rows.size(), 1U);
    EXPECT_EQ(measurement.rows[0].place, "C12");
    EXPECT_EQ(measurement.rows[0].id, "7");
    EXPECT_EQ(measurement.deviceSpace, RGB);
    EXPECT_THAT(measurement.rows[0].device, ElementsAre(255, 0, 51, 0));
    EXPECT_EQ(firstColor(measurement), (LabColor{50.5, -3, 40}));
    EXPECT_EQ(measurement.kind, "CIELAB");
}

TEST(Measurement, ReadsACsv)
{
    Measurement const measurement =
        readMeasurement("SAMPLE_LOC;LAB_L;LAB_A;LAB_B\r\nA1;50,5;-3;4\r\nA2;60;1,5;2\r\n", "m.csv");
    ASSERT_EQ(measurement.rows.size(), 2U);
    EXPECT_EQ(firstColor(measurement), (LabColor{50.5, -3, 4}));
}

TEST(Measurement, IsTheSameUnderALocaleWithDecimalCommas)
{
    DecimalCommaLocale const locale;
    Measurement const measurement =
        readMeasurement(cgats("SAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B", "A1\t50.5\t0.25\t0\n"), "");
    EXPECT_EQ(firstColor(measurement), (LabColor{50.5, 0.25, 0}));
}

// Y of 1/8 is L* 42.
TEST(Measurement, ReadsXyzOnEitherScale)
{
    for (char const* row : {"A1\t0.120525\t0.125\t0.1031125\n", "A1\t12.0525\t12.5\t10.31125\n"}) {
        LabColor const lab = firstColor(readMeasurement(cgats("SAMPLE_LOC\tXYZ_X\tXYZ_Y\tXYZ_Z", row), ""));
        EXPECT_THAT(lab, ElementsAre(DoubleNear(42, 1e-9), DoubleNear(0, 1e-9), DoubleNear(0, 1e-9)));
    }
}

// Flat spectra of 12.5 %, in the spellings of many programs.
TEST(Measurement, ReadsSpectraOfAllSpellings)
{
    for (std::string const spelling : {"SPECTRAL_NM", "SPECTRAL_NM_", "SPECTRAL_", "SPEC_", "nm", "NM_", "R_"})
        for (std::string const value : {"0.125", "12.5"}) {
            std::string fields = "SAMPLE_NAME";
            std::string row = "A1";
            for (int wavelength = 380; wavelength <= 730; wavelength += 10) {
                fields += "\t" + spelling + std::to_string(wavelength);
                row += "\t" + value;
            }
            Measurement const measurement = readMeasurement(cgats(fields, row + "\n"), "");
            EXPECT_NEAR(firstColor(measurement)[0], 42, 1e-9) << spelling << value;
            EXPECT_THAT(measurement.kind, HasSubstr("36 bands"));
        }
}

TEST(Measurement, ReadsSpectraInPairsOfColumns)
{
    std::string fields = "SAMPLE_LOC";
    std::string row = "A1";
    for (int wavelength = 400; wavelength <= 700; wavelength += 20) {
        fields += "\tSPECTRAL_NM\tSPECTRAL_PCT";
        row += "\t" + std::to_string(wavelength) + "\t1.25";
    }
    EXPECT_NEAR(firstColor(readMeasurement(cgats(fields, row + "\n"), ""))[0], labOfXyz({0, 0.0125, 0})[0], 1e-9);
}

TEST(Measurement, TakesTheStatedScaleOfSpectra)
{
    std::string const fields = "SAMPLE_LOC\tnm400\tnm450\tnm500\tnm550\tnm600";
    std::string const row = "A1\t1.25\t1.25\t1.25\t1.25\t1.25\n";
    EXPECT_NEAR(firstColor(readMeasurement(cgats(fields, row, "SPECTRAL_NORM\t\"100\"\n"), ""))[0],
                labOfXyz({0, 0.0125, 0})[0], 1e-9);
}

TEST(Measurement, PrefersLabToXyzAndToSpectra)
{
    Measurement const measurement =
        readMeasurement(cgats("SAMPLE_LOC\tXYZ_X\tXYZ_Y\tXYZ_Z\tLAB_L\tLAB_A\tLAB_B", "A1\t1\t1\t1\t33\t1\t2\n"), "");
    EXPECT_EQ(firstColor(measurement), (LabColor{33, 1, 2}));
}

TEST(Measurement, KeepsARowWhoseValueIsNoNumber)
{
    Measurement const measurement =
        readMeasurement(cgats("SAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B", "A1\tnan\t0\t0\nA2\t50\t0\t0\n"), "");
    ASSERT_EQ(measurement.rows.size(), 2U);
    EXPECT_FALSE(measurement.rows[0].lab.has_value());
    EXPECT_THAT(measurement.rows[0].fault, HasSubstr("LAB_L is \"nan\""));
    EXPECT_TRUE(measurement.rows[1].lab.has_value());
}

TEST(Measurement, TakesARowOfEmptyCellsForNotRead)
{
    Measurement const measurement =
        readMeasurement(cgats("SAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B", "A1\t\t\t\nA2\t50\t0\t0\n"), "");
    ASSERT_EQ(measurement.rows.size(), 2U);
    EXPECT_FALSE(measurement.rows[0].lab.has_value());
    EXPECT_EQ(measurement.rows[0].fault, "");
}

TEST(Measurement, RefusesTablesWithoutMeasuredValues)
{
    Measurement const measurement = readMeasurement(cgats("SAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B", "A1\t1\t2\t3\n"), "");
    ASSERT_EQ(measurement.faults.total(), 1U);
    EXPECT_THAT(measurement.faults.kept()[0].text, HasSubstr("LAB_L"));
}

TEST(Measurement, RefusesRowsWithAMissingCell)
{
    Measurement const measurement =
        readMeasurement(cgats("SAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B", "A1\t50\t0\nA2\t50\t0\t0\n"), "");
    ASSERT_EQ(measurement.faults.total(), 1U);
    EXPECT_EQ(measurement.faults.kept()[0].place.line, 6U);
}

TEST(Measurement, RefusesATableWithoutRows)
{
    EXPECT_FALSE(readMeasurement(cgats("SAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B", ""), "").faults.isEmpty());
    EXPECT_FALSE(readMeasurement("", "").faults.isEmpty());
}

} // namespace
