// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvArray.h"
#include "lib/OvString.h"

class ChartLayout;
class ColorEntry;

/// The settings of a writer of output files. It writes nothing by itself, and it owns nothing that it points to.
class OutputFile
{
public:
    void setName(String newName) { name = newName; }
    void setLabels(Array<String> const* newLabels) { labels = newLabels; }
    void setEntries(Array<ColorEntry> const* newEntries) { entries = newEntries; }
    void setChartLayout(ChartLayout const* layout) { chartLayout = layout; }

    String getName() const { return name; }
    Array<String> const* getLabels() const { return labels; }
    Array<ColorEntry> const* getEntries() const { return entries; }
    ChartLayout const* getChartLayout() const { return chartLayout; }

private:
    String name = String("Sheetbridge Output File");
    Array<String> const* labels = nullptr;
    Array<ColorEntry> const* entries = nullptr;
    ChartLayout const* chartLayout = nullptr;
};
