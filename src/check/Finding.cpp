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
    constexpr int digits = 4;
    std::array<char, 32> text{};
    char* const end =
        std::to_chars(text.data(), text.data() + text.size(), lightness, std::chars_format::general, digits).ptr;
    return "L* is " + (std::isfinite(lightness) ? std::string(text.data(), end) : "no finite number") +
           ", outside 0 to 110";
}
