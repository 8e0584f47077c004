// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasurementLayout.h"

#include <iterator>

void MeasurementLayout::initWithPreset(MeasurementLayoutPreset newPreset)
{
    preset = newPreset;
    if (preset < 0 || preset >= std::ssize(instrumentPresets))
        return;
    init(instrumentPresets[preset]);
}

void MeasurementLayout::init(InstrumentPreset const& instrument)
{
    size = instrument.size;
    content = instrument.content;
    minMargin = instrument.minMargin;
    minPatchSize = instrument.minPatchSize;
    gap = instrument.gap;
    fitting = instrument.mustFit;
    multiPage = instrument.multiPage;
    scanDirection = instrument.scanDirection;
}
