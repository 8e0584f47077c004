// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Separation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr std::size_t inks = 4;
constexpr std::size_t black = 3;

/// How far a candidate is off, and how that changes with each ink.
struct Residual
{
    double value;
    Cmyk slopes;
};

/// The three colour channels, the wish for black and the ink limit.
using Residuals = std::array<Residual, 5>;

double totalInk(Cmyk const& device)
{
    return device[0] + device[1] + device[2] + device[black];
}

/// Percent of black wanted for a colour: none in the lights, all in the darkest shadow, less in strong colours.
double wantedBlack(Lab const& lab)
{
    constexpr double lightestWithBlack = 85;
    constexpr double darkest = 10;
    constexpr double chromaOfHalf = 45;
    double const depth = std::clamp((lightestWithBlack - lab[0]) / (lightestWithBlack - darkest), 0.0, 1.0);
    double const chroma = std::sqrt(lab[1] * lab[1] + lab[2] * lab[2]) / chromaOfHalf;
    return 100 * depth * depth / (1 + chroma * chroma);
}

/// A separation is the minimum of the squares of these.
class Goal
{
public:
    Goal(PrintTable const& table, Lab const& wanted, double lightnessWeight)
        : m_table(table), m_wanted(wanted), m_weights{lightnessWeight, 1, 1}, m_wantedBlack(wantedBlack(wanted))
    {
    }

    Residuals at(Cmyk const& device) const
    {
        // Black is a wish: it decides where many mixtures give the colour, and hardly pulls a colour off.
        constexpr double blackWeight = 0.02;
        constexpr double excessInkWeight = 10;

        PrintTable::Slopes slopes;
        Lab const lab = m_table.at(device, slopes);
        Residuals residuals{};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            residuals[channel].value = m_weights[channel] * (lab[channel] - m_wanted[channel]);
            for (std::size_t ink = 0; ink < inks; ++ink)
                residuals[channel].slopes[ink] = m_weights[channel] * slopes[ink][channel];
        }
        residuals[3].value = blackWeight * (device[black] - m_wantedBlack);
        residuals[3].slopes[black] = blackWeight;
        if (totalInk(device) > inkLimit) {
            residuals[4].value = excessInkWeight * (totalInk(device) - inkLimit);
            residuals[4].slopes.fill(excessInkWeight);
        }
        return residuals;
    }

private:
    PrintTable const& m_table;
    Lab m_wanted;
    Lab m_weights;
    double m_wantedBlack;
};

double sumOfSquares(Residuals const& residuals)
{
    double sum = 0;
    for (Residual const& residual : residuals)
        sum += residual.value * residual.value;
    return sum;
}

/// Solves a positive definite system of the inks' number: Gauss.
Cmyk solve(std::array<Cmyk, inks> matrix, Cmyk right)
{
    for (std::size_t pivot = 0; pivot < inks; ++pivot) {
        for (std::size_t i = pivot + 1; i < inks; ++i) {
            double const factor = matrix[i][pivot] / matrix[pivot][pivot];
            for (std::size_t j = pivot; j < inks; ++j)
                matrix[i][j] -= factor * matrix[pivot][j];
            right[i] -= factor * right[pivot];
        }
    }
    for (std::size_t i = inks; i-- > 0;) {
        for (std::size_t j = i + 1; j < inks; ++j)
            right[i] -= matrix[i][j] * right[j];
        right[i] /= matrix[i][i];
    }
    return right;
}

/// One damped Gauss-Newton step inside 0 to 100 percent.
Cmyk step(Cmyk const& device, Residuals const& residuals, double damping)
{
    Cmyk downhill{};
    std::array<Cmyk, inks> matrix{};
    for (Residual const& residual : residuals) {
        for (std::size_t i = 0; i < inks; ++i) {
            downhill[i] -= residual.slopes[i] * residual.value;
            for (std::size_t j = 0; j < inks; ++j)
                matrix[i][j] += residual.slopes[i] * residual.slopes[j];
        }
    }
    for (std::size_t i = 0; i < inks; ++i) {
        matrix[i][i] += damping;
        bool const stuck = (device[i] <= 0 && downhill[i] < 0) || (device[i] >= 100 && downhill[i] > 0);
        if (stuck) {
            for (std::size_t j = 0; j < inks; ++j)
                matrix[i][j] = matrix[j][i] = i == j ? 1 : 0;
            downhill[i] = 0;
        }
    }

    Cmyk next = solve(matrix, downhill);
    for (std::size_t i = 0; i < inks; ++i)
        next[i] = std::clamp(device[i] + next[i], 0.0, 100.0);
    return next;
}

} // namespace

Separated separate(PrintTable const& table, Lab const& wanted, double lightnessWeight)
{
    Goal const goal(table, wanted, lightnessWeight);
    Cmyk device{50, 50, 50, wantedBlack(wanted)};
    Residuals residuals = goal.at(device);
    double damping = 0.01;
    constexpr int steps = 60;
    for (int i = 0; i < steps; ++i) {
        Cmyk const next = step(device, residuals, damping);
        Residuals const nextResiduals = goal.at(next);
        if (sumOfSquares(nextResiduals) < sumOfSquares(residuals)) {
            device = next;
            residuals = nextResiduals;
            damping /= 4;
        } else {
            damping *= 8;
        }
    }

    double const chromaticLimit = inkLimit - device[black];
    double const chromaticInk = totalInk(device) - device[black];
    if (chromaticInk > chromaticLimit) {
        for (std::size_t ink = 0; ink < black; ++ink)
            device[ink] *= chromaticLimit / chromaticInk;
    }

    PrintTable::Slopes slopes;
    Lab const lab = table.at(device, slopes);
    double squared = 0;
    for (std::size_t channel = 0; channel < 3; ++channel)
        squared += (lab[channel] - wanted[channel]) * (lab[channel] - wanted[channel]);
    return {device, std::sqrt(squared)};
}
