// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LightnessSeparation.h"

#include "ConflictRepair.h"
#include "StretchGroups.h"

void separateInLightness(ColumnOrder& order, PairDifference const& difference, float leastDifference,
                         RandomNumbers& random, std::int64_t work)
{
    auto const groups = divideIntoGroups(order, random);
    std::int64_t const share = work / static_cast<std::int64_t>(groups.size());
    for (std::vector<Stretch> const& group : groups) {
        std::int64_t left = share;
        PlaceLine line(difference, order, group);
        line.forbidAlikeInLightness(leastDifference);
        repairConflicts(line, random, left);
        line.writeTo(order);
    }
}
