// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <set>
#include <sstream>

using testing::AllOf;
using testing::Each;
using testing::Ge;
using testing::Le;

namespace
{

using Row = std::vector<int>;

std::string readHeader(std::string const& name)
{
    std::ifstream stream(sourceFile("examples/" + name));
    std::string header;
    std::getline(stream, header);
    return header;
}

std::vector<Row> readRows(std::string const& name)
{
    std::ifstream stream(sourceFile("examples/" + name));
    std::string line;
    std::getline(stream, line);
    std::vector<Row> rows;
    while (std::getline(stream, line)) {
        std::istringstream words(line);
        rows.emplace_back();
        for (int value; words >> value;)
            rows.back().push_back(value);
    }
    return rows;
}

void expectDistinctRgb(std::vector<Row> const& rows)
{
    EXPECT_EQ(std::set<Row>(rows.begin(), rows.end()).size(), rows.size());
    for (Row const& row : rows) {
        EXPECT_EQ(row.size(), 3U);
        EXPECT_THAT(row, Each(AllOf(Ge(0), Le(255))));
    }
}

/// A nine-step scale of 0 to 255, rounded by hand.
constexpr std::array nineSteps{0, 32, 64, 96, 128, 159, 191, 223, 255};

} // namespace

TEST(Examples, NameTheirColourSpaceInTheHeader)
{
    EXPECT_EQ(readHeader("it8.7-4-cmyk.txt"), "CMYK_C CMYK_M CMYK_Y CMYK_K");
    EXPECT_EQ(readHeader("rgb-cube-897.txt"), "RGB_R RGB_G RGB_B");
    EXPECT_EQ(readHeader("rgb-24.txt"), "RGB_R RGB_G RGB_B");
    EXPECT_EQ(readHeader("rgb-near-neutrals-231.txt"), "RGB_R RGB_G RGB_B");
}

TEST(Examples, ListTheInksOfTheCharacterisationDataInItsOrder)
{
    std::ifstream stream(sourceFile("res/fogra39/FOGRA39L.ti3"));
    std::vector<Row> inks;
    for (std::string line; std::getline(stream, line);) {
        std::istringstream words(line);
        int number = 0;
        Row row(4);
        if (words >> number >> row[0] >> row[1] >> row[2] >> row[3])
            inks.push_back(row);
    }
    EXPECT_EQ(inks.size(), 1617U);
    EXPECT_EQ(readRows("it8.7-4-cmyk.txt"), inks);
}

TEST(Examples, HoldAFullCubeOfNineSteps)
{
    std::vector<Row> const rows = readRows("rgb-cube-897.txt");
    EXPECT_EQ(rows.size(), 897U);
    expectDistinctRgb(rows);

    std::set<Row> const found(rows.begin(), rows.end());
    for (int const red : nineSteps)
        for (int const green : nineSteps)
            for (int const blue : nineSteps)
                EXPECT_TRUE(found.contains({red, green, blue})) << red << ' ' << green << ' ' << blue;
}

TEST(Examples, HoldAGreyAxisTenTimesAsFineAsTheCube)
{
    std::vector<int> greys;
    for (Row const& row : readRows("rgb-cube-897.txt")) {
        if (row[0] == row[1] && row[1] == row[2])
            greys.push_back(row[0]);
    }
    std::ranges::sort(greys);
    ASSERT_EQ(greys.size(), 81U);
    for (std::size_t i = 0; i < nineSteps.size(); ++i)
        EXPECT_EQ(greys[10 * i], nineSteps[i]);
    for (std::size_t i = 1; i < greys.size(); ++i)
        EXPECT_THAT(greys[i] - greys[i - 1], AllOf(Ge(3), Le(4))); // a step is 255 / 80 = 3.19
}

TEST(Examples, RefineTheEdgesToThePureHues)
{
    std::vector<Row> const rows = readRows("rgb-cube-897.txt");
    auto const count = [&rows](auto const& isOnEdge) { return std::ranges::count_if(rows, isOnEdge); };
    // 17 steps, both ends with them.
    EXPECT_EQ(count([](Row const& row) { return row[1] == 0 && row[2] == 0; }), 17);        // black to red
    EXPECT_EQ(count([](Row const& row) { return row[0] == 255 && row[1] == row[2]; }), 17); // red to white
    EXPECT_EQ(count([](Row const& row) { return row[0] == 0 && row[1] == row[2]; }), 17);   // black to cyan
    EXPECT_EQ(count([](Row const& row) { return row[1] == 255 && row[2] == 255; }), 17);    // cyan to white
}

TEST(Examples, HoldGreysWithSlightCasts)
{
    std::vector<Row> const rows = readRows("rgb-near-neutrals-231.txt");
    EXPECT_EQ(rows.size(), 231U);
    expectDistinctRgb(rows);
    for (Row const& row : rows) {
        auto const [lowest, highest] = std::ranges::minmax(row);
        EXPECT_TRUE(highest - lowest == 0 || highest - lowest == 8);
    }
    for (int const grey : {64, 67, 112, 160}) {
        EXPECT_THAT(rows, testing::Contains(Row{grey, grey, grey}));
        EXPECT_THAT(rows, testing::Contains(Row{grey, grey + 8, grey}));
        EXPECT_THAT(rows, testing::Contains(Row{grey, grey, grey - 8}));
    }
}

TEST(Examples, HoldASmallTableOfDistinctColours)
{
    std::vector<Row> const rows = readRows("rgb-24.txt");
    EXPECT_EQ(rows.size(), 24U);
    expectDistinctRgb(rows);
    for (int corner = 0; corner < 8; ++corner) {
        Row const colour{corner & 4 ? 255 : 0, corner & 2 ? 255 : 0, corner & 1 ? 255 : 0};
        EXPECT_THAT(rows, testing::Contains(colour));
    }
}
