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

/// The corner that a chart's rows and columns count from. `mirrored` counts from the last corner. Only `mirrored`
/// places patches.
enum ChartDirection : std::int32_t { mirrored = 0 };

/// The whole chart: its settings, and the result of fitting the patches onto chart pages and arranging them. All
/// lengths are in mm. The caller owns the entries, and keeps them as long as the chart uses them.
///
/// A copy shows the same arrangement until it is computed. Then it gets an arrangement of its own, with copies of the
/// entries. The original keeps its arrangement.
class ChartLayout
{
public:
    ChartLayout();

    void setDirection(ChartDirection newDirection) { direction = newDirection; }

    /// Sets the sheet and computes its usable area: the printable area within the instrument's reach, without the
    /// border for labels. If nothing is left, the usable area is at REAL_NOPOS.
    void setPageLayout(PageLayout sheet);

    /// Sets the instrument. The next computation adapts the usable area.
    void setMeasurementLayout(MeasurementLayout instrument) { measurementLayout = instrument; }
    void setColorSpace(ColorSpace newColorSpace) { colorSpace = newColorSpace; }

    /// Sets the entries to lay out; null for none. Forgets the chart of the earlier entries.
    void setOriginalEntries(Array<ColorEntry>* entries);
    void setPatchSize(RealSize newPatchSize) { patchSize = newPatchSize; }
    void setName(String newName) { name = newName; }
    void setOrderMethod(OrderMethod method) { orderMethod = std::move(method); }
    void setClipToContent(bool clip) { clipToContent = clip; }

    String getName() const { return name; }

    /// The sheet as it was set.
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

    /// Columns and rows of chart pages, and their product.
    IntSize getChartPagesSize() const { return chartPagesSize; }
    int getChartPagesCount() const { return chartPagesSize.width * chartPagesSize.height; }

    /// The entry on a cell of the patch grid; null outside it, and where no entry was placed.
    ColorEntry* getColorEntry(IntPos position) const { return arrangement ? arrangement->at(position) : nullptr; }

    /// No order of the patches has a larger smallest delta E along the scan than this bound. The second function tells
    /// whether the bound is looser than it could be. Only the search for the best order computes the bound. Otherwise
    /// it is 0.
    float getOrderBound() const;
    bool isOrderBoundLoose() const { return arrangement && arrangement->isBoundLoose(); }

    /// The room around the patches for labels, bar and crosses.
    RealBorder getBorderForAdditionalInfo() const;

    /// The room that the instrument's reach, the margins and the labels leave for patches on the first sheet, mm. Zero
    /// or less if they leave none.
    RealSize getRoomForPatches() const;

    /// Whether there are chart pages to write.
    bool hasSomethingToOutpot() const { return chartPages.getCount() > 0; }

    /// A rough estimate of the arrangement's running time, s; it grows with the square of the number of entries.
    float timeToCompute() const;

    /// Fits the patches onto chart pages and arranges them. A chart that needs more than 2^22 cells, including those
    /// between the sheets, or more than 2^20 sheets counts as having no room.
    ///
    /// \param gap   mm between patches along y, for instruments that scan along y
    /// \param mode  seed of the arrangement's shuffle
    /// \return the smallest delta E between neighbours along the scan; 100 for instruments that do not scan along y,
    ///         0 when nothing could be laid out
    float computeLayout(float gap, int mode);

    /// The same for instruments that scan: each chart page is one sheet.
    float computeMultiPageLayout(int mode);

    /// The same for spot measurement: a small grid that holds all patches, on the sheets that tile the scan table.
    float computeCombinedPageLayout(int mode);

    /// Places the entries on the grid and, for instruments that scan along y, arranges them.
    ///
    /// \param seed  of the shuffle that the search starts from
    /// \return as computeLayout
    float fillPatches(int seed);

    /// Arranges the patches of the present layout from another seed. Only for instruments that scan along y. Nothing
    /// changes when the seed gives the same start as last time.
    ///
    /// \return the smallest delta E between neighbours along the scan; 0 when nothing is laid out
    float arrangeFrom(int seed);

    /// The labels of a grid column and of a grid row. Columns are "A" to "Z", "a" to "z", "AA" and so on. Rows count
    /// from 1.
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
