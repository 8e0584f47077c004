// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Lowest and highest value of a channel, in the plain table's scale.
struct ChannelRange
{
    double lowest = 0;
    double highest = 0;
};

/// How many patches have more ink than a limit.
struct InkExcess
{
    int limit = 0; // percent, the sum of all inks
    std::size_t patches = 0;
};

/// What is in a table of patches. Colours are the same where their values are to nine decimals, however they are
/// written.
struct TableSummary
{
    ColorSpace colorSpace = undefined;
    std::size_t patches = 0;
    std::size_t distinctColors = 0;
    std::size_t repeats = 0;          // patches of a colour that an earlier patch has
    std::size_t whites = 0;           // no ink, or RGB 255 255 255
    std::vector<ChannelRange> ranges; // in the order C M Y K or R G B

    // Of CMYK tables only.
    double largestInkSum = 0;            // percent
    std::uint32_t largestInkSumLine = 0; // line of the file where it is first reached
    std::array<InkExcess, 3> inkExcesses{{{300, 0}, {320, 0}, {400, 0}}};

    // Where the table stands in its file.
    std::size_t tableNumber = 0; // from 1
    std::size_t tableCount = 0;
    std::uint32_t firstLine = 0; // of the patches
    std::uint32_t lastLine = 0;
};

/// \param patches  at least one
TableSummary summaryOf(PatchTable const& patches);
