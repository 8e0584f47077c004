// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

/// Colour space of a chart's device values; indexes the two tables below.
enum ColorSpace : std::int32_t { undefined = 0, CMYK = 1, RGB = 2 };

/// The colour spaces' names in files.
inline constexpr char const* colorspace_names[] = {"undefined", "CMYK", "RGB"};

/// How many channel values one colour has.
inline constexpr int colorspace_nof_channels[] = {0, 4, 3};
