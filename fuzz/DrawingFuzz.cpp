// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any drawing, with any numbers, into an EPS file and into a small raster.

#include "Fuzzing.h"
#include "lib/OvEPSFile.h"
#include "lib/OvTIFFFile.h"
#include "support/TemporaryFolder.h"

#include <bit>
#include <filesystem>
#include <fuzzer/FuzzedDataProvider.h>

namespace
{

// Rasters of more pixels take too long to run many of them, unless no file can hold them.
constexpr double mostPixels = 400.0 * 400.0;
constexpr double tooManyPixels = 1e10;
constexpr double millimetresPerInch = 25.4;

double takeNumber(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return input.ConsumeIntegral<std::int8_t>();
    case 1:
        return input.ConsumeIntegral<std::int16_t>() / 64.0;
    case 2:
        return input.ConsumeProbability<double>();
    default:
        return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    }
}

RealRect takeRect(FuzzedDataProvider& input)
{
    RealRect rect;
    for (double* const side : {&rect.x, &rect.y, &rect.width, &rect.height})
        *side = takeNumber(input);
    return rect;
}

String takeText(FuzzedDataProvider& input)
{
    std::string const text = input.ConsumeRandomLengthString(40);
    return String(String(), text.data(), text.size());
}

// What both kinds of file can draw.
template <typename Drawing>
void drawOnBoth(FuzzedDataProvider& input, Drawing& drawing)
{
    double const numbers[] = {takeNumber(input), takeNumber(input), takeNumber(input), takeNumber(input)};
    switch (input.ConsumeIntegralInRange(0, 10)) {
    case 0:
        return drawing.setCMYK(numbers);
    case 1:
        return drawing.setRGB(numbers);
    case 2:
        return drawing.setGray(numbers[0]);
    case 3:
        return drawing.drawText({numbers[0], numbers[1]}, takeText(input));
    case 4:
        return drawing.setScale(numbers[0]);
    case 5:
        return drawing.setLineWidth(numbers[0]);
    case 6:
        return drawing.writeStyle(takeText(input).getNullTerminatedString());
    case 7:
        return drawing.drawRectangleOutline(takeRect(input));
    case 8:
        return drawing.drawLine(input.ConsumeIntegral<int>(), input.ConsumeIntegral<int>(), 0, -1);
    default:
        return drawing.drawRectangle(takeRect(input));
    }
}

void drawOnPaper(FuzzedDataProvider& input, EPSFile& file)
{
    RealRect const rect = takeRect(input);
    int const numbers[] = {input.ConsumeIntegral<int>(), input.ConsumeIntegral<int>(), input.ConsumeIntegral<int>()};
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return file.drawEllipse(rect.x, rect.y, rect.width, rect.height, numbers[0], numbers[1] % 2 == 0);
    case 1:
        return file.drawTriangle(numbers[0], numbers[1], numbers[2], 4, 5, 6);
    case 2: {
        std::string const text = input.ConsumeRandomLengthString(40);
        return file.drawText(numbers[0], numbers[1], text.data(), static_cast<int>(text.size()));
    }
    default:
        return drawOnBoth(input, file);
    }
}

void drawOnRaster(FuzzedDataProvider& input, TIFFFile& file)
{
    switch (input.ConsumeIntegralInRange(0, 12)) {
    case 0:
        return file.setColorSpace(static_cast<ColorSpace>(input.ConsumeIntegralInRange(0, 2)));
    case 1:
        return file.startPage("");
    case 2:
        return file.endPage();
    case 3:
        *file.getBufPtr({input.ConsumeIntegral<int>(), input.ConsumeIntegral<int>()}) = 1;
        return;
    default:
        return drawOnBoth(input, file);
    }
}

void drawTIFF(FuzzedDataProvider& input, String const& path)
{
    RealSize const size{takeNumber(input), takeNumber(input)};
    double const resolution = takeNumber(input);
    double const pixels = size.width * resolution / millimetresPerInch * size.height * resolution / millimetresPerInch;
    TIFFFile file(path, size);
    file.setColorSpace(static_cast<ColorSpace>(input.ConsumeIntegralInRange(0, 2)));
    if (!(pixels > mostPixels && pixels < tooManyPixels))
        file.setResolution(resolution);
    file.startPage("");
    while (input.remaining_bytes() > 0)
        drawOnRaster(input, file);
    if (input.ConsumeBool())
        file.endPage();
}

void drawEPS(FuzzedDataProvider& input, String const& path)
{
    EPSFile file(path, {takeNumber(input), takeNumber(input)});
    while (input.remaining_bytes() > 0)
        drawOnPaper(input, file);
    file.endPage();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    respath = String(PATCHLOOM_RESOURCES);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static TemporaryFolder const folder;
    FuzzedDataProvider input(data, size);
    if (input.ConsumeBool())
        drawEPS(input, folder.pathOf("drawing.eps"));
    else
        drawTIFF(input, folder.pathOf("drawing.tif"));
    return 0;
}
