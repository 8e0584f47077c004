// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"

#include "output/TargetDescription.h"

String chartFolder(String const& parent, ChartLayout const& chart)
{
    return parent.getStringWithEndingSlash() + chart.getName();
}

String targetDescriptionName(String const& chartFolder)
{
    return chartFolder.getFilename() + ".xml";
}

bool writeChartFiles(ChartLayout const& chart, String const& folder, String const& descriptionName,
                     std::vector<ImageKind const*> const& kinds)
{
    String const prefix = folder.getStringWithEndingSlash();
    bool isWhole = writeTargetDescription(chart, prefix + descriptionName);
    for (ImageKind const* kind : kinds)
        isWhole = writeSheets(*kind, chart, prefix) && isWhole;
    return isWhole;
}
