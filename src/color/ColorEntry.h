// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Lab.h"
#include "layout/ColorGap.h"
#include "lib/ColorSpace.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"
#include "lib/OvMinBackHeap.h"
#include "lib/OvPointerPool.h"
#include "lib/OvString.h"

class ChartLayout;
class WFile;

/// What an entry is: a patch of the input file, a white one that fills a visible position left over, a white one where
/// no sheet shows it (also bare paper), or a line that could not be read.
enum EntryStatus : int { Data = 0, Filler = 1, Hidden = 2, Invalid = 3 };

/// One patch: its device values as the user wrote them, its colour, and its place in the arrangement.
class ColorEntry
{
public:
    /// The key of an entry without a nearer neighbour along the scan, squared delta E.
    static constexpr float furthestKey = furthestSquaredDeltaE;

    /// Opens the profiles in the resources folder and builds the transforms that every entry's colour comes from.
    /// Whatever is missing leaves its colours at 0.
    static void prepareColorConversions();

    /// Releases the transforms and the CMYK profile.
    static void endColorConversions();

    /// Takes the next line off the text and becomes its patch. A line with another number of values than the colour
    /// space has channels gives an Invalid entry without values.
    void parseFromString(String& text, ColorSpace newColorSpace);

    /// Takes all lines off the text and adds the patches that parseFromString makes of them, except the Invalid ones.
    /// Quicker than one after the other: the values of many lines share a storage, and the colour engine gets many
    /// colours at once.
    ///
    /// \return whether there was no Invalid one
    static bool parseAll(String& text, ColorSpace colorSpace, GrowingArray<ColorEntry>& entries);

    /// Becomes paper white: a Hidden entry, or a Filler, with the values that print nothing.
    void initAsWhite(ColorSpace newColorSpace, bool hidden);

    /// CIELAB of paper white, the CMYK profile's unprinted paper whatever the chart's colour space.
    static void getWhite(float* lab);

    ColorSpace getColorSpace() const { return colorSpace; }
    int getStatus() const { return status; }

    /// The channel values' texts, in the order of the input.
    GrowingArray<String> const& getValues() const { return values; }

    /// A channel's value as a number; an empty text gives 0, a channel past the last reports an index error and gives
    /// 0.
    double getRealValue(int channel) const;

    /// L*, a*, b*; D50, absolute colorimetric.
    float const* getLab() const { return lab; }

    /// Red, green, blue from 0 to 1 for the preview.
    float const* getDisplayColor() const { return displayColor; }

    /// Squared CIE 1976 delta E*ab of two CIELAB triples.
    static float computeSqDe(float const* p, float const* q) { return squaredDeltaE(labOf(p), labOf(q)); }

    /// Squared lightness difference of two CIELAB triples.
    static float computeSqDLStar(float const* p, float const* q)
    {
        return squaredLightnessDifference(labOf(p), labOf(q));
    }

    /// Forgets the four gaps.
    void initGaps();

    /// Has the processor fetch what the arrangement writes of an entry, before it is asked for; nothing for null.
    static void prefetch(ColorEntry* entry)
    {
        if (!entry)
            return;
        __builtin_prefetch(&entry->lab, 1);
        __builtin_prefetch(&entry->heapPosition, 1);
    }

    /// Attaches the gaps of the entry at a grid position: those that its neighbours there have already, and new ones
    /// from the pool for the rest.
    void renewGaps(PointerPool<ColorGap>* pool, IntPos position, ChartLayout* layout);

    /// Works out the key, the smallest squared delta E over the gaps that count: those that the scan crosses (along),
    /// those beside it (across). At most 100000; Hidden and Invalid entries keep theirs.
    void recomputeDe(bool along, bool across);

    /// Moves the entry to where its key belongs in the heap, if it is there at all.
    void reenterHeap(MinBackHeap<ColorEntry*, float>* heap);

    /// The entry at the gap's other side; paper white at the grid's edge. A position past Left acts as Above.
    ColorEntry* getNeighbor(RelativePosition position) const;
    ColorGap* getGap(RelativePosition position) const;

    /// Squared delta E to the nearest neighbour along the scan.
    float getKey() const { return key; }

    /// Where the entry stands in the chart's patch grid, row after row.
    int getIndex() const { return index; }
    void setIndex(int newIndex) { index = newIndex; }

    /// The entry's number in the arrangement's heap; 0 when it is not there.
    unsigned long long getHeapPosition() const { return heapPosition; }
    unsigned long long* getHeapBackPointer() { return &heapPosition; }

    /// "N" for a patch of the input file, "I" for one that the program added.
    String getControlString() const;

    /// Writes the patch's row of the target description: number, location label, control letter and values.
    void printToOutFile(WFile* file, int sampleId, String& location) const;

    /// Bare paper, beyond the edge of the grid.
    static ColorEntry whitePatch;

private:
    static Lab labOf(float const* lab) { return {{lab[0], lab[1], lab[2]}}; }

    static constexpr unsigned long long patchesAtOnce = 256;

    template <RelativePosition side>
    void renewGap(PointerPool<ColorGap>* pool, ColorEntry* neighbour);

    void takeLine(String& text, ColorSpace newColorSpace, Array<String>& storage, unsigned long long first);
    float getDeviceValue(int channel) const;
    static void computeColors(ColorEntry* entries, unsigned long long count);

    GrowingArray<String> values;
    int status = Hidden;
    ColorSpace colorSpace = undefined;
    float lab[3] = {0, 0, 0};
    float displayColor[3] = {0, 0, 0};
    float key = 0;
    int index = 0;
    ColorGap* gaps[4] = {nullptr, nullptr, nullptr, nullptr};
    unsigned long long heapPosition = 0;

    // Handles of the colour engine; null where it could not make one.
    static void* labprofile;
    static void* cmykprofile;
    static void* rgbprofile;
    static void* cmyktolab;
    static void* rgbtolab;
    static void* labtorgb;
};
