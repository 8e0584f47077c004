// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "MeasurementLayout.h"
#include "OutputPage.h"
#include "PageLayout.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"

#include <cstdint>

class ChartLayout;
class WFile;

/// Space between chart pages in the preview, mm.
inline constexpr int chartPageSpacing = 20;

/// More sheets than anyone prints. A limit, so that a chart cannot use up the memory.
inline constexpr std::int64_t mostSheets = 1 << 20;

/// The values of a chart page.
struct ChartPageValues
{
    RealPos origin;
    RealRect content;
    Array<OutputPage> outputPages;
    IntSize pagesSize;
    IntRect coordRect;
    IntRect usableCoordRect;
};

/// What the instrument measures in one go: the scan table tiled with sheets for spot measurement, one sheet for
/// scanning. A copy owns its sheets, and they point at the copy.
class ChartPage : private ChartPageValues
{
public:
    ChartPage() = default;
    ChartPage(ChartPage const& other);
    ChartPage& operator=(ChartPage const& other);
    ~ChartPage() = default;

    /// Tiles the instrument's reach with sheets and fits patches onto them.
    ///
    /// \param instrument  its reach, margins, gap and scan direction
    /// \param position    the chart page's place in the preview, mm
    /// \param sheet       paper and printable area, mm
    /// \param patch       patch size, mm
    /// \param maxSize     the most columns and rows wanted in all, or INT_NOPOS for as many as fit
    void init(MeasurementLayout instrument, RealPos position, PageLayout sheet, RealSize patch, IntSize maxSize);

    /// The chart page's place in the preview, mm.
    RealPos getOrigin() const { return origin; }

    /// The origin of the first sheet, mm; without sheets, an index error is reported and REAL_NOPOS returned.
    RealPos getFirstPageOrigin() const { return outputPages[0].getOrigin(); }

    /// Extent of all sheets together, mm.
    RealSize getSize() const { return {content.width, content.height}; }
    RealRect getContent() const { return content; }

    /// The patch coordinates that the chart page covers.
    IntRect getCoordRect() const { return coordRect; }

    /// The columns and rows that its sheets show in all.
    IntRect getUsableCoordRect() const { return usableCoordRect; }

    /// Sheets across and up.
    IntSize getPagesSize() const { return pagesSize; }

    /// The sheets, row after row from the bottom: index = sheets across * row + column.
    Array<OutputPage>* getOutputPages() { return &outputPages; }
    Array<OutputPage> const* getOutputPages() const { return &outputPages; }

    /// Moves the chart page and its sheets to other patch coordinates.
    void shiftCoords(IntPos offset);

    bool containsPatch(IntPos position) const { return coordRect.contains(position); }

    /// Whether a sheet shows the patch coordinate.
    bool isVisible(IntPos position) const;

    /// How many sheets have patches.
    int countOutputPages() const;

    /// Writes each sheet that has patches. A sheet's number is the counter + 1. Each written sheet lowers the counter.
    /// \return true
    bool writeEPS(String folder, String name, int& counter, ChartLayout const* layout) const;
    bool writeTIFF(String folder, String name, int& counter, ChartLayout const* layout) const;

    /// Writes nothing: the target description has no part for a chart page.
    void writeToOutputFile(WFile* file, int& counter, ChartLayout const* layout) const;

    /// Draws its sheets into the current OpenGL context, in the plane that is shown there.
    void drawOpenGL(ChartLayout const* layout) const;

private:
    void tileReach(MeasurementLayout const& instrument, PageLayout const& sheet, RealSize patch, IntSize maxSize);
    void coverOneSheet(MeasurementLayout const& instrument, PageLayout const& sheet, RealSize patch, IntSize maxSize);
    void adoptOutputPages();
};
