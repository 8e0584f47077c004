// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Spline.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr std::size_t inks = 4;
constexpr std::size_t trendTerms = 1 + inks;
constexpr std::size_t labChannels = 3;

Cmyk fractions(Cmyk const& percent)
{
    return {percent[0] / 100, percent[1] / 100, percent[2] / 100, percent[3] / 100};
}

double cubedDistance(Cmyk const& p, Cmyk const& q)
{
    double squared = 0;
    for (std::size_t i = 0; i < inks; ++i)
        squared += (p[i] - q[i]) * (p[i] - q[i]);
    return squared * std::sqrt(squared);
}

double trendTerm(Cmyk const& device, std::size_t term)
{
    return term == 0 ? 1 : device[term - 1];
}

/// Solves a linear system whose rows end with the right-hand sides of the Lab channels: Gauss, pivoting by rows.
std::vector<Lab> solve(std::vector<std::vector<double>> rows)
{
    std::size_t const unknowns = rows.size();
    std::size_t const columns = unknowns + labChannels;
    for (std::size_t pivot = 0; pivot < unknowns; ++pivot) {
        auto const largest =
            std::max_element(rows.begin() + static_cast<std::ptrdiff_t>(pivot), rows.end(),
                             [pivot](auto const& a, auto const& b) { return std::abs(a[pivot]) < std::abs(b[pivot]); });
        std::swap(rows[pivot], *largest);
        for (std::size_t i = pivot + 1; i < unknowns; ++i) {
            double const factor = rows[i][pivot] / rows[pivot][pivot];
            double* const target = rows[i].data();
            double const* const source = rows[pivot].data();
            for (std::size_t j = pivot + 1; j < columns; ++j)
                target[j] -= factor * source[j];
        }
    }

    std::vector<Lab> solution(unknowns);
    for (std::size_t i = unknowns; i-- > 0;) {
        for (std::size_t channel = 0; channel < labChannels; ++channel) {
            double sum = rows[i][unknowns + channel];
            for (std::size_t j = i + 1; j < unknowns; ++j)
                sum -= rows[i][j] * solution[j][channel];
            solution[i][channel] = sum / rows[i][i];
        }
    }
    return solution;
}

} // namespace

Spline::Spline(std::vector<MeasuredPatch> const& patches)
{
    for (MeasuredPatch const& patch : patches)
        m_centres.push_back(fractions(patch.device));

    std::size_t const count = patches.size();
    std::size_t const unknowns = count + trendTerms;
    std::vector<std::vector<double>> rows(unknowns, std::vector<double>(unknowns + labChannels));
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < count; ++j)
            rows[i][j] = cubedDistance(m_centres[i], m_centres[j]);
        for (std::size_t term = 0; term < trendTerms; ++term) {
            rows[i][count + term] = trendTerm(m_centres[i], term);
            rows[count + term][i] = trendTerm(m_centres[i], term);
        }
        std::ranges::copy(patches[i].lab, rows[i].begin() + static_cast<std::ptrdiff_t>(unknowns));
    }
    m_weights = solve(std::move(rows));
}

Lab Spline::at(Cmyk const& device) const
{
    Cmyk const position = fractions(device);
    Lab lab{};
    auto const add = [&lab](double amount, Lab const& weight) {
        for (std::size_t channel = 0; channel < labChannels; ++channel)
            lab[channel] += amount * weight[channel];
    };
    for (std::size_t i = 0; i < m_centres.size(); ++i)
        add(cubedDistance(position, m_centres[i]), m_weights[i]);
    for (std::size_t term = 0; term < trendTerms; ++term)
        add(trendTerm(position, term), m_weights[m_centres.size() + term]);
    return lab;
}
