// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasurementLayout.h"

#include <iterator>

namespace
{

struct Instrument
{
    RealSize size;
    RealRect content;
    RealBorder minMargin;
    RealSize minPatchSize;
    RealSize gap;
    bool mustFit;
    bool multiPage;
    ScanDirection scanDirection;
};

constexpr RealBorder noMargin{0, 0, 0, 0};
constexpr RealBorder scanMargin{12.5, 0, 6.5, 0};

// The instruments' own values, mm, in the order of measurementlayout_strings.
constexpr Instrument instruments[] = {
    // size       content              margin      patch   gap     fits   multi  scan
    {{500, 440}, {2, 83, 460, 320}, noMargin, {6, 6}, {0, 0}, true, true, none},
    {{500, 440}, {0, 0, 460, 320}, scanMargin, {6, 8}, {0, 1}, true, false, alongY},
    {{0, 257}, {0, 0, 0, 257}, scanMargin, {7, 8}, {0, 1}, false, false, alongY},
    {{0, 486}, {0, 0, 0, 486}, scanMargin, {7, 8}, {0, 1}, false, false, alongY},
};
static_assert(std::size(instruments) == std::size(measurementlayout_strings));

} // namespace

void MeasurementLayout::initWithPreset(MeasurementLayoutPreset newPreset)
{
    preset = newPreset;
    if (preset < 0 || preset >= std::ssize(instruments))
        return;
    Instrument const& instrument = instruments[preset];
    size = instrument.size;
    content = instrument.content;
    minMargin = instrument.minMargin;
    minPatchSize = instrument.minPatchSize;
    gap = instrument.gap;
    fitting = instrument.mustFit;
    multiPage = instrument.multiPage;
    scanDirection = instrument.scanDirection;
}
