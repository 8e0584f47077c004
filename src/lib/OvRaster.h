// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/// The pixels of a page in memory: 8 bits for each channel, channels interleaved, rows stored from the top of the page
/// down. Positions count columns from the left and rows from the bottom. A position outside the raster means the
/// nearest pixel inside. Nothing is ever written outside the raster.
class Raster
{
public:
    /// Replaces the pixels by black ones (channels of 0). A side of 0 or less, or no channels, gives a raster without
    /// pixels.
    ///
    /// \return false where the raster would take more than `limit` bytes, or where memory runs out; it then has no
    /// pixels
    bool init(std::int32_t columns, std::int32_t rows, int bytesPerPixel, std::uint64_t limit);

    /// Frees the pixels.
    void clear() { *this = Raster(); }

    bool isEmpty() const { return !bytes; }
    /// The first byte of the top row; null without pixels. The raster owns the memory.
    unsigned char* getBytes() const { return bytes.get(); }
    /// How many bytes there are.
    std::size_t getSize() const { return pixels * channels; }

    /// The first byte of the pixel at column x and row y. The raster must have pixels.
    unsigned char* getPixel(std::int64_t x, std::int64_t y) const;

    /// Writes `color`, a byte for each channel, into `count` consecutive pixels from column `x` on, in each row from
    /// `bottom` to `top`, both included. A run longer than its row continues in the next stored row, which is the row
    /// below it on the page, up to the end of the raster.
    void fill(std::int64_t x, std::int64_t bottom, std::int64_t top, std::int64_t count, unsigned char const* color);

    /// Writes `color` into the pixels of row `y` from column `first` to column `last`, both included.
    void fillSpan(std::int64_t first, std::int64_t last, std::int64_t y, unsigned char const* color);

private:
    struct Free
    {
        void operator()(void* block) const { std::free(block); }
    };

    std::size_t indexOf(std::int64_t x, std::int64_t y) const;
    void fillRun(std::size_t index, std::size_t count, unsigned char const* color);

    std::unique_ptr<unsigned char[], Free> bytes;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 0;
    std::size_t pixels = 0;
};
