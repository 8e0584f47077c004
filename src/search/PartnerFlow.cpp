// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerFlow.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

int sizeOf(std::vector<int> const& list)
{
    return static_cast<int>(list.size());
}

} // namespace

PartnerFlow::PartnerFlow(FarPairs const& farPairs, std::vector<int> demandOf)
    : far(farPairs), demands(std::move(demandOf)), sentTo(demands.size()), takenFrom(demands.size()),
      unreached(at(far.getWordsPerRow())), cameFrom(demands.size()), releasedBy(demands.size()),
      isQueued(demands.size())
{
}

bool PartnerFlow::isComplete()
{
    dropNearPairs();
    sendDirectly();
    for (int left = 0; left < far.countPatches(); ++left)
        while (sizeOf(sentTo[at(left)]) < demands[at(left)])
            if (!augment(left))
                return false;
    return true;
}

void PartnerFlow::dropNearPairs()
{
    for (int left = 0; left < far.countPatches(); ++left)
        std::erase_if(sentTo[at(left)], [&](int right) {
            if (far.areFar(left, right))
                return false;
            std::erase(takenFrom[at(right)], left);
            return true;
        });
}

// Most units find their place without an augmenting path.
void PartnerFlow::sendDirectly()
{
    for (int right = 0; right < far.countPatches(); ++right) {
        FarPairs::Word& word = unreached[at(right / FarPairs::wordBits)];
        FarPairs::Word const bit = FarPairs::Word{1} << (right % FarPairs::wordBits);
        word = sizeOf(takenFrom[at(right)]) < demands[at(right)] ? word | bit : word & ~bit;
    }
    for (int left = 0; left < far.countPatches(); ++left)
        for (int word = 0; word < far.getWordsPerRow(); ++word) {
            FarPairs::Word open = far.row(left)[word] & unreached[at(word)];
            for (; open != 0 && sizeOf(sentTo[at(left)]) < demands[at(left)]; open &= open - 1) {
                int const right = word * FarPairs::wordBits + std::countr_zero(open);
                if (std::ranges::find(sentTo[at(left)], right) != sentTo[at(left)].end())
                    continue;
                sentTo[at(left)].push_back(right);
                takenFrom[at(right)].push_back(left);
                if (sizeOf(takenFrom[at(right)]) == demands[at(right)])
                    unreached[at(word)] &= ~(open & ~(open - 1));
            }
        }
}

// Sends one more unit from a left copy, along a shortest path.
bool PartnerFlow::augment(int source)
{
    std::ranges::fill(unreached, ~FarPairs::Word{0});
    isQueued.assign(isQueued.size(), false);
    queue.assign(1, source);
    isQueued[at(source)] = true;
    for (std::size_t i = 0; i < queue.size(); ++i)
        if (expand(queue[i]))
            return true;
    return false;
}

// Reaches all right copies that a left one can send to. Where one of them can take a unit more, the path ends.
bool PartnerFlow::expand(int left)
{
    for (int word = 0; word < far.getWordsPerRow(); ++word) {
        FarPairs::Word found = far.row(left)[word] & unreached[at(word)];
        for (; found != 0; found &= found - 1) {
            int right = word * FarPairs::wordBits + std::countr_zero(found);
            if (demands[at(right)] == 0 || std::ranges::find(sentTo[at(left)], right) != sentTo[at(left)].end())
                continue;
            unreached[at(word)] &= ~(found & ~(found - 1));
            cameFrom[at(right)] = left;
            if (sizeOf(takenFrom[at(right)]) < demands[at(right)]) {
                for (int sender = left;; sender = cameFrom[at(right)]) {
                    sentTo[at(sender)].push_back(right);
                    takenFrom[at(right)].push_back(sender);
                    if (sender == queue.front())
                        return true;
                    right = releasedBy[at(sender)];
                    std::erase(sentTo[at(sender)], right);
                    std::erase(takenFrom[at(right)], sender);
                }
            }
            for (int const sender : takenFrom[at(right)])
                if (!isQueued[at(sender)]) {
                    isQueued[at(sender)] = true;
                    releasedBy[at(sender)] = right;
                    queue.push_back(sender);
                }
        }
    }
    return false;
}
