// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"

#include "layout/ChartLayout.h"
#include "lib/Folders.h"
#include "lib/OvFile.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <lcms2.h>

ColorEntry ColorEntry::whitePatch;
void* ColorEntry::labprofile = nullptr;
void* ColorEntry::cmykprofile = nullptr;
void* ColorEntry::rgbprofile = nullptr;
void* ColorEntry::cmyktolab = nullptr;
void* ColorEntry::rgbtolab = nullptr;
void* ColorEntry::labtorgb = nullptr;

namespace
{

void closeProfile(void*& profile)
{
    if (profile)
        cmsCloseProfile(profile);
    profile = nullptr;
}

void deleteTransform(void*& transform)
{
    if (transform)
        cmsDeleteTransform(transform);
    transform = nullptr;
}

void* createTransform(void* from, cmsUInt32Number fromFormat, void* to, cmsUInt32Number toFormat)
{
    return from && to ? cmsCreateTransform(from, fromFormat, to, toFormat, INTENT_ABSOLUTE_COLORIMETRIC, 0) : nullptr;
}

unsigned long long channelsOf(ColorSpace colorSpace)
{
    return static_cast<unsigned long long>(colorspace_nof_channels[colorSpace]);
}

void convert(void* transform, float const* from, float* to, unsigned long long count)
{
    if (transform)
        cmsDoTransform(transform, from, to, static_cast<cmsUInt32Number>(count));
    else
        std::fill_n(to, 3 * count, 0.0f);
}

char const* controlLetter(int status)
{
    return status == Data ? "N" : "I";
}

} // namespace

void ColorEntry::prepareColorConversions()
{
    endColorConversions();
    closeProfile(labprofile);
    closeProfile(rgbprofile);
    labprofile = cmsCreateLab4Profile(nullptr);
    cmykprofile = cmsOpenProfileFromFile(respath + "generic.icc", "r");
    rgbprofile = cmsOpenProfileFromFile(respath + "RGBgeneric.icc", "r");
    cmyktolab = createTransform(cmykprofile, TYPE_CMYK_FLT, labprofile, TYPE_Lab_FLT);
    rgbtolab = createTransform(rgbprofile, TYPE_RGB_FLT, labprofile, TYPE_Lab_FLT);
    labtorgb = createTransform(labprofile, TYPE_Lab_FLT, rgbprofile, TYPE_RGB_FLT);
    whitePatch.initAsWhite(undefined, true);
}

void ColorEntry::endColorConversions()
{
    // The RGB and CIELAB profiles stay open until the next preparation.
    closeProfile(cmykprofile);
    deleteTransform(cmyktolab);
    deleteTransform(rgbtolab);
    deleteTransform(labtorgb);
}

void ColorEntry::parseFromString(String& text, ColorSpace newColorSpace)
{
    Array<String> storage(channelsOf(newColorSpace));
    takeLine(text, newColorSpace, storage, 0);
    computeColors(this, 1);
}

bool ColorEntry::parseAll(String& text, ColorSpace colorSpace, GrowingArray<ColorEntry>& entries)
{
    auto const channels = channelsOf(colorSpace);
    bool isComplete = true;
    while (text.getCount() > 0) {
        auto const first = entries.getCount();
        Array<String> storage(patchesAtOnce * channels);
        for (unsigned long long i = 0; i < patchesAtOnce && text.getCount() > 0; ++i) {
            ColorEntry entry;
            entry.takeLine(text, colorSpace, storage, i * channels);
            if (entry.getStatus() == Invalid) {
                isComplete = false;
                computeColors(&entry, 1); // reports the channels that are missing
            } else {
                entries.add(std::move(entry));
            }
        }
        computeColors(entries.begin() + first, entries.getCount() - first);
    }
    return isComplete;
}

// Becomes the patch of the text's next line, still without colours. Its values go into the storage from `first` on.
void ColorEntry::takeLine(String& text, ColorSpace newColorSpace, Array<String>& storage, unsigned long long first)
{
    colorSpace = newColorSpace;
    values.init(1);
    auto const channels = channelsOf(colorSpace);
    String line;
    text.getLine(line, true);
    line.skipWhitespaces();
    unsigned long long count = 0;
    for (; line.getCount() > 0 && count < channels; ++count)
        line.getToken(storage[first + count]);
    bool const isComplete = count == channels && line.getCount() == 0;
    if (isComplete)
        values.Array<String>::init(storage, first, channels);
    status = isComplete && values.getCount() == channels ? Data : Invalid;
}

