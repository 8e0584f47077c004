// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Separation.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A simple print: each ink takes its share of lightness and leads to a colour, black takes most.
Lab colourOf(Cmyk const& device)
{
    double const light = (1 - 0.3 * device[0] / 100) * (1 - 0.4 * device[1] / 100) * (1 - 0.1 * device[2] / 100) *
                         (1 - 0.8 * device[3] / 100);
    double const colourful = 1 - 0.9 * device[3] / 100;
    return {100 * light, colourful * (0.7 * device[1] - 0.5 * device[0]),
            colourful * (0.9 * device[2] - 0.5 * device[0] - 0.1 * device[1])};
}

PrintTable makeTable()
{
    Axis const axis({0, 25, 50, 75, 100});
    return PrintTable({axis, axis, axis, axis}, colourOf);
}

double totalInk(Cmyk const& device)
{
    return device[0] + device[1] + device[2] + device[3];
}

} // namespace

TEST(Separation, MeetsColoursThatCanBePrinted)
{
    PrintTable const table = makeTable();
    PrintTable::Slopes slopes;
    for (Cmyk const& device : {Cmyk{50, 40, 40, 10}, Cmyk{80, 20, 30, 0}, Cmyk{10, 70, 60, 20}, Cmyk{30, 30, 30, 60}}) {
        Lab const wanted = table.at(device, slopes);
        Separated const found = separate(table, wanted, 1);
        EXPECT_LT(found.deltaE, 0.1);
        Lab const printed = table.at(found.device, slopes);
        EXPECT_NEAR(found.deltaE, std::hypot(printed[0] - wanted[0], printed[1] - wanted[1], printed[2] - wanted[2]),
                    1e-9);
    }
}

TEST(Separation, LeavesPaperBare)
{
    EXPECT_LT(totalInk(separate(makeTable(), {100, 0, 0}, 1).device), 1e-6);
}

TEST(Separation, KeepsToTheInkLimitAndTheRangeOfInks)
{
    PrintTable const table = makeTable();
    for (double const lightness : {0.0, 5.0, 20.0, 100.0}) {
        for (double const a : {-128.0, 0.0, 100.0}) {
            for (double const b : {-128.0, 0.0, 100.0}) {
                Cmyk const device = separate(table, {lightness, a, b}, 1).device;
                EXPECT_LE(totalInk(device), inkLimit + 1e-9);
                for (double const percent : device) {
                    EXPECT_GE(percent, 0);
                    EXPECT_LE(percent, 100);
                }
            }
        }
    }
}

TEST(Separation, GivesMoreBlackToDarkerAndGreyerColours)
{
    PrintTable const table = makeTable();
    auto const blackOf = [&table](Lab const& lab) { return separate(table, lab, 1).device[3]; };
    EXPECT_GT(blackOf({40, 0, 0}), blackOf({60, 0, 0}) + 5);
    EXPECT_GT(blackOf({40, 0, 0}), blackOf({40, 25, 15}) + 5);
}

TEST(Separation, KeepsLightnessOfUnprintableColoursTheMoreItWeighs)
{
    PrintTable const table = makeTable();
    PrintTable::Slopes slopes;
    Lab const wanted{90, 70, 40};
    double const kept = table.at(separate(table, wanted, 4).device, slopes)[0];
    double const given = table.at(separate(table, wanted, 0.25).device, slopes)[0];
    EXPECT_GT(kept, given + 1);
    EXPECT_LT(std::abs(kept - 90), std::abs(given - 90));
}
