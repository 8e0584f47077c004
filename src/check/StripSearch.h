// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DeviceModel.h"
#include "ReadingOrder.h"
#include "StripMatch.h"

#include <vector>

/// What the readings of a chart truly show, as far as whole strips tell.
struct StripExplanation
{
    ReadingOrder order;              // of the whole table
    double orderLogOdds = 0;         // against the chart's own order
    Readings readings;               // in the chart's order
    std::vector<StripMatch> base;    // strips of the sheets that were read
    std::vector<StripMatch> matches; // what each strip's readings show
    double sheetLogOdds = 0;         // of exchanged sheets against none
    DeviceModel model;               // learnt from the readings as they are matched

    /// Whether the readings fit the chart in any order.
    bool isExplained = true;

    /// Whether a sheet's strips are those of another sheet.
    bool hasExchangedSheets() const;
};

/// Searches the explanation of the readings: assigns them, learns a model, assigns them by it, until nothing changes.
StripExplanation explainStrips(ChartReference const& chart, Readings const& readings,
                               std::vector<ReadingOrder> const& orders);