// A channel as the colour engine takes it.
float ColorEntry::getDeviceValue(int channel) const
{
    if (colorSpace == undefined)
        return 0;
    auto const value = static_cast<float>(getRealValue(channel));
    return colorSpace == RGB ? value / 255.0f : value;
}

// Works out the colours of up to `patchesAtOnce` entries of one colour space. The colour engine makes of each what it
// would make of it alone.
void ColorEntry::computeColors(ColorEntry* entries, unsigned long long count)
{
    float device[4 * patchesAtOnce];
    float labs[3 * patchesAtOnce] = {};
    float displayColors[3 * patchesAtOnce];
    bool const isCmyk = count > 0 && entries->colorSpace == CMYK;
    float* next = device;
    for (unsigned long long i = 0; i < count; ++i)
        for (int channel = 0; channel < (isCmyk ? 4 : 3); ++channel)
            *next++ = entries[i].getDeviceValue(channel);
    convert(isCmyk ? cmyktolab : rgbtolab, device, labs, count);
    convert(labtorgb, labs, displayColors, count);
    for (unsigned long long i = 0; i < count; ++i) {
        std::copy_n(labs + 3 * i, 3, entries[i].lab);
        std::copy_n(displayColors + 3 * i, 3, entries[i].displayColor);
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
    getWhite(lab);
    convert(labtorgb, lab, displayColor, 1);
    initGaps();
}

void ColorEntry::getWhite(float* lab)
{
    constexpr float unprinted[4] = {0, 0, 0, 0};
    convert(cmyktolab, unprinted, lab, 1);
}

double ColorEntry::getRealValue(int channel) const
{
    return values[channel].toReal();
}

void ColorEntry::initGaps()
{
    std::fill_n(gaps, 4, nullptr);
}

void ColorEntry::renewGaps(PointerPool<ColorGap>* pool, IntPos position, ChartLayout* layout)
{
    renewGap<Above>(pool, layout->getColorEntry({position.x, position.y - 1}));
    renewGap<Right>(pool, layout->getColorEntry({position.x + 1, position.y}));
    renewGap<Below>(pool, layout->getColorEntry({position.x, position.y + 1}));
    renewGap<Left>(pool, layout->getColorEntry({position.x - 1, position.y}));
}

template <RelativePosition side>
void ColorEntry::renewGap(PointerPool<ColorGap>* pool, ColorEntry* neighbour)
{
    constexpr bool isAlongScan = side == Above || side == Below;
    constexpr bool isSecond = side == Above || side == Left;
    constexpr int seenFromNeighbour = (side + 2) % 4;

    ColorGap* gap = neighbour ? neighbour->gaps[seenFromNeighbour] : nullptr;
    if (!gap)
        gap = pool->suck();
    if (!neighbour)
        neighbour = &whitePatch;
    gap->setSides(isSecond ? neighbour : this, isSecond ? this : neighbour);
    gap->compute();
    gap->setAcrossScan(isAlongScan);
    gaps[side] = gap;
}

void ColorEntry::recomputeDe(bool along, bool across)
{
    if (status != Data && status != Filler)
        return;
    key = furthestKey;
    for (RelativePosition position : {Above, Right, Below, Left}) {
        bool const counts = position == Above || position == Below ? along : across;
        if (counts && gaps[position] && gaps[position]->getSqDe() < key)
            key = gaps[position]->getSqDe();
    }
}

void ColorEntry::reenterHeap(MinBackHeap<ColorEntry*, float>* heap)
{
    if (heapPosition != 0)
        heap->updateKey(heapPosition, key);
}

ColorGap* ColorEntry::getGap(RelativePosition position) const
{
    return gaps[position >= Above && position <= Left ? position : Above];
}

ColorEntry* ColorEntry::getNeighbor(RelativePosition position) const
{
    ColorGap const* gap = getGap(position);
    if (!gap)
        return &whitePatch;
    bool const isSecond = position == Right || position == Below;
    return isSecond ? gap->getSecond() : gap->getFirst();
}

String ColorEntry::getControlString() const
{
    return String(controlLetter(status));
}

void ColorEntry::printToOutFile(WFile* file, int sampleId, String& location) const
{
    char number[12];
    file->writeBytes(number, std::to_chars(number, std::end(number), sampleId).ptr - number);
    file->writeTab();
    file->writeString(location);
    file->writeTab();
    file->writeBytes(controlLetter(status), 1);
    for (String const& value : values) {
        file->writeTab();
        file->writeString(value);
    }
    file->writeNewLine();
}
