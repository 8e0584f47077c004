// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChainMove.h"

#include <bit>

namespace
{

using Word = FarPairs::Word;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

// The places that may change: every other one of each stretch. In some stretches two in a row stay once, so that the
// rows that change are odd before and even after, or the other way round.
class ChainMove::FreePlaces
{
public:
    FreePlaces(PlaceLine::Place const& sourcePlace, std::uint64_t randomNumber)
        : source(sourcePlace), seed(randomNumber)
    {
    }

    bool contain(PlaceLine::Place const& place) const
    {
        std::uint64_t const number = RandomNumbers::mixed(seed + static_cast<std::uint64_t>(place.stretch));
        int shift = static_cast<int>(number >> 8 & 63);
        int turn = static_cast<int>(number & 1);
        if (place.stretch == source.stretch) {
            if (shift == source.row)
                shift = -1;
            turn = turnOf(source.row, shift);
        }
        return place.row != shift && turnOf(place.row, shift) == turn;
    }

private:
    static int turnOf(int row, int shift) { return (row > shift ? row + 1 : row) & 1; }

    PlaceLine::Place const& source;
    std::uint64_t seed;
};

ChainMove::ChainMove(PlaceLine& placeLine)
    : line(placeLine), unreached(line.getMovablePatches().size()), cameFrom(at(line.countPlaces()))
{
}

void ChainMove::apply(int conflict, RandomNumbers& random, std::int64_t& work)
{
    int source = conflict + random.below(2);
    if (!line[source].isMovable)
        source = 2 * conflict + 1 - source;
    FreePlaces const free(line[source], random.next());
    int const last = search(source, free, random, work);
    if (last >= 0)
        passAlong(source, last);
}

// Searches in width. A reached place can give its patch to the one it was reached from. The chain ends at a place where
// the first patch leaves fewer conflicts than there were, or just as many if there is no such place.
//
// \return -1 where there is none
int ChainMove::search(int source, FreePlaces const& free, RandomNumbers& random, std::int64_t& work)
{
    FarPairs const& far = line.getFarPairs();
    int const words = far.getWordsPerRow();
    int const loose = line[source].patch;
    int const looseConflicts = line.countConflictsOf(loose, source);
    unreached = line.getMovablePatches();
    unreached[at(loose / FarPairs::wordBits)] &= ~(Word{1} << (loose % FarPairs::wordBits));
    queue.assign(1, source);
    int equal = -1;
    int equals = 0;
    constexpr int workOfStart = 40;
    work -= workOfStart;
    for (std::size_t i = 0; i < queue.size(); ++i) {
        int const receiver = queue[i];
        Word const* const before = far.row(line[receiver - 1].patch);
        Word const* const after = far.row(line[receiver + 1].patch);
        work -= words;
        for (int word = 0; word < words; ++word) {
            Word found = before[word] & after[word] & unreached[at(word)];
            unreached[at(word)] &= ~found;
            for (; found != 0; found &= found - 1) {
                --work;
                int const giver = line.placeOf(word * FarPairs::wordBits + std::countr_zero(found));
                if (!free.contain(line[giver]))
                    continue;
                cameFrom[at(giver)] = receiver;
                queue.push_back(giver);
                if (!line.isAllowedAt(loose, giver))
                    continue;
                int const change = line.countConflictsOf(loose, giver) -
                                   line.countConflictsOf(line[giver].patch, giver) - looseConflicts;
                if (change < 0)
                    return giver;
                if (change == 0 && random.below(++equals) == 0)
                    equal = giver;
            }
        }
    }
    return equal;
}

// Each place of the chain receives the patch of the next one, the last one that of the source.
void ChainMove::passAlong(int source, int last)
{
    queue.assign(1, last);
    while (queue.back() != source)
        queue.push_back(cameFrom[at(queue.back())]);
    int const loose = line[source].patch;
    for (std::size_t i = queue.size() - 1; i > 0; --i)
        line.put(queue[i], line[queue[i - 1]].patch);
    line.put(last, loose);
    for (int const place : queue) {
        line.renewConflict(place - 1);
        line.renewConflict(place);
    }
}
