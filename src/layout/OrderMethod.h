// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

/// How a chart's patches are ordered along the scan.
struct OrderMethod
{
    /// The fast search, the search for the best order, or the order that the entries come in.
    enum Kind { standard, best, given } kind = standard;

    /// How much work the search for the best order does, from 1.
    int effort = 1;

    /// The search for the best order calls it now and then. It gets the smallest difference reached and the bound that
    /// no order exceeds, both squared delta E. May be empty.
    std::function<void(float smallest, float bound)> progress;
};
