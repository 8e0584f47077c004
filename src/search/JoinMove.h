// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PlaceLine.h"
#include "RandomNumbers.h"

#include <cstdint>

/// Opens a pair in conflict and a second pair, and joins their patches the other way: it turns a part of a column
/// round, or swaps the ends of two columns, one of them turned round before or not.
class JoinMove
{
public:
    /// \param placeLine  whole columns, which the move changes; it outlives the move
    explicit JoinMove(PlaceLine& placeLine) : line(placeLine), height(line.getColumnHeight()) {}

    /// Tries to solve a conflict. Moves it elsewhere where that fails. There are never more conflicts than before.
    ///
    /// \param conflict  the first place of a pair in conflict
    /// \param work      the words of 64 pairs that were looked at are taken off
    void apply(int conflict, RandomNumbers& random, std::int64_t& work);

private:
    enum class Kind { turnPart, swapEnds, turnAndSwapEnds };

    /// The second pair by its first place, and what becomes of both.
    struct Option
    {
        Kind kind;
        int pair;
    };

    class Choice;

    void offerOwnColumn(int conflict, int start, Choice& choice) const;
    void offerOtherColumns(int conflict, int start, Choice& choice) const;
    void turnRound(int first, int last);
    void swapEnds(int first, int other, int length);

    PlaceLine& line;
    int height;
};
