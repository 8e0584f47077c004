// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any drawing in strips. What lies within the page has the pixels of the file that keeps all of them.

#include "Fuzzing.h"
#include "lib/OvTIFFFile.h"
#include "lib/OvTIFFStripFile.h"
#include "support/TemporaryFolder.h"

#include <bit>
#include <filesystem>
#include <fuzzer/FuzzedDataProvider.h>
#include <memory>
#include <tiffio.h>
#include <vector>

namespace
{

// Pages of more pixels take too long to run many of them, unless no file can hold them.
constexpr double mostPixels = 400.0 * 400.0;
constexpr double tooManyPixels = 1e11;

double takeNumber(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 2)) {
    case 0:
        return input.ConsumeIntegral<std::int8_t>();
    case 1:
        return input.ConsumeIntegral<std::int16_t>() / 64.0;
    default:
        return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    }
}

TIFFCompression takeCompression(FuzzedDataProvider& input)
{
    return static_cast<TIFFCompression>(input.ConsumeIntegralInRange(0, 2));
}

String takeText(FuzzedDataProvider& input)
{
    std::string const text = input.ConsumeBytesAsString(2);
    return String(String(), text.data(), text.size());
}

// The pixels of a file; empty if it cannot be read.
std::vector<unsigned char> pixelsOf(std::filesystem::path const& path)
{
    std::unique_ptr<TIFF, decltype(&TIFFClose)> const tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
    std::uint32_t rows = 0;
    if (!tiff || !TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &rows))
        return {};
    auto const rowSize = static_cast<std::size_t>(TIFFScanlineSize(tiff.get()));
    std::vector<unsigned char> pixels(rowSize * rows);
    for (std::uint32_t row = 0; row < rows; ++row)
        if (TIFFReadScanline(tiff.get(), pixels.data() + row * rowSize, row, 0) != 1)
            return {};
    return pixels;
}

void drawAnything(FuzzedDataProvider& input, TemporaryFolder const& folder)
{
    std::filesystem::path const path = folder.path() / "any.tif";
    RealSize const size{takeNumber(input), takeNumber(input)};
    TIFFFormat const format{takeNumber(input), takeCompression(input)};
    double const dots = format.resolution / 25.4;
    double const pixels = size.width * dots * size.height * dots;
    if (pixels > mostPixels && pixels < tooManyPixels)
        return;
    // Ink of large types takes as long as a large page.
    constexpr double mostInk = 200;
    TIFFStripFile file(folder.pathOf("any.tif"), size, static_cast<ColorSpace>(input.ConsumeIntegralInRange(0, 2)),
                       format);
    while (input.remaining_bytes() > 0) {
        double const numbers[] = {takeNumber(input), takeNumber(input), takeNumber(input), takeNumber(input)};
        switch (input.ConsumeIntegralInRange(0, 5)) {
        case 0:
            file.setCMYK(numbers);
            break;
        case 1:
            file.setRGB(numbers);
            break;
        case 2:
            if (numbers[0] > 0 && numbers[0] * dots < mostInk)
                file.setTextHeight(numbers[0]);
            break;
        case 3:
            if (dots < mostInk / 6)
                file.drawText({numbers[0], numbers[1]}, takeText(input));
            break;
        default:
            file.drawRectangle({numbers[0], numbers[1], numbers[2], numbers[3]});
        }
    }
    bool const ends = input.ConsumeBool();
    if (ends)
        file.endPage();
    file.Close();
    require(std::filesystem::exists(path) == !file.hasFailed(), "a failed page is no file");
    require(file.hasFailed() || !pixelsOf(path).empty(), "a page can be read back");
}

// A page of 30 mm a side.
struct Drawing
{
    struct Step
    {
        double channels[4];
        RealRect rect;
        RealPos textPosition;
        double textHeight;
        String text;
    };

    explicit Drawing(FuzzedDataProvider& input) : colorSpace(input.ConsumeBool() ? CMYK : RGB)
    {
        while (input.remaining_bytes() > 0) {
            Step step;
            for (double& channel : step.channels)
                channel = input.ConsumeIntegral<std::uint8_t>() / 250.0;
            // Whole parts of a millimetre keep the sums exact.
            auto const take = [&](int most) { return input.ConsumeIntegralInRange(0, most * 64); };
            int const x = take(30);
            int const y = take(30);
            step.rect = {x / 64.0, y / 64.0, input.ConsumeIntegralInRange(0, 30 * 64 - x) / 64.0,
                         input.ConsumeIntegralInRange(0, 30 * 64 - y) / 64.0};
            step.textPosition = {take(17) / 64.0, 2.5 + take(20) / 64.0};
            step.textHeight = input.ConsumeIntegralInRange(1, 12) / 2.0;
            step.text = takeText(input);
            steps.push_back(step);
        }
    }

    template <typename File>
    void draw(File& file) const
    {
        for (Step const& step : steps) {
            if (colorSpace == CMYK)
                file.setCMYK(step.channels);
            else
                file.setRGB(step.channels);
            file.drawRectangle(step.rect);
            file.setTextHeight(step.textHeight);
            file.drawText(step.textPosition, step.text);
        }
    }

    ColorSpace colorSpace;
    std::vector<Step> steps;
};

void compareFiles(FuzzedDataProvider& input, TemporaryFolder const& folder)
{
    RealSize const size{30, 30};
    TIFFFormat const format{300, takeCompression(input)};
    Drawing const drawing(input);
    TIFFFile whole(folder.pathOf("whole.tif"), size);
    whole.setColorSpace(drawing.colorSpace);
    whole.setResolution(300);
    whole.startPage("");
    drawing.draw(whole);
    whole.endPage();
    whole.Close();
    TIFFStripFile strips(folder.pathOf("strips.tif"), size, drawing.colorSpace, format);
    drawing.draw(strips);
    strips.endPage();
    strips.Close();
    auto const pixels = pixelsOf(folder.path() / "whole.tif");
    require(!pixels.empty(), "the whole page can be read");
    require(pixelsOf(folder.path() / "strips.tif") == pixels, "both files have the same pixels");
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
        drawAnything(input, folder);
    else
        compareFiles(input, folder);
    return 0;
}
