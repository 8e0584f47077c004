// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Spectrum.h"

#include <algorithm>
#include <cstddef>

namespace
{

struct ObserverRow
{
    double x;
    double y;
    double z;
    double illuminant; // relative power of D50
};

constexpr double firstWavelength = 380;
constexpr double wavelengthStep = 10;

constexpr ObserverRow observer[] = {
    {0.001368, 0.000039, 0.006450, 24.49},  {0.004243, 0.000120, 0.020050, 29.87},
    {0.014310, 0.000396, 0.067850, 49.31},  {0.043510, 0.001210, 0.207400, 56.51},
    {0.134380, 0.004000, 0.645600, 60.03},  {0.283900, 0.011600, 1.385600, 57.82},
    {0.348280, 0.023000, 1.747060, 74.82},  {0.336200, 0.038000, 1.772110, 87.25},
    {0.290800, 0.060000, 1.669200, 90.61},  {0.195360, 0.090980, 1.287640, 91.37},
    {0.095640, 0.139020, 0.812950, 95.11},  {0.032010, 0.208020, 0.465180, 91.96},
    {0.004900, 0.323000, 0.272000, 95.72},  {0.009300, 0.503000, 0.158200, 96.61},
    {0.063270, 0.710000, 0.078250, 97.13},  {0.165500, 0.862000, 0.042160, 102.10},
    {0.290400, 0.954000, 0.020300, 100.75}, {0.433450, 0.994950, 0.008750, 102.32},
    {0.594500, 0.995000, 0.003900, 100.00}, {0.762100, 0.952000, 0.002100, 97.74},
    {0.916300, 0.870000, 0.001650, 98.92},  {1.026300, 0.757000, 0.001100, 93.50},
    {1.062200, 0.631000, 0.000800, 97.69},  {1.002600, 0.503000, 0.000340, 99.27},
    {0.854450, 0.381000, 0.000190, 99.04},  {0.642400, 0.265000, 0.000050, 95.72},
    {0.447900, 0.175000, 0.000020, 98.86},  {0.283500, 0.107000, 0, 95.67},
    {0.164900, 0.061000, 0, 98.19},         {0.087400, 0.032000, 0, 103.00},
    {0.046770, 0.017000, 0, 99.13},         {0.022700, 0.008210, 0, 87.38},
    {0.011359, 0.004102, 0, 91.60},         {0.005790, 0.002091, 0, 92.89},
    {0.002899, 0.001047, 0, 76.85},         {0.001440, 0.000520, 0, 86.51},
    {0.000690, 0.000249, 0, 92.58},         {0.000332, 0.000120, 0, 78.23},
    {0.000166, 0.000060, 0, 57.69},         {0.000083, 0.000030, 0, 82.92},
    {0.000042, 0.000015, 0, 78.27},
};

constexpr std::array<double, 3> profileWhite = {0.9642, 1, 0.8249};

double reflectanceAt(std::vector<SpectralBand> const& bands, double wavelength)
{
    auto const next = std::lower_bound(bands.begin(), bands.end(), wavelength,
                                       [](SpectralBand const& band, double value) { return band.wavelength < value; });
    if (next == bands.begin())
        return next->reflectance;
    auto const previous = next - 1;
    if (next == bands.end())
        return previous->reflectance;
    double const share = (wavelength - previous->wavelength) / (next->wavelength - previous->wavelength);
    return previous->reflectance + share * (next->reflectance - previous->reflectance);
}

} // namespace

std::array<double, 3> xyzOfSpectrum(std::vector<SpectralBand> const& bands)
{
    std::array<double, 3> sums{};
    std::array<double, 3> white{};
    double wavelength = firstWavelength;
    for (ObserverRow const& row : observer) {
        double const reflectance = reflectanceAt(bands, wavelength);
        double const weights[] = {row.illuminant * row.x, row.illuminant * row.y, row.illuminant * row.z};
        for (std::size_t k = 0; k < 3; ++k) {
            white[k] += weights[k];
            sums[k] += weights[k] * reflectance;
        }
        wavelength += wavelengthStep;
    }
    for (std::size_t k = 0; k < 3; ++k)
        sums[k] *= profileWhite[k] / white[k];
    return sums;
}
