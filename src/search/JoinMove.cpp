// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JoinMove.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

// One of the best options at random, unless all are worse than nothing.
class JoinMove::Choice
{
public:
    Choice(PlaceLine const& placeLine, RandomNumbers& randomNumbers) : line(placeLine), random(randomNumbers) {}

    /// An option makes two new pairs, and gives up the one in conflict and a second one.
    void offer(Option option, std::pair<int, int> one, std::pair<int, int> other)
    {
        if (!line.areAllowed(one.first, one.second) || !line.areAllowed(other.first, other.second))
            return;
        int const change = conflictsOf(one) + conflictsOf(other) - 1 - (line.isInConflict(option.pair) ? 1 : 0);
        if (change > leastChange)
            return;
        if (change < leastChange) {
            leastChange = change;
            count = 0;
        }
        if (random.below(++count) == 0)
            best = option;
    }

    bool isEmpty() const { return count == 0; }
    Option const& get() const { return best; }

private:
    int conflictsOf(std::pair<int, int> pair) const
    {
        return line.getFarPairs().areFar(pair.first, pair.second) ? 0 : 1;
    }

    PlaceLine const& line;
    RandomNumbers& random;
    int leastChange = 0;
    int count = 0;
    Option best{Kind::turnPart, 0};
};

void JoinMove::apply(int conflict, RandomNumbers& random, std::int64_t& work)
{
    work -= std::int64_t{4} * (height + line.countStretches());
    int const stretch = std::max(line[conflict].stretch, line[conflict + 1].stretch);
    int const start = line.startOf(stretch);
    Choice choice(line, random);
    offerOwnColumn(conflict, start, choice);
    offerOtherColumns(conflict, start, choice);
    if (choice.isEmpty())
        return;
    auto [kind, pair] = choice.get();
    if (kind == Kind::turnPart) {
        turnRound(std::min(pair, conflict) + 1, std::max(pair, conflict));
        return;
    }
    if (kind == Kind::turnAndSwapEnds) {
        int const otherStart = line.startOf(std::max(line[pair].stretch, line[pair + 1].stretch));
        turnRound(otherStart + 1, otherStart + height);
        pair = 2 * otherStart + height - pair;
    }
    swapEnds(conflict + 1, pair + 1, start + height - conflict);
}

void JoinMove::offerOwnColumn(int conflict, int start, Choice& choice) const
{
    for (int pair = start; pair <= start + height; ++pair) {
        bool const turnsAll = std::min(pair, conflict) == start && std::max(pair, conflict) == start + height;
        if (std::abs(pair - conflict) > 1 && !turnsAll)
            choice.offer({Kind::turnPart, pair}, {line[conflict].patch, line[pair].patch},
                         {line[conflict + 1].patch, line[pair + 1].patch});
    }
}

void JoinMove::offerOtherColumns(int conflict, int start, Choice& choice) const
{
    int const rowsBefore = conflict - start;
    if (rowsBefore == 0 || rowsBefore == height)
        return;
    for (int stretch = 0; stretch < line.countStretches(); ++stretch) {
        int const otherStart = line.startOf(stretch);
        if (otherStart == start)
            continue;
        int const across = otherStart + rowsBefore;
        choice.offer({Kind::swapEnds, across}, {line[conflict].patch, line[across + 1].patch},
                     {line[across].patch, line[conflict + 1].patch});
        int const turned = otherStart + height - rowsBefore;
        choice.offer({Kind::turnAndSwapEnds, turned}, {line[conflict].patch, line[turned].patch},
                     {line[turned + 1].patch, line[conflict + 1].patch});
    }
}

void JoinMove::turnRound(int first, int last)
{
    for (int i = first, j = last; i < j; ++i, --j) {
        int const patch = line[i].patch;
        line.put(i, line[j].patch);
        line.put(j, patch);
    }
    for (int place = first - 1; place <= last; ++place)
        line.renewConflict(place);
}

void JoinMove::swapEnds(int first, int other, int length)
{
    for (int i = 0; i < length; ++i) {
        int const patch = line[first + i].patch;
        line.put(first + i, line[other + i].patch);
        line.put(other + i, patch);
    }
    for (int i = -1; i < length; ++i) {
        line.renewConflict(first + i);
        line.renewConflict(other + i);
    }
}
