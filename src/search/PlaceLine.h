// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnOrder.h"
#include "FarPairs.h"

#include <vector>

/// A part of a column, by cells of a ColumnOrder.
struct Stretch
{
    int firstCell;
    int length;
};

/// Stretches of columns as one line of places, with the neighbours of each stretch before and after it, and the pairs
/// of neighbours in conflict. Patches are numbered by their rows in the pairs.
class PlaceLine
{
public:
    struct Place
    {
        int patch;
        int stretch;    ///< its index; -1 for a neighbour of one
        int row;        ///< from the start of the stretch
        bool isMovable; ///< whether its patch may change
    };

    /// \param difference  of the task
    /// \param order       where the patches stand now
    /// \param stretches   what may change; a cell or a column's end lies between any two. All around stays, and so do
    ///                    patches that do not take part.
    PlaceLine(PairDifference const& difference, ColumnOrder const& order, std::vector<Stretch> const& stretches);

    /// From now on neighbours conflict that differ by less than a squared delta E.
    void forbidBelow(float leastDifference);

    /// From now on neighbours conflict that differ by less than 5 in lightness. Pairs below a squared delta E are not
    /// allowed.
    void forbidAlikeInLightness(float leastDifference);

    int countPlaces() const { return static_cast<int>(places.size()); }
    Place const& operator[](int place) const { return places[static_cast<std::size_t>(place)]; }
    int placeOf(int patch) const { return placeOfPatch[static_cast<std::size_t>(patch)]; }

    /// Lets a patch stand at a place. Conflicts have to be renewed afterwards.
    void put(int place, int patch);

    /// Looks again at the pair of a place and the next one.
    void renewConflict(int place);

    /// The first places of the pairs in conflict. Their order depends on how they came about.
    std::vector<int> const& getConflicts() const { return conflicts; }
    int countConflicts() const { return static_cast<int>(conflicts.size()); }

    /// Whether a place and the next one are in conflict.
    bool isInConflict(int place) const { return conflictAt[static_cast<std::size_t>(place)] >= 0; }

    /// How many of a place's two neighbours would conflict with a patch.
    int countConflictsOf(int patch, int place) const;

    /// Whether two patches may be neighbours. Those in conflict may, unless their pair is not allowed.
    bool areAllowed(int patch, int other) const { return allowed.empty() || allowed.front().areFar(patch, other); }

    /// Whether a patch may stand at a place.
    bool isAllowedAt(int patch, int place) const;

    FarPairs const& getFarPairs() const { return far; }

    /// A bit for each patch that may move, as in the rows of the pairs.
    std::vector<FarPairs::Word> const& getMovablePatches() const { return movablePatches; }

    /// The stretches' common length if they are whole columns whose patches may all move, 0 otherwise.
    int getColumnHeight() const { return columnHeight; }
    int countStretches() const { return stretchCount; }

    /// The place before the first one of a stretch.
    int startOf(int stretch) const { return stretch * (columnHeight + 2); }

    /// Puts the patches to where they stand now.
    void writeTo(ColumnOrder& order) const;

private:
    static std::vector<int> patchesOf(PairDifference const& difference, ColumnOrder const& order,
                                      std::vector<Stretch> const& stretches);
    void findConflicts();
    bool isConflict(int place) const;

    std::vector<int> patches; // of the task: those of the stretches, then the paper, then others around
    FarPairs far;
    std::vector<FarPairs> allowed; // empty where all pairs are
    std::vector<Place> places;
    std::vector<int> cells; // of the order, for each place; -1 around
    std::vector<int> placeOfPatch;
    std::vector<FarPairs::Word> movablePatches;
    std::vector<int> conflicts;
    std::vector<int> conflictAt; // the index in conflicts for each place, -1 where there is none
    int columnHeight = 0;
    int stretchCount;
};
