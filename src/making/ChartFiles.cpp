// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"

#include "output/TargetDescription.h"

String chartFolder(String const& parent, String const& chartName)
{
    return parent.getStringWithEndingSlash() + chartName;
}

String targetDescriptionName(String const& chartFolder)
{
    return chartFolder.getFilename() + ".xml";
}

std::optional<FileFault> writeChartFiles(ChartLayout const& chart, String const& folder, String const& descriptionName,
                                         std::vector<ImageKind const*> const& kinds, BeforeSheet const& before,
                                         SheetOptions const& options)
{
    String const prefix = folder.getStringWithEndingSlash();
    auto first = writeTargetDescription(chart, prefix + descriptionName);
    for (ImageKind const* kind : kinds) {
        auto const fault = writeSheets(*kind, chart, prefix, before, options);
        if (fault && !first)
            first = fault;
    }
    return first;
}
