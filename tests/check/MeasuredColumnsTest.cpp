// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasuredColumns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

MeasuredColumns columnsOf(std::vector<std::string> const& names, std::string const& norm = "")
{
    DataTable table;
    for (std::string const& name : names)
        table.fields.push_back({name, 0});
    if (!norm.empty())
        table.keywords.push_back({"SPECTRAL_NORM", norm, 1});
    return MeasuredColumns(table);
}

std::vector<double> wavelengthsOf(MeasuredColumns const& measured)
{
    std::vector<double> wavelengths;
    for (SpectralColumn const& band : measured.bands)
        wavelengths.push_back(band.wavelength);
    return wavelengths;
}

TEST(MeasuredColumns, AreFoundInAnyOrderAndSpelling)
{
    MeasuredColumns const measured = columnsOf({"SAMPLE_LOC", "lab b", "LAB_L", "Lab_A"});
    EXPECT_EQ(measured.kind, MeasuredKind::lab);
    EXPECT_THAT(measured.columns, ElementsAre(2, 3, 1));
}

TEST(MeasuredColumns, AreNoneWhereOneOfThreeIsMissing)
{
    EXPECT_EQ(columnsOf({"LAB_L", "LAB_A"}).kind, MeasuredKind::none);
    EXPECT_EQ(columnsOf({"XYZ_X", "XYZ_Y"}).kind, MeasuredKind::none);
}

TEST(MeasuredColumns, AreThoseOfXyzBesideASpectrum)
{
    MeasuredColumns const measured =
        columnsOf({"nm400", "nm450", "nm500", "nm550", "nm600", "XYZ_X", "XYZ_Y", "XYZ_Z"});
    EXPECT_EQ(measured.kind, MeasuredKind::xyz);
    EXPECT_THAT(measured.columns, ElementsAre(5, 6, 7));
}

TEST(MeasuredColumns, AreASpectrumFromFiveBandsOn)
{
    EXPECT_EQ(columnsOf({"nm400", "nm450", "nm500", "nm550"}).kind, MeasuredKind::none);
    EXPECT_EQ(columnsOf({"nm400", "nm450", "nm500", "nm550", "nm600"}).kind, MeasuredKind::spectrum);
}

TEST(MeasuredColumns, StandInTheOrderOfTheirWavelengths)
{
    MeasuredColumns const measured = columnsOf({"600nm", "R_550", "SPEC_400", "SPECTRAL_NM500", "SPECTRAL_450"});
    EXPECT_THAT(wavelengthsOf(measured), ElementsAre(400, 450, 500, 550, 600));
    ASSERT_EQ(measured.bands.size(), 5U);
    EXPECT_EQ(measured.bands[0].column, 2U);
    EXPECT_EQ(measured.bands[4].column, 0U);
}

TEST(MeasuredColumns, HaveWavelengthsFrom300To1100Nanometres)
{
    EXPECT_THAT(wavelengthsOf(columnsOf({"nm299", "nm300", "nm1100", "nm1101"})), ElementsAre(300, 1100));
}

TEST(MeasuredColumns, AreNoBandsWithoutAPlainWavelength)
{
    EXPECT_THAT(columnsOf({"R", "nm", "nm4e2", "nm-400", "nm400a", "RGB_R", "D_400", "nm4.0.0"}).bands, IsEmpty());
}

TEST(MeasuredColumns, TakeTheirWavelengthsFromTheColumnBefore)
{
    MeasuredColumns const measured = columnsOf({"SAMPLE_LOC", "SPECTRAL_NM", "SPECTRAL_DEC", "SPECTRAL_DEC"});
    ASSERT_EQ(measured.bands.size(), 1U);
    EXPECT_EQ(measured.bands[0].column, 2U);
    EXPECT_EQ(measured.bands[0].wavelengthColumn, 1U);
    EXPECT_EQ(measured.bands[0].wavelength, 0);
}

TEST(MeasuredColumns, AreOnTheScaleThatTheirNamesTell)
{
    EXPECT_EQ(columnsOf({"SPECTRAL_NM", "SPECTRAL_DEC"}).statedScale, 1);
    EXPECT_EQ(columnsOf({"SPECTRAL_NM", "SPECTRAL_PCT"}).statedScale, 100);
    EXPECT_EQ(columnsOf({"nm400", "nm450"}).statedScale, 0);
}

TEST(MeasuredColumns, AreOnTheScaleOfTheKeywordRatherThanOfTheirNames)
{
    EXPECT_EQ(columnsOf({"SPECTRAL_NM", "SPECTRAL_PCT"}, "1.0").statedScale, 1);
    EXPECT_EQ(columnsOf({"nm400"}, "100").statedScale, 100);
    EXPECT_EQ(columnsOf({"nm400"}, "50").statedScale, 0);
}

} // namespace
