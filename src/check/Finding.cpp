// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Finding.h"

#include <array>
#include <charconv>
#include <cmath>

std::string_view nameOf(FindingKind kind)
{
    constexpr std::string_view names[] = {"reversed", "shifted", "exchanged",  "repeated", "sheets", "order",  "patch",
                                          "missing",  "extra",   "impossible", "paper",    "drift",  "repeats"};
    return names[static_cast<std::size_t>(kind)];
}

std::string impossibleLightness(double lightness)
{
    constexpr double highest = 110;
    constexpr int fewestDigits = 4;
    constexpr int mostDigits = 17; // of a double
    std::string const range = ", outside 0 to 110";
    if (!std::isfinite(lightness))
        return "L* is no finite number" + range;
    std::array<char, 32> text{};
    char* end = text.data();
    // 110.04 must not become 110, which is possible.
    double shown = 0;
    for (int digits = fewestDigits; digits <= mostDigits && shown >= 0 && shown <= highest; ++digits) {
        end = std::to_chars(text.data(), text.data() + text.size(), lightness, std::chars_format::general, digits).ptr;
        std::from_chars(text.data(), end, shown);
    }
    return "L* is " + std::string(text.data(), end) + range;
}
