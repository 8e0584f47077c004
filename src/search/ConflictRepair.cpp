// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ConflictRepair.h"

#include "ChainMove.h"
#include "JoinMove.h"

bool repairConflicts(PlaceLine& line, RandomNumbers& random, std::int64_t& work)
{
    // Joins cost far less than chains, so that most of the time still goes into chains.
    constexpr int joinsOfHundred = 90;
    bool const canJoin = line.getColumnHeight() > 0;
    ChainMove chain(line);
    JoinMove join(line);
    while (line.countConflicts() > 0 && work > 0) {
        int const conflict = line.getConflicts()[static_cast<std::size_t>(random.below(line.countConflicts()))];
        if (canJoin && random.below(100) < joinsOfHundred)
            join.apply(conflict, random, work);
        else
            chain.apply(conflict, random, work);
    }
    return line.countConflicts() == 0;
}
