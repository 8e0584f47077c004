// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetChecks.h"

#include "TableChart.h"
#include "lib/OvPDFFile.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

std::string tooLargeText(ImageKind const& kind, TIFFFormat const& tiff)
{
    if (&kind == &pdfImages)
        return "is too large for PDF, whose pages have at most 5080 mm a side; take a smaller paper or another "
               "--format";
    return "has too many pixels for TIFF at " + millimetres(tiff.resolution) +
           " dots per inch; take a lower --resolution" +
           (tiff.compression == TIFFCompression::none ? ", --compression lzw" : "") + " or another --format";
}

// " on sheets 1, 3"
std::string placeText(std::vector<int> const& sheets, int allSheets)
{
    if (static_cast<int>(sheets.size()) == allSheets)
        return " on any sheet";
    std::string text = sheets.size() == 1 ? " on sheet " : " on sheets ";
    for (int const number : sheets)
        text += (number == sheets.front() ? "" : ", ") + std::to_string(number);
    return text;
}

} // namespace

bool canHoldSheets(ChartLayout const& chart, ChartSettings const& settings, Console const& console)
{
    bool const hasPDF = std::find(settings.kinds.begin(), settings.kinds.end(), &pdfImages) != settings.kinds.end();
    std::error_code failure;
    if (std::string const font = textOf(PDFFile::fontPath()); hasPDF && !std::filesystem::exists(font, failure)) {
        console.error(font + ": the font for labels in PDF is missing; install the program again");
        return false;
    }
    for (NumberedSheet const& sheet : sheetsOf(chart))
        for (ImageKind const* kind : settings.kinds) {
            SheetFrame const frame = frameOf(sheet, chart, settings.sheets);
            if (kind->canHold(frame, chart.getColorSpace(), settings.sheets))
                continue;
            console.error("a sheet of " + millimetres(frame.size.width) + " x " + millimetres(frame.size.height) +
                          " mm " + tooLargeText(*kind, settings.sheets.tiff));
            return false;
        }
    return true;
}

void warnOfMissingMarks(ChartLayout const& chart, SheetOptions const& options, Console const& console)
{
    if (!options.hasScaleMark)
        return;
    auto const warn = [&](char const* direction, std::optional<RealPos> ScaleMark::*mark) {
        std::vector<int> sheets;
        for (NumberedSheet const& sheet : sheetsOf(chart))
            if (!(frameOf(sheet, chart, options).scaleMark.*mark))
                sheets.insert(sheets.begin(), sheet.number);
        if (!sheets.empty())
            console.warn(std::string("no room for the mark of 100 mm ") + direction +
                         placeText(sheets, chart.countOutputPages()) + "; take a larger paper or fewer patches");
    };
    warn("across", &ScaleMark::across);
    warn("up", &ScaleMark::up);
}
