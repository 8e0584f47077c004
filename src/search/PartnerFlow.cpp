// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerFlow.h"

#include <algorithm>
#include <bit>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

PartnerFlow::PartnerFlow(FarPairs const& farPairs, PartnerNeeds const& partnerNeeds)
    : far(farPairs), needs(partnerNeeds), sentTo(at(far.countPatches())), takenFrom(sentTo.size()), sent(sentTo.size()),
      taken(sentTo.size()), unreached(at(far.getWordsPerRow())), cameFrom(sentTo.size()), releasedBy(sentTo.size()),
      isQueued(sentTo.size())
{
}

int PartnerFlow::openDemand(int left) const
{
    return (left + 1 == far.countPatches() ? needs.paper : needs.patch) - sent[at(left)];
}

int PartnerFlow::openCapacity(int right) const
{
    return (right + 1 == far.countPatches() ? needs.paper : needs.patchMost) - taken[at(right)];
}

int PartnerFlow::unitsOf(int left, int right) const
{
    auto const& shipments = sentTo[at(left)];
    auto const found = std::ranges::find(shipments, right, &Shipment::right);
    return found == shipments.end() ? 0 : found->units;
}

// Negative units take back what was sent.
void PartnerFlow::send(int left, int right, int units)
{
    sent[at(left)] += units;
    taken[at(right)] += units;
    auto& shipments = sentTo[at(left)];
    auto const found = std::ranges::find(shipments, right, &Shipment::right);
    if (found == shipments.end()) {
        shipments.push_back({right, units});
        takenFrom[at(right)].push_back(left);
        return;
    }
    found->units += units;
    if (found->units == 0) {
        shipments.erase(found);
        std::erase(takenFrom[at(right)], left);
    }
}

bool PartnerFlow::isComplete()
{
    dropNearPairs();
    sendDirectly();
    for (int left = 0; left < far.countPatches(); ++left)
        while (openDemand(left) > 0)
            if (!augment(left))
                return false;
    return true;
}

void PartnerFlow::dropNearPairs()
{
    for (int left = 0; left < far.countPatches(); ++left)
        for (Shipment const& shipment : std::vector<Shipment>(sentTo[at(left)]))
            if (!far.areFar(left, shipment.right))
                send(left, shipment.right, -shipment.units);
}

// Most units find their way without an augmenting path.
void PartnerFlow::sendDirectly()
{
    for (int right = 0; right < far.countPatches(); ++right) {
        FarPairs::Word& word = unreached[at(right / FarPairs::wordBits)];
        FarPairs::Word const bit = FarPairs::Word{1} << (right % FarPairs::wordBits);
        word = openCapacity(right) > 0 ? word | bit : word & ~bit;
    }
    for (int left = 0; left < far.countPatches(); ++left)
        for (int word = 0; word < far.getWordsPerRow() && openDemand(left) > 0; ++word) {
            FarPairs::Word open = far.row(left)[word] & unreached[at(word)];
            for (; open != 0 && openDemand(left) > 0; open &= open - 1) {
                int const right = word * FarPairs::wordBits + std::countr_zero(open);
                int const units = std::min({openDemand(left), openCapacity(right), needs.pair - unitsOf(left, right)});
                if (units > 0)
                    send(left, right, units);
                if (openCapacity(right) == 0)
                    unreached[at(word)] &= ~(open & ~(open - 1));
            }
        }
}

// Sends more from a left copy, along a shortest path.
bool PartnerFlow::augment(int source)
{
    std::ranges::fill(unreached, ~FarPairs::Word{0});
    isQueued.assign(isQueued.size(), false);
    queue.assign(1, source);
    isQueued[at(source)] = true;
    // The queue grows meanwhile.
    std::size_t next = 0;
    while (next < queue.size())
        if (expand(queue[next++]))
            return true;
    return false;
}

// Reaches all right copies that a left one can send more to. Where one of them can take more, the path ends.
bool PartnerFlow::expand(int left)
{
    for (int word = 0; word < far.getWordsPerRow(); ++word) {
        FarPairs::Word found = far.row(left)[word] & unreached[at(word)];
        for (; found != 0; found &= found - 1) {
            int const right = word * FarPairs::wordBits + std::countr_zero(found);
            if (unitsOf(left, right) >= needs.pair)
                continue;
            unreached[at(word)] &= ~(found & ~(found - 1));
            cameFrom[at(right)] = left;
            if (openCapacity(right) > 0) {
                sendAlongPath(right);
                return true;
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

void PartnerFlow::sendAlongPath(int last)
{
    int const source = queue.front();
    int units = std::min(openDemand(source), openCapacity(last));
    for (int right = last;; right = releasedBy[at(cameFrom[at(right)])]) {
        int const left = cameFrom[at(right)];
        units = std::min(units, needs.pair - unitsOf(left, right));
        if (left == source)
            break;
        units = std::min(units, unitsOf(left, releasedBy[at(left)]));
    }
    for (int right = last;;) {
        int const left = cameFrom[at(right)];
        send(left, right, units);
        if (left == source)
            break;
        right = releasedBy[at(left)];
        send(left, right, -units);
    }
}
