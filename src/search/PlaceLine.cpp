// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PlaceLine.h"

#include <algorithm>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

std::vector<int> PlaceLine::patchesOf(PairDifference const& difference, ColumnOrder const& order,
                                      std::vector<Stretch> const& stretches)
{
    std::vector<int> patches;
    for (Stretch const& stretch : stretches)
        for (int row = 0; row < stretch.length; ++row)
            patches.push_back(order[stretch.firstCell + row]);
    patches.push_back(difference.paper());
    for (Stretch const& stretch : stretches)
        for (int const around : {order.before(stretch.firstCell, difference.paper()),
                                 order.after(stretch.firstCell + stretch.length - 1, difference.paper())})
            if (around != difference.paper())
                patches.push_back(around);
    return patches;
}

PlaceLine::PlaceLine(PairDifference const& difference, ColumnOrder const& order, std::vector<Stretch> const& stretches)
    : patches(patchesOf(difference, order, stretches)), far(difference, patches),
      movablePatches(at(far.getWordsPerRow())), stretchCount(static_cast<int>(stretches.size()))
{
    int const paper = static_cast<int>(std::ranges::find(patches, difference.paper()) - patches.begin());
    int inside = 0;
    int lastAround = paper;
    bool areWholeColumns = true;
    auto const addAround = [&](int patch) {
        places.push_back({patch == difference.paper() ? paper : ++lastAround, -1, 0, false});
        cells.push_back(-1);
    };
    for (int i = 0; i < stretchCount; ++i) {
        auto const [firstCell, length] = stretches[at(i)];
        areWholeColumns = areWholeColumns && length == order.height;
        addAround(order.before(firstCell, difference.paper()));
        for (int row = 0; row < length; ++row, ++inside) {
            bool const isMovable = difference.takesPart(order[firstCell + row]);
            areWholeColumns = areWholeColumns && isMovable;
            if (isMovable)
                movablePatches[at(inside / FarPairs::wordBits)] |= FarPairs::Word{1} << (inside % FarPairs::wordBits);
            placeOfPatch.push_back(countPlaces());
            places.push_back({inside, i, row, isMovable});
            cells.push_back(firstCell + row);
        }
        addAround(order.after(firstCell + length - 1, difference.paper()));
    }
    if (areWholeColumns)
        columnHeight = order.height;
    conflictAt.assign(places.size(), -1);
}

void PlaceLine::forbidBelow(float leastDifference)
{
    allowed.clear();
    far.renew(leastDifference);
    findConflicts();
}

void PlaceLine::forbidAlikeInLightness(float leastDifference)
{
    far.renew(leastDifference);
    allowed.assign(1, far);
    far.renew(leastDifference, PairDifference::leastSquaredLightness);
    findConflicts();
}

void PlaceLine::findConflicts()
{
    conflicts.clear();
    std::ranges::fill(conflictAt, -1);
    for (int place = 0; place + 1 < countPlaces(); ++place)
        renewConflict(place);
}

bool PlaceLine::isConflict(int place) const
{
    Place const& one = places[at(place)];
    Place const& next = places[at(place + 1)];
    return (one.isMovable || next.isMovable) && !far.areFar(one.patch, next.patch);
}

void PlaceLine::renewConflict(int place)
{
    int& index = conflictAt[at(place)];
    if (isConflict(place) == (index >= 0))
        return;
    if (index < 0) {
        index = countConflicts();
        conflicts.push_back(place);
        return;
    }
    conflicts[at(index)] = conflicts.back();
    conflictAt[at(conflicts.back())] = index;
    conflicts.pop_back();
    index = -1;
}

void PlaceLine::put(int place, int patch)
{
    places[at(place)].patch = patch;
    placeOfPatch[at(patch)] = place;
}

int PlaceLine::countConflictsOf(int patch, int place) const
{
    return (far.areFar(patch, places[at(place - 1)].patch) ? 0 : 1) +
           (far.areFar(patch, places[at(place + 1)].patch) ? 0 : 1);
}

bool PlaceLine::isAllowedAt(int patch, int place) const
{
    return areAllowed(patch, places[at(place - 1)].patch) && areAllowed(patch, places[at(place + 1)].patch);
}

void PlaceLine::writeTo(ColumnOrder& order) const
{
    for (int place = 0; place < countPlaces(); ++place)
        if (cells[at(place)] >= 0)
            order[cells[at(place)]] = patches[at(places[at(place)].patch)];
}
