// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvRaster.h"

#include <algorithm>
#include <cstring>
#include <sys/mman.h>

namespace
{

std::size_t clampToSide(std::int64_t position, std::size_t side)
{
    return static_cast<std::size_t>(std::clamp<std::int64_t>(position, 0, static_cast<std::int64_t>(side) - 1));
}

// Most of the time of a large sheet is spent on touching its memory for the first time. Large memory pages cut that
// time to a third. Without them, nothing changes.
void askForLargeMemoryPages(unsigned char* block, std::size_t size)
{
    constexpr std::size_t pageSize = 2UL * 1024 * 1024;
    void* start = block;
    if (std::align(pageSize, pageSize, start, size))
        madvise(start, size, MADV_HUGEPAGE);
}

} // namespace

bool Raster::init(std::int32_t columns, std::int32_t rows, int bytesPerPixel, std::uint64_t limit)
{
    clear();
    if (columns <= 0 || rows <= 0 || bytesPerPixel <= 0)
        return true;
    auto const area = static_cast<std::uint64_t>(columns) * static_cast<std::uint64_t>(rows);
    auto const depth = static_cast<std::size_t>(bytesPerPixel);
    if (area > limit / depth)
        return false;
    // Zeroed, so that no old contents of the memory get into a file.
    bytes.reset(static_cast<unsigned char*>(std::calloc(area, depth)));
    if (!bytes)
        return false;
    askForLargeMemoryPages(bytes.get(), area * depth);
    width = static_cast<std::size_t>(columns);
    height = static_cast<std::size_t>(rows);
    channels = depth;
    pixels = area;
    return true;
}

unsigned char* Raster::getPixel(std::int64_t x, std::int64_t y) const
{
    return bytes.get() + indexOf(x, y) * channels;
}

void Raster::fill(std::int64_t x, std::int64_t bottom, std::int64_t top, std::int64_t count, unsigned char const* color)
{
    if (isEmpty() || count <= 0 || bottom > top)
        return;
    auto const run = static_cast<std::size_t>(count);
    auto const first = indexOf(x, top);
    auto const last = indexOf(x, bottom);
    if (run >= width) // each run reaches the start of the next one
    {
        fillRun(first, last - first + run, color);
        return;
    }
    fillRun(first, run, color);
    for (auto index = first + width; index <= last; index += width)
        std::memcpy(bytes.get() + index * channels, bytes.get() + first * channels,
                    std::min(run, pixels - index) * channels);
}

void Raster::fillSpan(std::int64_t first, std::int64_t last, std::int64_t y, unsigned char const* color)
{
    if (isEmpty() || first > last)
        return;
    auto const start = indexOf(first, y);
    fillRun(start, indexOf(last, y) - start + 1, color);
}

// The index of a pixel in the order of storage.
std::size_t Raster::indexOf(std::int64_t x, std::int64_t y) const
{
    return (height - 1 - clampToSide(y, height)) * width + clampToSide(x, width);
}

// Fills pixels in the order of storage, up to the end of the raster. Each copy doubles the filled part, up to a block
// that fits in the first-level cache.
void Raster::fillRun(std::size_t index, std::size_t count, unsigned char const* color)
{
    auto const largestCopy = 4096 * channels;
    auto* const run = bytes.get() + index * channels;
    auto const size = std::min(count, pixels - index) * channels;
    std::memcpy(run, color, channels);
    for (auto filled = channels; filled < size;) {
        auto const copied = std::min({filled, size - filled, largestCopy});
        std::memcpy(run + filled, run, copied);
        filled += copied;
    }
}
