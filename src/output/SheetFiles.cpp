// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetFiles.h"

#include "lib/OvEPSFile.h"
#include "lib/OvPDFFile.h"
#include "lib/OvTIFFFile.h"

#include <algorithm>

namespace
{

constexpr double pointsPerInch = 72;
constexpr double millimetresPerInch = 25.4;
constexpr double fontSize = 6.0; // mm

double toPoints(double millimetres)
{
    return (millimetres * pointsPerInch) / millimetresPerInch;
}

template <typename Drawing>
void fillWithPaper(Drawing& file, ColorSpace colorSpace, RealSize size)
{
    if (colorSpace == CMYK)
        file.setCMYK(0, 0, 0, 0);
    else if (colorSpace == RGB)
        file.setRGB(1, 1, 1);
    else
        file.setRGB(0, 0, 0);
    file.drawRectangle({0, 0, size.width, size.height});
}

// Writes a sheet's image to a path.
using WriteImage = std::optional<FileFault> (*)(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                                int number, SheetOptions const& options);

std::optional<FileFault> writeEPSImage(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                       int number, SheetOptions const&)
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

std::optional<FileFault> writePlainTIFFImage(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                             int number)
{
    TIFFFile file(path, frame.size);
    file.setColorSpace(layout.getColorSpace());
    file.setResolution(TIFFFormat().resolution);
    file.startPage("");
    fillWithPaper(file, layout.getColorSpace(), frame.size);
    SheetDrawing<TIFFFile>(file, frame, layout).draw(number);
    file.endPage();
    return closeFile(file, path);
}

std::optional<FileFault> writeTIFFImage(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                        int number, SheetOptions const& options)
{
    if (options.tiff == TIFFFormat())
        return writePlainTIFFImage(path, frame, layout, number);
    TIFFStripFile file(path, frame.size, layout.getColorSpace(), options.tiff);
    fillWithPaper(file, layout.getColorSpace(), frame.size);
    SheetDrawing<TIFFStripFile>(file, frame, layout).draw(number);
    file.endPage();
    return closeFile(file, path);
}

std::optional<FileFault> writeSheet(ImageKind const& kind, WriteImage write, NumberedSheet const& sheet,
                                    String const& folder, String const& name, ChartLayout const& layout,
                                    SheetOptions const& options = {})
{
    return write(folder + sheetFileName(kind, name, sheet.number), frameOf(sheet, layout, options), layout,
                 sheet.number, options);
}

std::optional<FileFault> writeEachSheet(ImageKind const& kind, WriteImage write, ChartLayout const& layout,
                                        String const& folder, SheetOptions const& options, BeforeSheet const& before)
{
    std::optional<FileFault> first;
    for (NumberedSheet const& sheet : sheetsOf(layout)) {
        if (before && !before())
            break;
        auto const fault = writeSheet(kind, write, sheet, folder, layout.getName(), layout, options);
        if (fault && !first)
            first = fault;
    }
    return first;
}

std::optional<FileFault> writeEPSImages(ChartLayout const& layout, String const& folder, SheetOptions const& options,
                                        BeforeSheet const& before)
{
    return writeEachSheet(epsImages, writeEPSImage, layout, folder, options, before);
}

std::optional<FileFault> writeTIFFImages(ChartLayout const& layout, String const& folder, SheetOptions const& options,
                                         BeforeSheet const& before)
{
    return writeEachSheet(tiffImages, writeTIFFImage, layout, folder, options, before);
}

std::optional<FileFault> writePDFDocument(ChartLayout const& layout, String const& folder, SheetOptions const& options,
                                          BeforeSheet const& before)
{
    String const path = folder + sheetFileName(pdfImages, layout.getName(), 0);
    PDFFile file(path, layout.getName());
    std::vector<NumberedSheet> sheets = sheetsOf(layout);
    std::reverse(sheets.begin(), sheets.end());
    for (NumberedSheet const& sheet : sheets) {
        if (before && !before())
            return std::nullopt;
        SheetFrame const frame = frameOf(sheet, layout, options);
        file.startPage(frame.size);
        SheetDrawing<PDFFile>(file, frame, layout).draw(sheet.number);
        file.endPage();
    }
    return closeFile(file, path);
}

bool canHoldEPS(SheetFrame const&, ColorSpace, SheetOptions const&)
{
    return true;
}

bool canHoldTIFF(SheetFrame const& frame, ColorSpace colorSpace, SheetOptions const& options)
{
    IntSize const pixels = TIFFStripFile::pixelsOf(frame.size, options.tiff.resolution);
    return TIFFStripFile::canHold(pixels, colorSpace == CMYK ? 4 : 3, options.tiff.compression);
}

bool canHoldPDF(SheetFrame const& frame, ColorSpace, SheetOptions const&)
{
    return std::max(frame.size.width, frame.size.height) <= PDFFile::longestSide;
}

// Writes a chart page's sheets. The next sheet's number is the counter + 1.
void writeChartPage(ImageKind const& kind, WriteImage write, ChartPage const& chartPage, String const& folder,
                    String const& name, int& counter, ChartLayout const& layout)
{
    for (OutputPage const& page : *chartPage.getOutputPages())
        if (page.hasPatches())
            writeSheet(kind, write, {&page, counter-- + 1}, folder, name, layout);
}

} // namespace

ImageKind const epsImages{"eps", ".eps", false, writeEPSImages, canHoldEPS};
ImageKind const tiffImages{"tiff", ".tif", false, writeTIFFImages, canHoldTIFF};
ImageKind const pdfImages{"pdf", ".pdf", true, writePDFDocument, canHoldPDF};

std::vector<NumberedSheet> sheetsOf(ChartLayout const& layout)
{
    std::vector<NumberedSheet> sheets;
    int number = layout.countOutputPages();
    for (ChartPage const& chartPage : *layout.getChartPages())
        for (OutputPage const& page : *chartPage.getOutputPages())
            if (page.hasPatches())
                sheets.push_back({&page, number--});
    return sheets;
}

SheetFrame frameOf(NumberedSheet const& sheet, ChartLayout const& layout, SheetOptions const& options)
{
    SheetFrame frame = frameOf(*sheet.page, layout);
    if (options.hasScaleMark)
        frame.scaleMark = findScaleMark(frame, layout);
    return frame;
}

String sheetFileName(ImageKind const& kind, String const& name, int number)
{
    return name + (kind.isDocument ? String(kind.suffix) : String::format("_%03d%s", number, kind.suffix));
}

std::optional<FileFault> writeSheets(ImageKind const& kind, ChartLayout const& layout, String const& folder,
                                     BeforeSheet const& before, SheetOptions const& options)
{
    return kind.writeSheets(layout, folder, options, before);
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
    writeChartPage(epsImages, writeEPSImage, *this, folder, name, counter, *layout);
    return true;
}

bool ChartPage::writeTIFF(String folder, String name, int& counter, ChartLayout const* layout) const
{
    writeChartPage(tiffImages, writeTIFFImage, *this, folder, name, counter, *layout);
    return true;
}

bool OutputPage::writeEPS(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (hasPatches())
        writeSheet(epsImages, writeEPSImage, {this, counter + 1}, folder, name, *layout);
    return hasPatches();
}

bool OutputPage::writeTIFF(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (hasPatches())
        writeSheet(tiffImages, writeTIFFImage, {this, counter + 1}, folder, name, *layout);
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
