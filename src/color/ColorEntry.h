// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Lab.h"
#include "lib/ColorSpace.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"
#include "lib/OvMinBackHeap.h"
#include "lib/OvPointerPool.h"
#include "lib/OvString.h"

#include <cstdint>

class Arrangement;
class ChartLayout;
class ColorEntry;
class ColorGap;
class WFile;

/// A patch's four sides. The scan runs along y, so Above (y - 1) and Below (y + 1) are the neighbours that count.
enum RelativePosition : std::int32_t { Above = 0, Right = 1, Below = 2, Left = 3 };

/// What an entry is: a patch of the input file, a white patch that fills a visible cell, a white patch where no sheet
/// shows it (also bare paper), or a line that could not be read.
enum EntryStatus : int { Data = 0, Filler = 1, Hidden = 2, Invalid = 3 };

/// The entries at the four sides of a patch; null beyond the edge of the grid.
struct Neighbors
{
    ColorEntry* above;
    ColorEntry* right;
    ColorEntry* below;
    ColorEntry* left;
};

/// One patch: its device values as the user wrote them, its colour, and its place in an arrangement.
class ColorEntry
{
public:
    /// The key of an entry without a nearer neighbour along the scan, squared delta E.
    static constexpr float furthestKey = furthestSquaredDeltaE;

    /// Prepares the conversions that every entry's colour comes from, by the profiles in the resources folder.
    static void prepareColorConversions();

    /// Ends the conversions: from here on, new colours are 0.
    static void endColorConversions();

    /// Becomes the patch of these texts, one for each channel. Another number of texts gives an Invalid entry without
    /// values, and reports the channels that are missing.
    void setValues(ColorSpace newColorSpace, Array<String> const& texts);

    /// The same without the colour, for a reader that makes many entries: computeColors works the colours out.
    void takeValues(ColorSpace newColorSpace, Array<String> const& texts);

    /// Works out the colours of entries of one colour space. Many at once are faster than one by one, and the same.
    static void computeColors(ColorEntry* entries, unsigned long long count);

    /// Takes the next line off the text and becomes its patch. A line with another number of values than the colour
    /// space has channels gives an Invalid entry without values.
    void parseFromString(String& text, ColorSpace newColorSpace);

    /// Becomes paper white: a Hidden entry, or a Filler, with the values that print nothing.
    void initAsWhite(ColorSpace newColorSpace, bool hidden);

    /// CIELAB of paper white: the CMYK profile's unprinted paper, whatever the chart's colour space.
    static void getWhite(float* lab);

    ColorSpace getColorSpace() const { return colorSpace; }
    int getStatus() const { return status; }

    /// Whether the arrangement asks how far the entry is from its neighbours: a patch or a filler.
    bool isArranged() const { return status == Data || status == Filler; }

    /// The channel values' texts, in the order of the input.
    GrowingArray<String> const& getValues() const { return values; }

    /// A channel's value as a number. An empty text gives 0. A channel past the last reports an index error and gives
    /// 0.
    double getRealValue(int channel) const;

    /// L*, a*, b*; D50, absolute colorimetric.
    float const* getLab() const { return lab.values; }
    Lab const& getColor() const { return lab; }

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

    /// Prefetches what an arrangement writes of an entry; nothing for null.
    static void prefetch(ColorEntry* entry)
    {
        if (!entry)
            return;
        __builtin_prefetch(&entry->lab, 1);
        __builtin_prefetch(&entry->heapPosition, 1);
    }

    // The links of an arrangement. The gaps belong to the layout, and so do the definitions of these operations.

    /// Attaches the four gaps. A gap that a neighbour has already is shared; the others come from the pool.
    void renewGaps(PointerPool<ColorGap>* pool, Neighbors const& neighbors);

    /// The same for the entry at a grid position of a chart.
    void renewGaps(PointerPool<ColorGap>* pool, IntPos position, ChartLayout* layout);

    /// Works out the key, the smallest squared delta E over the gaps that count: those that the scan crosses (along),
    /// those beside it (across). At most 100000. Hidden and Invalid entries keep their key.
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

    /// The entry's position in the arrangement's heap; 0 when it is not there.
    unsigned long long getHeapPosition() const { return heapPosition; }
    unsigned long long* getHeapBackPointer() { return &heapPosition; }

    /// The arrangement that the entry stands in; null for none. A copy of an entry stands in none.
    Arrangement const* getArrangement() const { return owner.arrangement; }
    void setArrangement(Arrangement const* arrangement) { owner.arrangement = arrangement; }

    // A row of the target description. Its writer has the definitions.

    /// "N" for a patch of the input file, "I" for one that the program added.
    String getControlString() const;

    /// Writes the patch's row of the target description: number, location label, control letter and values.
    void printToOutFile(WFile* file, int sampleId, String& location) const;

    /// Bare paper, beyond the edge of the grid.
    static ColorEntry whitePatch;

private:
    struct Owner
    {
        Owner() = default;
        Owner(Owner const&) {}
        Owner& operator=(Owner const&) { return *this; }
        ~Owner() = default;

        Arrangement const* arrangement = nullptr;
    };

    static Lab labOf(float const* lab) { return {{lab[0], lab[1], lab[2]}}; }

    template <RelativePosition side>
    void renewGap(PointerPool<ColorGap>* pool, ColorEntry* neighbor);

    float getDeviceValue(int channel) const;

    GrowingArray<String> values;
    int status = Hidden;
    ColorSpace colorSpace = undefined;
    Lab lab{};
    float displayColor[3] = {0, 0, 0};
    float key = 0;
    int index = 0;
    ColorGap* gaps[4] = {nullptr, nullptr, nullptr, nullptr};
    unsigned long long heapPosition = 0;
    Owner owner;
};
