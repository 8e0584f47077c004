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

/// What an entry is. Data is a patch of the input file. Filler is a white patch on a visible cell. Hidden is a white
/// patch on a cell that no sheet shows, or bare paper. Invalid is a line that could not be read.
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

    /// Opens the profiles in the resources folder for the conversions that give every entry its colour.
    static void prepareColorConversions();

    /// Ends the conversions. New colours are 0 from here on.
    static void endColorConversions();

    /// Makes the entry a patch with these values, one text for each channel. With another number of texts, the entry is
    /// Invalid and has no values, and each missing channel is reported.
    void setValues(ColorSpace newColorSpace, Array<String> const& texts);

    /// The same without the colour. A reader that makes many entries calls computeColors afterwards.
    void takeValues(ColorSpace newColorSpace, Array<String> const& texts);

    /// Computes the colours of entries of one colour space. One call for many entries gives the same colours as a call
    /// for each entry, and is faster.
    static void computeColors(ColorEntry* entries, unsigned long long count);

    /// Takes the next line off the text and makes the entry its patch. A line with another number of values than the
    /// colour space has channels gives an Invalid entry without values.
    void parseFromString(String& text, ColorSpace newColorSpace);

    /// Makes the entry paper white: Hidden or Filler, with the values that print nothing.
    void initAsWhite(ColorSpace newColorSpace, bool hidden);

    /// CIELAB of paper white: the CMYK profile's unprinted paper, whatever the chart's colour space.
    static void getWhite(float* lab);

    ColorSpace getColorSpace() const { return colorSpace; }
    int getStatus() const { return status; }

    /// Whether the search compares the entry with its neighbours. True for Data and Filler.
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

    // The links of an arrangement. The layout defines these operations, because ColorGap belongs to it.

    /// Attaches the four gaps. A gap that a neighbour already has is shared. The others come from the pool.
    void renewGaps(PointerPool<ColorGap>* pool, Neighbors const& neighbors);

    /// The same for the entry at a grid position of a chart.
    void renewGaps(PointerPool<ColorGap>* pool, IntPos position, ChartLayout* layout);

    /// Computes the key: the smallest squared delta E over the gaps that the scan crosses (along) and the gaps beside
    /// the scan (across), at most 100000. Hidden and Invalid entries keep their key.
    void recomputeDe(bool along, bool across);

    /// Moves the entry to the heap position of its key. Nothing happens when the entry is not in the heap.
    void reenterHeap(MinBackHeap<ColorEntry*, float>* heap);

    /// The entry on the other side of a gap; paper white at the grid's edge. A position past Left counts as Above.
    ColorEntry* getNeighbor(RelativePosition position) const;
    ColorGap* getGap(RelativePosition position) const;

    /// Squared delta E to the nearest neighbour along the scan.
    float getKey() const { return key; }

    /// The entry's cell in the chart's patch grid, counted row after row.
    int getIndex() const { return index; }
    void setIndex(int newIndex) { index = newIndex; }

    /// The entry's position in the arrangement's heap; 0 when it is not there.
    unsigned long long getHeapPosition() const { return heapPosition; }
    unsigned long long* getHeapBackPointer() { return &heapPosition; }

    /// The arrangement that the entry stands in; null for none. A copy of an entry stands in none.
    Arrangement const* getArrangement() const { return owner.arrangement; }
    void setArrangement(Arrangement const* arrangement) { owner.arrangement = arrangement; }

    // A row of the target description. These operations are defined beside its writer.

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
        // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): it keeps what it has, whatever is assigned
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
