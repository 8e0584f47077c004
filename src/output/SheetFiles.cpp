// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetDrawing.h"

#include "layout/OutputPage.h"
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

String fileName(String const& folder, String const& name, int number, char const* suffix)
{
    return folder + name + String::format("_%03d.%s", number, suffix);
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

} // namespace

SheetFrame frameOf(OutputPage const& page, ChartLayout const& layout)
{
    SheetFrame frame{page.getSize(),    page.getContentRect(), page.getPatchSize(),
                     page.getGapSize(), page.getMinMargin(),   page.getCoordRect()};
    if (layout.getClipToContent()) {
        RealBorder const border = layout.getBorderForAdditionalInfo();
        RealBorder const margin = layout.getMeasurementLayout().getMinMargin();
        RealRect& content = frame.content;
        frame.size = {content.width + border.left + border.right + margin.left + margin.right,
                      content.height + border.top + border.bottom + margin.top + margin.bottom};
        content.x = border.left + margin.left;
        content.y = border.bottom + margin.bottom;
    }
    return frame;
}

bool OutputPage::writeEPS(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (!hasPatches())
        return false;
    int const number = counter + 1;
    SheetFrame const frame = frameOf(*this, *layout);
    EPSFile file(fileName(folder, name, number, "eps"), {toPoints(frame.size.width), toPoints(frame.size.height)});
    file.writeStyle(String::format("1 setlinewidth\n2 setlinecap\n0 setlinejoin\n/Courier findfont\n%f scalefont\n"
                                   "setfont\n",
                                   fontSize));
    file.startPage("");
    file.setScale(pointsPerInch / millimetresPerInch);
    SheetDrawing<EPSFile>(file, frame, *layout).draw(number);
    file.endPage();
    return true;
}

bool OutputPage::writeTIFF(String folder, String name, int counter, ChartLayout const* layout) const
{
    if (!hasPatches())
        return false;
    int const number = counter + 1;
    SheetFrame const frame = frameOf(*this, *layout);
    TIFFFile file(fileName(folder, name, number, "tif"), frame.size);
    file.setColorSpace(layout->getColorSpace());
    file.setResolution(tiffResolution);
    file.startPage("");
    fillWithPaper(file, layout->getColorSpace(), frame.size);
    SheetDrawing<TIFFFile>(file, frame, *layout).draw(number);
    file.endPage();
    return true;
}

void OutputPage::drawEPSCross(EPSFile* file, RealPos position)
{
    drawCross(*file, position);
}

void OutputPage::drawTIFFCross(TIFFFile* file, RealPos position)
{
    drawCross(*file, position);
}
