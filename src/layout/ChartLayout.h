// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arrangement.h"
#include "ChartPage.h"
#include "ColorGap.h"
#include "MeasurementLayout.h"
#include "OrderMethod.h"
#include "PageLayout.h"
#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

/// From which corner a chart's rows and columns count: `mirrored` from the last one, and the only one that places
/// patches.
enum ChartDirection : std::int32_t { mirrored = 0 };

/// The whole chart: its settings, and the result of fitting the patches onto chart pages and arranging them.
/// All lengths are in mm. The entries stay with whoever read them and must outlive their use here.
///
/// A copy shows the same arrangement. A copy that is computed gets an arrangement of its own, and the original keeps
/// its own: the copy then arranges copies of the entries.
class ChartLayout
{
public:
    ChartLayout();

    void setDirection(ChartDirection newDirection) { direction = newDirection; }

    /// Takes a sheet, and works out what is left of its printable area within the instrument's reach and without the
    /// border for labels. Where nothing is left, the area is at REAL_NOPOS.
    void setPageLayout(PageLayout sheet);

    /// Takes an instrument; the usable area follows with the next computation.
    void setMeasurementLayout(MeasurementLayout instrument) { measurementLayout = instrument; }
    void setColorSpace(ColorSpace newColorSpace) { colorSpace = newColorSpace; }

    /// Takes the entries to lay out, or null for none, and forgets the chart that was made of earlier ones.
    void setOriginalEntries(Array<ColorEntry>* entries);
    void setPatchSize(RealSize newPatchSize) { patchSize = newPatchSize; }
    void setName(String newName) { name = newName; }
    void setOrderMethod(OrderMethod method) { orderMethod = std::move(method); }
    void setClipToContent(bool clip) { clipToContent = clip; }

    String getName() const { return name; }

    /// The sheet as chosen.
    PageLayout getPageLayout() const { return pageLayout; }
    MeasurementLayout getMeasurementLayout() const { return measurementLayout; }
    RealSize getPatchSize() const { return patchSize; }
    ColorSpace getColorSpace() const { return colorSpace; }
    bool getClipToContent() const { return clipToContent; }
    Array<ColorEntry>* getOriginalEntries() const { return originalEntries; }

    /// Columns and rows of the whole patch grid.
    int getPatchesX() const { return patchesX; }
    int getPatchesY() const { return patchesY; }

    Array<ChartPage>* getChartPages() { return &chartPages; }
    Array<ChartPage> const* getChartPages() const { return &chartPages; }

    /// How the chart pages are arranged: columns and rows of them, and their product.
    IntSize getChartPagesSize() const { return chartPagesSize; }
    int getChartPagesCount() const { return chartPagesSize.width * chartPagesSize.height; }

    /// The entry on a cell of the patch grid; null outside it, and where no entry was placed.
    ColorEntry* getColorEntry(IntPos position) const { return arrangement ? arrangement->at(position) : nullptr; }

    /// What no order of the patches exceeds along the scan, delta E, and whether that bound is looser than it could be.
    /// Only the search for the best order computes it; otherwise it is 0.
    float getOrderBound() const;
    bool isOrderBoundLoose() const { return arrangement && arrangement->isBoundLoose(); }

    /// The room around the patches for labels, bar and crosses.
    RealBorder getBorderForAdditionalInfo() const;

    /// The room that the instrument's reach, the margins and the labels leave for patches on the first sheet, mm. Zero
    /// or less where they leave none.
    RealSize getRoomForPatches() const;

    /// Whether there are chart pages to write.
    bool hasSomethingToOutpot() const { return chartPages.getCount() > 0; }

    /// A rough estimate of the arrangement's running time, s; it grows with the square of the number of entries.
    float timeToCompute() const;

    /// Fits the patches onto chart pages and arranges them. More than 2^22 cells in all, those between the sheets
    /// included, or more than 2^20 sheets count as no room.
    ///
    /// \param gap   mm between patches along y, for instruments that scan along y
    /// \param mode  seed of the arrangement's shuffle
    /// \return the smallest delta E between neighbours along the scan; 100 for instruments that do not scan along y,
    ///         0 when nothing could be laid out
    float computeLayout(float gap, int mode);

    /// The same for instruments that scan: one sheet a chart page.
    float computeMultiPageLayout(int mode);

    /// The same for spot measurement: as few cells as hold all patches, on the sheets that tile the scan table.
    float computeCombinedPageLayout(int mode);

    /// Places the entries on the grid and, for instruments that scan along y, arranges them.
    ///
    /// \param seed  of the shuffle that the search starts from
    /// \return as computeLayout
    float fillPatches(int seed);

    /// Arranges the patches of the present layout from another seed. Only for instruments that scan along y. Nothing
    /// changes where the seed gives the order that the present arrangement started from.
    ///
    /// \return the smallest delta E between neighbours along the scan; 0 when nothing is laid out
    float arrangeFrom(int seed);

    /// A grid column's label, "A" to "Z", "a" to "z", "AA" and so on, and a grid row's, from 1.
    String getCoordinateXString(int x) const;
    String getCoordinateYString(int y) const;

    /// Writes the target description to a path, replacing what is there.
    /// \return false, and no file, without a colour space or chart pages
    bool writeOutputFile(String path) const;

    /// How many sheets have patches.
    int countOutputPages() const;

    /// Writes one image for each sheet with patches, numbered downwards from their count.
    ///
    /// \param folder  put directly before the chart's name: ends with its separator
    /// \return true
    bool writeOutputImagesEPS(String folder) const;
    bool writeOutputImagesTIFF(String folder) const;

    /// Draws the preview into the current OpenGL context, or nothing into one without fixed functions.
    ///
    /// \param size  of the view, device pixels
    void drawOpenGL(RealSize size) const;

private:
    ChartPage makeTrialPage() const;
    int countChartPages(IntSize largestGrid) const;
    void forgetPages();
    void forgetLayout();
    bool layOutPages(int count, IntSize pageGrid, RealSize pageStep);
    std::vector<bool> findVisibleCells() const;

    ChartDirection direction = mirrored;
    String name;
    PageLayout pageLayout;
    PageLayout usablePageLayout;
    MeasurementLayout measurementLayout;
    Array<ColorEntry>* originalEntries = nullptr;
    RealSize patchSize{10, 10};
    ColorSpace colorSpace = undefined;
    std::int32_t patchesX = 0;
    std::int32_t patchesY = 0;
    Array<ChartPage> chartPages;
    IntSize chartPagesSize{0, 0};
    std::shared_ptr<Arrangement> arrangement;
    OrderMethod orderMethod;
    bool clipToContent = false;
};

inline void drawChartLayout(RealSize size, ChartLayout const* layout)
{
    layout->drawOpenGL(size);
}
