// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"

#include "ColorEngine.h"
#include "lib/Folders.h"

#include <algorithm>

ColorEntry ColorEntry::whitePatch;

void ColorEntry::prepareColorConversions()
{
    colorEngine() = ColorEngine(respath + "generic.icc", respath + "RGBgeneric.icc");
    whitePatch.initAsWhite(undefined, true);
}

void ColorEntry::endColorConversions()
{
    colorEngine() = ColorEngine();
}

void ColorEntry::setValues(ColorSpace newColorSpace, Array<String> const& texts)
{
    takeValues(newColorSpace, texts);
    computeColors(this, 1);
}

void ColorEntry::takeValues(ColorSpace newColorSpace, Array<String> const& texts)
{
    colorSpace = newColorSpace;
    values.init(1);
    auto const channels = static_cast<unsigned long long>(colorspace_nof_channels[colorSpace]);
    bool const isComplete = texts.getCount() == channels;
    if (isComplete)
        values.Array<String>::init(texts);
    status = isComplete && values.getCount() == channels ? Data : Invalid;
}

// A channel in the conversions' range: percent for CMYK, 0 to 1 for RGB.
float ColorEntry::getDeviceValue(int channel) const
{
    if (colorSpace == undefined)
        return 0;
    auto const value = static_cast<float>(getRealValue(channel));
    return colorSpace == RGB ? value / 255.0f : value;
}

void ColorEntry::computeColors(ColorEntry* entries, unsigned long long count)
{
    constexpr unsigned long long most = 256;
    constexpr int mostChannels = 4;
    ColorEngine const& engine = colorEngine();
    for (; count > 0; count -= std::min(count, most), entries += most) {
        auto const block = std::min(count, most);
        float device[mostChannels * most];
        float labs[3 * most];
        float displayColors[3 * most];
        ColorSpace const colorSpace = entries->colorSpace;
        float* next = device;
        for (unsigned long long i = 0; i < block; ++i)
            for (int channel = 0; channel < (colorSpace == CMYK ? 4 : 3); ++channel)
                *next++ = entries[i].getDeviceValue(channel);
        engine.toLab(colorSpace, device, labs, block);
        engine.toDisplay(labs, displayColors, block);
        for (unsigned long long i = 0; i < block; ++i) {
            std::copy_n(labs + 3 * i, 3, entries[i].lab.values);
            std::copy_n(displayColors + 3 * i, 3, entries[i].displayColor);
        }
    }
}

void ColorEntry::initAsWhite(ColorSpace newColorSpace, bool hidden)
{
    status = hidden ? Hidden : Filler;
    colorSpace = newColorSpace;
    values.init(1);
    int const channels = colorSpace == undefined ? 3 : colorspace_nof_channels[colorSpace];
    for (int i = 0; i < channels; ++i)
        values.add(String(colorSpace == RGB ? "255" : "0"));
    getWhite(lab.values);
    colorEngine().toDisplay(lab.values, displayColor, 1);
    initGaps();
}

void ColorEntry::getWhite(float* lab)
{
    std::copy_n(colorEngine().paper().values, 3, lab);
}

double ColorEntry::getRealValue(int channel) const
{
    return values[channel].toReal();
}

void ColorEntry::initGaps()
{
    std::fill_n(gaps, 4, nullptr);
}

void ColorEntry::reenterHeap(MinBackHeap<ColorEntry*, float>* heap)
{
    if (heapPosition != 0)
        heap->updateKey(heapPosition, key);
}
