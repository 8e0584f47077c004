// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetFiles.h"

#include "lib/OvEPSFile.h"
#include "lib/OvTIFFFile.h"

namespace
{

constexpr double pointsPerInch = 72;
constexpr double millimetresPerInch = 25.4;
constexpr double fontSize = 6.0; // mm
constexpr double tiffResolution = 300;

double toPoints(double millimetres)
{
    return (millimetres * pointsPerInch) / millimetresPerInch;
}

void fillWithPaper(TIFFFile& file, ColorSpace colorSpace, RealSize size)
{
    if (colorSpace == CMYK)
        file.setCMYK(0, 0, 0, 0);
    else if (colorSpace == RGB)
        file.setRGB(1, 1, 1);
    else
        file.setRGB(0, 0, 0);
    file.drawRectangle({0, 0, size.width, size.height});
}

std::optional<FileFault> writeEPSSheet(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                       int number)
{
    EPSFile file(path, {toPoints(frame.size.width), toPoints(frame.size.height)});
    file.writeStyle(String::format("1 setlinewidth\n2 setlinecap\n0 setlinejoin\n/Courier findfont\n%f scalefont\n"
                                   "setfont\n",
                                   fontSize));
    file.startPage("");
    file.setScale(pointsPerInch / millimetresPerInch);
    SheetDrawing<EPSFile>(file, frame, layout).draw(number);
    file.endPage();
    return closeFile(file, path);
}

std::optional<FileFault> writeTIFFSheet(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                        int number)
{
    TIFFFile file(path, frame.size);
    file.setColorSpace(layout.getColorSpace());
    file.setResolution(tiffResolution);
    file.startPage("");
    fillWithPaper(file, layout.getColorSpace(), frame.size);
    SheetDrawing<TIFFFile>(file, frame, layout).draw(number);
    file.endPage();
    return closeFile(file, path);
}

std::optional<FileFault> writeSheet(ImageKind const& kind, OutputPage const& page, String const& folder,
                                    String const& name, int number, ChartLayout const& layout)
{
    return kind.writeSheet(folder + sheetFileName(kind, name, number), frameOf(page, layout), layout, number);
}

// Returns the first fault of a chart page's sheets. The next sheet's number is the counter + 1.
std::optional<FileFault> writeChartPage(ImageKind const& kind, ChartPage const& chartPage, String const& folder,
                                        String const& name, int& counter, ChartLayout const& layout,
                                        BeforeSheet const& before = {})
{
    std::optional<FileFault> first;
    for (OutputPage const& page : *chartPage.getOutputPages()) {
        if (!page.hasPatches())
            continue;
        if (before && !before())
            break;
        auto const fault = writeSheet(kind, page, folder, name, counter + 1, layout);
        if (fault && !first)
            first = fault;
        --counter;
    }
    return first;
}

} // namespace

ImageKind const epsImages{"eps", ".eps", writeEPSSheet};
ImageKind const tiffImages{"tiff", ".tif", writeTIFFSheet};

String sheetFileName(ImageKind const& kind, String const& name, int number)
{
    return name + String::format("_%03d%s", number, kind.suffix);
}

std::optional<FileFault> writeSheets(ImageKind const& kind, ChartLayout const& layout, String const& folder,
                                     BeforeSheet const& before)
{
    std::optional<FileFault> first;
    int counter = layout.countOutputPages() - 1;
    for (ChartPage const& page : *layout.getChartPages()) {
        auto const fault = writeChartPage(kind, page, folder, layout.getName(), counter, layout, before);
        if (fault && !first)
            first = fault;
    }
    return first;
}

// The operations of charts, pages and sheets --------------------------------------------------------------------------

bool ChartLayout::writeOutputImagesEPS(String folder) const
{
    writeSheets(epsImages, *this, folder);
    return true;
}

bool ChartLayout::writeOutputImagesTIFF(String folder) const
{
    writeSheets(tiffImages, *this, folder);
    return true;
}

bool ChartPage::writeEPS(String folder, String name, int& counter, ChartLayout const* layout) const
{
    writeChartPage(epsImages, *this, folder, name, counter, *layout);
    return true;
}

bool ChartPage::writeTIFF(String folder, String name, int& counter, ChartLayout const* layout) const
{
    writeChartPage(tiffImages, *this, folder, name, counter, *layout);
    return true;
}

bool OutputPage::writeEPS(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (hasPatches())
        writeSheet(epsImages, *this, folder, name, counter + 1, *layout);
    return hasPatches();
}

bool OutputPage::writeTIFF(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (hasPatches())
        writeSheet(tiffImages, *this, folder, name, counter + 1, *layout);
    return hasPatches();
}

void OutputPage::drawEPSCross(EPSFile* file, RealPos position)
{
    drawCross(*file, position);
}

void OutputPage::drawTIFFCross(TIFFFile* file, RealPos position)
{
    drawCross(*file, position);
}
