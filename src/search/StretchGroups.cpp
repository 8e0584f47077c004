// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StretchGroups.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int patchesOfGroup = mostPatchesAtOnce / 2;
constexpr int longestStretch = 500;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// One cell stays between two stretches of a column.
void addStretches(int firstCell, int height, RandomNumbers& random, std::vector<Stretch>& stretches)
{
    if (height <= longestStretch) {
        stretches.push_back({firstCell, height});
        return;
    }
    int const end = firstCell + height;
    int length = 1 + random.below(longestStretch);
    for (int cell = firstCell; cell < end; cell += length + 1, length = longestStretch)
        stretches.push_back({cell, std::min(length, end - cell)});
}

} // namespace

std::vector<std::vector<Stretch>> divideIntoGroups(ColumnOrder const& order, RandomNumbers& random)
{
    std::vector<Stretch> stretches;
    bool const isOneGroup = static_cast<int>(order.patchAt.size()) <= mostPatchesAtOnce;
    for (int column = 0; column < order.countColumns(); ++column)
        if (isOneGroup)
            stretches.push_back({column * order.height, order.height});
        else
            addStretches(column * order.height, order.height, random, stretches);
    if (isOneGroup)
        return {stretches};

    for (int i = static_cast<int>(stretches.size()) - 1; i > 0; --i)
        std::swap(stretches[at(i)], stretches[at(random.below(i + 1))]);
    std::vector<std::vector<Stretch>> groups(1);
    int patches = 0;
    for (Stretch const& stretch : stretches) {
        if (patches + stretch.length > patchesOfGroup) {
            groups.emplace_back();
            patches = 0;
        }
        groups.back().push_back(stretch);
        patches += stretch.length;
    }
    return groups;
}
