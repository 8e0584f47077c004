// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PlaceLine.h"
#include "RandomNumbers.h"

#include <cstdint>
#include <vector>

/// Passes patches along a chain of places that do not touch, so that a patch in conflict finds a better place. While
/// places that do not touch change their patches, the neighbours of each stay the same: which patch fits which place is
/// a matching problem, and the chain is an augmenting path.
class ChainMove
{
public:
    /// \param placeLine  what the move changes; it outlives the move
    explicit ChainMove(PlaceLine& placeLine);

    /// Tries to solve a conflict. Moves it elsewhere where that fails. There are never more conflicts than before.
    ///
    /// \param conflict  the first place of a pair in conflict
    /// \param work      the words of 64 pairs that were looked at are taken off
    void apply(int conflict, RandomNumbers& random, std::int64_t& work);

private:
    class FreePlaces;

    int search(int source, FreePlaces const& free, RandomNumbers& random, std::int64_t& work);
    void passAlong(int source, int last);

    PlaceLine& line;
    std::vector<FarPairs::Word> unreached;
    std::vector<int> queue;
    std::vector<int> cameFrom;
};
