// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LabColor.h"

#include <cmath>
#include <numbers>

namespace
{

constexpr double degrees = 180 / std::numbers::pi;

double hueOf(double a, double b)
{
    double const hue = a == 0 && b == 0 ? 0 : std::atan2(b, a) * degrees;
    return hue < 0 ? hue + 360 : hue;
}

// The difference of two hues, from -180 to 180 degrees.
double hueDifference(double from, double to)
{
    double const difference = to - from;
    return difference > 180 ? difference - 360 : difference < -180 ? difference + 360 : difference;
}

double meanHue(double p, double q)
{
    double const sum = p + q;
    if (std::fabs(p - q) <= 180)
        return sum / 2;
    return sum < 360 ? (sum + 360) / 2 : (sum - 360) / 2;
}

double cosineOf(double angle)
{
    return std::cos(angle / degrees);
}

// C^7 / (C^7 + 25^7), the weight of the rotation and of the change of a*.
double chromaShare(double chroma)
{
    double const power = std::pow(chroma, 7);
    constexpr double power25 = 6103515625.0;
    return std::sqrt(power / (power + power25));
}

} // namespace

double deltaE76(LabColor const& p, LabColor const& q)
{
    return std::sqrt(squaredDifference(p, q));
}

double deltaE2000(LabColor const& p, LabColor const& q)
{
    double const stretch = 1.5 - 0.5 * chromaShare((std::hypot(p[1], p[2]) + std::hypot(q[1], q[2])) / 2);
    double const a1 = p[1] * stretch;
    double const a2 = q[1] * stretch;
    double const c1 = std::hypot(a1, p[2]);
    double const c2 = std::hypot(a2, q[2]);
    bool const hasHues = c1 * c2 != 0;
    double const h1 = hueOf(a1, p[2]);
    double const h2 = hueOf(a2, q[2]);
    double const dL = q[0] - p[0];
    double const dC = c2 - c1;
    double const dH = hasHues ? 2 * std::sqrt(c1 * c2) * std::sin(hueDifference(h1, h2) / 2 / degrees) : 0;
    double const lightness = (p[0] + q[0]) / 2 - 50;
    double const chroma = (c1 + c2) / 2;
    double const hue = hasHues ? meanHue(h1, h2) : h1 + h2;
    double const t = 1 - 0.17 * cosineOf(hue - 30) + 0.24 * cosineOf(2 * hue) + 0.32 * cosineOf(3 * hue + 6) -
                     0.20 * cosineOf(4 * hue - 63);
    double const bend = (hue - 275) / 25;
    double const turn = 30 * std::exp(-bend * bend);
    double const rotation = -std::sin(2 * turn / degrees) * 2 * chromaShare(chroma);
    double const l = dL / (1 + 0.015 * lightness * lightness / std::sqrt(20 + lightness * lightness));
    double const c = dC / (1 + 0.045 * chroma);
    double const h = dH / (1 + 0.015 * chroma * t);
    return std::sqrt(l * l + c * c + h * h + rotation * c * h);
}

LabColor labOfXyz(std::array<double, 3> const& xyz)
{
    constexpr double white[] = {0.9642, 1, 0.8249};
    double f[3];
    for (int i = 0; i < 3; ++i) {
        double const share = xyz[static_cast<std::size_t>(i)] / white[i];
        f[i] = share > 216.0 / 24389 ? std::cbrt(share) : (24389.0 / 27 * share + 16) / 116;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}
