// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartFiles.h"
#include "ChartLayout.h"
#include "ChartMaking.h"
#include "InputFile.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

/// Settings of the window. The defaults are those of a new window, apart from the file.
struct Settings
{
    String table;
    String name = "New Chart";
    MeasurementLayoutPreset device = tableSpot;
    PageLayout sheet = paper(a4Portrait);
    RealSize patch = {8, 8};
};

enum class Sheets { EPS, TIFF };

/// The chart that the library makes from such settings, without a window. The colour conversions must be prepared.
class LibraryChart
{
public:
    explicit LibraryChart(Settings const& settings)
    {
        file.init(settings.table);
        layout.setDirection(mirrored);
        layout.setMeasurementLayout(instrument(settings.device));
        layout.setPageLayout(settings.sheet);
        layout.setPatchSize(settings.patch);
        layout.setName(settings.name);
        layout.setColorSpace(file.getColorSpace());
        layout.setOriginalEntries(file.getEntries());
    }
    LibraryChart(LibraryChart const&) = delete;
    LibraryChart& operator=(LibraryChart const&) = delete;

    /// Tries a second order if the first has a difference below 18 delta E, and gaps if the second has one too.
    /// \return the smallest delta E along the scan without gaps
    float compute() { return makeChart(layout).withoutGaps; }

    /// The files that the last computed chart writes, without their dates.
    QMap<QString, QByteArray> files(Sheets kind = Sheets::EPS) const
    {
        TemporaryFolder const folder;
        layout.writeOutputFile(folder.pathWithSlash() + layout.getName() + ".xml");
        if (kind == Sheets::TIFF)
            layout.writeOutputImagesTIFF(folder.pathWithSlash());
        else
            layout.writeOutputImagesEPS(folder.pathWithSlash());
        return filesIn(QString::fromStdString(folder.path().string()));
    }

private:
    InputFile file;

public:
    ChartLayout layout;
};
