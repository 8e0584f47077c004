// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EntryLines.h"

namespace
{

constexpr unsigned long long patchesAtOnce = 256;

unsigned long long channelsOf(ColorSpace colorSpace)
{
    return static_cast<unsigned long long>(colorspace_nof_channels[colorSpace]);
}

// Takes the next line off the text. The entry gets its values, but no colour yet. The values share the storage from
// `first` on.
void takeLine(ColorEntry& entry, String& text, ColorSpace colorSpace, Array<String>& storage, unsigned long long first)
{
    auto const channels = channelsOf(colorSpace);
    String line;
    text.getLine(line, true);
    line.skipWhitespaces();
    unsigned long long count = 0;
    for (; line.getCount() > 0 && count < channels; ++count)
        line.getToken(storage[first + count]);
    bool const hasMore = line.getCount() > 0;
    Array<String> values;
    if (hasMore)
        values.init(channels + 1);
    else
        values.init(storage, first, count);
    entry.takeValues(colorSpace, values);
}

} // namespace

bool takeEntries(String& text, ColorSpace colorSpace, GrowingArray<ColorEntry>& entries)
{
    auto const channels = channelsOf(colorSpace);
    bool isComplete = true;
    while (text.getCount() > 0) {
        auto const first = entries.getCount();
        Array<String> storage(patchesAtOnce * channels);
        for (unsigned long long i = 0; i < patchesAtOnce && text.getCount() > 0; ++i) {
            ColorEntry entry;
            takeLine(entry, text, colorSpace, storage, i * channels);
            if (entry.getStatus() == Invalid) {
                isComplete = false;
                ColorEntry::computeColors(&entry, 1); // reports the channels that are missing
            } else {
                entries.add(std::move(entry));
            }
        }
        ColorEntry::computeColors(entries.begin() + first, entries.getCount() - first);
    }
    return isComplete;
}

void ColorEntry::parseFromString(String& text, ColorSpace newColorSpace)
{
    Array<String> storage(channelsOf(newColorSpace));
    takeLine(*this, text, newColorSpace, storage, 0);
    computeColors(this, 1);
}
