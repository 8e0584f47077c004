// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "FarPairs.h"

#include <vector>

/// A flow that gives each patch its partners: each left copy of a patch sends its demand to right copies of others, one
/// unit to each at most, and each right copy takes as much as the left one sends. Such a flow exists exactly where the
/// patches can share fractions of pairs, none above 1, that add up to each one's demand.
class PartnerFlow
{
public:
    /// \param farPairs  the pairs that count, which may change between two calls of isComplete; they outlive the flow
    /// \param demands   how many partners each of their patches needs, 0 or more
    PartnerFlow(FarPairs const& farPairs, std::vector<int> demands);

    /// Whether the pairs that are far now let all demands be met. Each call begins with what the last one found.
    bool isComplete();

private:
    void dropNearPairs();
    void sendDirectly();
    bool augment(int source);
    bool expand(int left);

    FarPairs const& far;
    std::vector<int> demands;
    std::vector<std::vector<int>> sentTo;    // right copies, for each left one
    std::vector<std::vector<int>> takenFrom; // left copies, for each right one
    std::vector<FarPairs::Word> unreached;   // right copies
    std::vector<int> queue;                  // left copies
    std::vector<int> cameFrom;               // the left copy, for each reached right one
    std::vector<int> releasedBy;             // the right copy, for each queued left one
    std::vector<bool> isQueued;
};
