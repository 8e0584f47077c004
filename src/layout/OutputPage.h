// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "MeasurementLayout.h"
#include "PageLayout.h"
#include "lib/Geometry.h"
#include "lib/OvString.h"

class ChartLayout;
class ChartPage;
class EPSFile;
class TIFFFile;

/// One printed sheet of a chart page: its place there, the block of patches on it, and how it is drawn.
class OutputPage
{
public:
    /// Fits whole patches, each with its gap, onto the sheet.
    ///
    /// \param owner      the chart page that the sheet belongs to
    /// \param sheet      paper and printable area, mm; an area at REAL_NOPOS gives a sheet without patches
    /// \param position   the sheet's place on the chart page, mm
    /// \param instrument clamps the patches to its reach, except across its travel, and gives the gap
    /// \param patch      patch size, mm
    /// \param firstPatch where patch (0, 0) lies on the chart page, mm; the first sheet with room sets it, and with it
    ///                   the patch grid of all sheets of the chart page
    /// \param margin     space to keep free inside the printable area, mm
    /// \param maxSize    the most columns and rows wanted, or INT_NOPOS for as many as fit
    void init(ChartPage const* owner, PageLayout sheet, RealPos position, MeasurementLayout instrument, RealSize patch,
              RealPos& firstPatch, RealBorder margin, IntSize maxSize);

    /// How many columns and rows of patches the sheet shows.
    IntSize getPatchesPerPage() const { return {coordRect.width, coordRect.height}; }

    /// The sheet's last patch column and row.
    int getMaxXCoord() const { return wrappedDifference(wrappedSum(coordRect.x, coordRect.width), 1); }
    int getMaxYCoord() const { return wrappedDifference(wrappedSum(coordRect.y, coordRect.height), 1); }

    /// The patch coordinates on this sheet.
    IntRect getCoordRect() const { return coordRect; }

    ChartPage const* getChartPage() const { return chartPage; }

    /// For a copied chart page: its sheets must point at the copy.
    void setChartPage(ChartPage const* owner) { chartPage = owner; }

    /// The sheet's place on its chart page, less the corner of its printable area, mm.
    RealPos getOrigin() const { return origin; }
    void setOrigin(RealPos newOrigin) { origin = newOrigin; }

    /// The sheet's size, mm.
    RealSize getSize() const { return size; }

    /// The block that the patches and gaps fill, on the sheet, mm.
    RealRect getContentRect() const { return content; }
    RealSize getContentSize() const { return {content.width, content.height}; }

    RealSize getPatchSize() const { return patchSize; }
    RealSize getGapSize() const { return gapSize; }

    /// The margin that the patches keep, mm; the labels stand beyond it.
    RealBorder getMinMargin() const { return minMargin; }

    bool hasPatches() const { return coordRect.hasPatches(); }
    bool isVisible(IntPos position) const { return coordRect.contains(position); }
    bool containsPatch(IntPos position) const { return coordRect.contains(position); }

    /// Moves the sheet to other patch coordinates.
    void shiftCoords(IntPos offset);

    /// Takes columns off the sheet's right side.
    void reduceCoordWidth(int columns);

    /// Draws the sheet into folder + name + "_" + number + ".eps". The number is the counter + 1.
    ///
    /// \param folder  put directly before the name: ends with its separator
    /// \return whether the sheet has patches; no file is written without patches
    bool writeEPS(String folder, String name, int counter, ChartLayout const* layout) const;

    /// The same as ".tif", at 300 dots per inch.
    bool writeTIFF(String folder, String name, int counter, ChartLayout const* layout) const;

    /// Draws the sheet into the current OpenGL context, in the plane that is shown there. If the chart is clipped to
    /// content, the paper is as large as the content with equal borders.
    void drawOpenGL(ChartLayout const* layout) const;

    /// Draws a registration cross, 3 mm across, in the current colour; the position is its centre, mm.
    static void drawEPSCross(EPSFile* file, RealPos position);
    static void drawTIFFCross(TIFFFile* file, RealPos position);

private:
    ChartPage const* chartPage = nullptr;
    RealSize size;
    RealRect content;
    RealPos origin;
    RealSize patchSize;
    RealSize gapSize;
    IntRect coordRect;
    RealBorder minMargin;
};

/// The same as OutputPage::drawOpenGL, but always on the whole paper.
void drawOutputPage(ChartLayout const* layout, OutputPage const* page);
