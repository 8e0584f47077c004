// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SourceTable.h"

#include <map>
#include <utility>

SourceTable findSourceTable(ChartReference const& chart, PatchTable const& table)
{
    SourceTable result;
    std::map<std::string, std::vector<std::size_t>> waiting;
    for (std::size_t i = chart.patches.size(); i-- > 0;) {
        ChartPatch const& patch = chart.patches[i];
        if (patch.isFiller)
            continue;
        std::string values;
        for (std::size_t channel = 0; channel < chart.channels(); ++channel)
            values += (channel > 0 ? " " : "") + patch.values[channel];
        waiting[values].push_back(i);
    }
    for (std::size_t row = 0; row < table.count(); ++row) {
        auto const found = waiting.find(std::string(table.valuesOf(row)));
        if (table.colorSpace != chart.colorSpace || found == waiting.end() || found->second.empty()) {
            result.fault = "line " + std::to_string(table.lineOf(row)) +
                           ": these device values are not on the chart, or not so often: the chart was made from "
                           "another table";
            return result;
        }
        result.patches.push_back(found->second.back());
        found->second.pop_back();
        PatchLabel const label = table.labelOf(row);
        result.ids.push_back(label.id.empty() ? std::to_string(row + 1) : label.id);
        result.names.push_back(label.name);
    }
    return result;
}

std::vector<ReadingOrder> ordersOf(ChartReference const& chart, SourceTable const& table)
{
    Assignment readInTableOrder(chart.patches.size());
    Assignment storedInTableOrder(chart.patches.size());
    std::size_t row = 0;
    for (std::size_t i = 0; i < chart.patches.size() && row < table.patches.size(); ++i) {
        if (chart.patches[i].isFiller)
            continue;
        readInTableOrder[i] = table.patches[row];
        storedInTableOrder[table.patches[row]] = i;
        ++row;
    }
    return {{"the readings stand in the order of the table that the chart was made from", std::move(readInTableOrder)},
            {"the rows of the table stand in the order of the chart", std::move(storedInTableOrder)}};
}
