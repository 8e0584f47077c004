// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "FarPairs.h"

#include <vector>

/// What patches have to share with partners, in units.
struct PartnerNeeds
{
    int patch;     ///< units that each patch has to share at least
    int patchMost; ///< units that each patch can share
    int paper;     ///< units that the paper has to share, and can
    int pair;      ///< units that a pair can share
};

/// A flow that gives each patch its partners. A left copy of each patch sends units to right copies of patches that are
/// far from it. Left copies send at least what each has to share, right copies take no more than each can.
class PartnerFlow
{
public:
    /// \param farPairs      the pairs that count, the last of their patches being the paper. They may change between
    /// two
    ///                      calls of isComplete, and outlive the flow.
    /// \param partnerNeeds  0 or more each
    PartnerFlow(FarPairs const& farPairs, PartnerNeeds const& partnerNeeds);

    /// Whether the pairs that are far now let all needs be met. Each call begins with what the last one found.
    bool isComplete();

private:
    struct Shipment
    {
        int right;
        int units;
    };

    int openDemand(int left) const;
    int openCapacity(int right) const;
    int unitsOf(int left, int right) const;
    void send(int left, int right, int units);

    void dropNearPairs();
    void sendDirectly();
    bool augment(int source);
    bool expand(int left);
    void sendAlongPath(int right);

    FarPairs const& far;
    PartnerNeeds needs;
    std::vector<std::vector<Shipment>> sentTo; // for each left copy
    std::vector<std::vector<int>> takenFrom;   // left copies, for each right one
    std::vector<int> sent;
    std::vector<int> taken;
    std::vector<FarPairs::Word> unreached; // right copies
    std::vector<int> queue;                // left copies
    std::vector<int> cameFrom;             // the left copy, for each reached right one
    std::vector<int> releasedBy;           // the right copy, for each queued left one
    std::vector<bool> isQueued;
};
