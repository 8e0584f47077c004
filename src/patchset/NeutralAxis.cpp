// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "NeutralAxis.h"

#include "NormalEquations.h"

#include <algorithm>
#include <cstddef>

namespace
{

constexpr std::size_t inks = 3; // of the four; black is given

// Device values, and how far their colour is from the wanted one.
struct Match
{
    PrinterColor color;
    float squaredDeltaE = 0;
};

// Looks for greys of a given black.
class GreySearch
{
public:
    GreySearch(Printer const& where, double inkLimit)
        : printer(where), limit(static_cast<float>(inkLimit)), paper(where.colorOf(where.paper()).lab)
    {
    }

    Lab const& getPaper() const { return paper; }

    /// The best values for a grey, from a first guess. The guess's black stays.
    Match find(float lightness, DevicePercent const& guess) const
    {
        Lab const wanted = greyOf(paper, lightness);
        Match best = matchOf(guess, wanted);
        double damping = 0.01;
        for (int step = 0; step < mostSteps && best.squaredDeltaE > 1e-4f; ++step) {
            Match const next = matchOf(movedFrom(best.color, wanted, damping), wanted);
            bool const isBetter = next.squaredDeltaE < best.squaredDeltaE;
            damping = isBetter ? damping / 4 : damping * 8;
            if (isBetter)
                best = next;
            else if (damping > 1e6)
                break;
        }
        return best;
    }

private:
    static constexpr int mostSteps = 40;

    Match matchOf(DevicePercent const& device, Lab const& wanted) const
    {
        Match match{printer.colorOf(device), 0};
        match.squaredDeltaE = squaredDeltaE(match.color.lab, wanted);
        return match;
    }

    // A damped Gauss-Newton step.
    DevicePercent movedFrom(PrinterColor const& from, Lab const& wanted, double damping) const
    {
        constexpr float difference = 1;
        std::vector<PrinterColor> moved(inks, from);
        for (std::size_t i = 0; i < inks; ++i)
            moved[i].device[i] += moved[i].device[i] > 50 ? -difference : difference;
        printer.computeColors(moved);
        auto const slope = [&](std::size_t ink, std::size_t c) {
            return static_cast<double>((moved[ink].lab.values[c] - from.lab.values[c]) /
                                       (moved[ink].device[ink] - from.device[ink]));
        };
        NormalEquations<inks> equations{};
        for (std::size_t row = 0; row < inks; ++row) {
            for (std::size_t c = 0; c < 3; ++c) {
                for (std::size_t column = 0; column < inks; ++column)
                    equations[row][column] += slope(row, c) * slope(column, c);
                equations[row][inks] += slope(row, c) * static_cast<double>(wanted.values[c] - from.lab.values[c]);
            }
            equations[row][row] += damping;
        }
        auto const move = solve(equations);
        DevicePercent device = from.device;
        for (std::size_t i = 0; i < inks; ++i)
            device[i] = std::clamp(device[i] + static_cast<float>(std::clamp(move[i], -100.0, 100.0)), 0.0f, 100.0f);
        keepWithinLimit(device);
        return device;
    }

    void keepWithinLimit(DevicePercent& device) const
    {
        float const sum = device[0] + device[1] + device[2];
        float const room = std::max(limit - device[3], 0.0f);
        if (printer.getColorSpace() != CMYK || sum <= room)
            return;
        for (std::size_t i = 0; i < inks; ++i)
            device[i] *= room / sum;
    }

    Printer const& printer;
    float limit;
    Lab paper;
};

constexpr float mostSquaredDeltaE = 2 * 2;

// The darkest grey with this black: halves the range between the paper and black.
Match darkestGrey(GreySearch const& search, DevicePercent const& start)
{
    Match darkest = search.find(search.getPaper().values[0], start);
    float reached = search.getPaper().values[0];
    float missed = 0;
    for (int step = 0; step < 12; ++step) {
        float const lightness = (reached + missed) / 2;
        Match const grey = search.find(lightness, darkest.color.device);
        bool const isReached = grey.squaredDeltaE < 1;
        (isReached ? reached : missed) = lightness;
        if (isReached)
            darkest = grey;
    }
    return darkest;
}

} // namespace

std::vector<DeviceSteps> neutralValues(Printer const& printer, ValueScale const& scale, double inkLimit, int steps)
{
    std::vector<DeviceSteps> values;
    GreySearch const search(printer, inkLimit);
    float const paper = search.getPaper().values[0];
    bool const hasBlack = printer.getColorSpace() == CMYK;
    for (float const fullBlack : {0.0f, 100.0f}) {
        if (fullBlack > 0 && !hasBlack)
            break;
        DevicePercent start = printer.paper();
        start[3] = fullBlack;
        float const darkest = darkestGrey(search, start).color.lab.values[0];
        DevicePercent guess = printer.paper();
        for (int step = 1; step <= steps; ++step) {
            float const share = static_cast<float>(step) / static_cast<float>(steps);
            guess[3] = fullBlack * (share * share);
            Match const grey = search.find(paper + (darkest - paper) * share, guess);
            guess = grey.color.device;
            if (grey.squaredDeltaE <= mostSquaredDeltaE)
                values.push_back(scale.nearestWithin(guess, inkLimit));
        }
    }
    return values;
}
