// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Folders.h"
#include "lib/OvTIFFFile.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <tiffio.h>
#include <vector>

/// At this resolution a millimetre has ten pixels.
inline constexpr double tenPerMillimetre = 254;

/// A rectangle that covers `columns` x `rows` pixels. Its edges lie in the middle of pixels, so that rounding does not
/// matter.
inline RealRect pixelRect(double x, double y, double columns, double rows)
{
    return {(x + 0.5) / 10, (y + 0.5) / 10, columns / 10, rows / 10};
}

inline RealPos pixelPos(double x, double y)
{
    return {(x + 0.5) / 10, (y + 0.5) / 10};
}

inline RealSize pixelSize(double columns, double rows)
{
    return {(columns + 0.5) / 10, (rows + 0.5) / 10};
}

/// All bytes of a file.
inline std::string contentsOf(std::filesystem::path const& path)
{
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

/// What libtiff reads from a file.
class ReadBack
{
public:
    // "c" keeps libtiff from showing a strip as many small ones.
    explicit ReadBack(std::filesystem::path const& path) : handle(TIFFOpen(path.c_str(), "rc"))
    {
        if (!handle)
            return;
        TIFFGetField(handle, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(handle, TIFFTAG_IMAGELENGTH, &height);
        strips = TIFFNumberOfStrips(handle);
        raw.resize(static_cast<std::size_t>(TIFFStripSize(handle)));
        rawSize = TIFFReadRawStrip(handle, 0, raw.data(), static_cast<tmsize_t>(raw.size()));
    }
    ~ReadBack()
    {
        if (handle)
            TIFFClose(handle);
    }
    ReadBack(ReadBack const&) = delete;
    ReadBack& operator=(ReadBack const&) = delete;

    bool isImage() const { return handle; }

    /// A tag's value of 16 bits; -1 where the file does not have it.
    int shortTag(std::uint32_t tag) const
    {
        std::uint16_t value = 0;
        return TIFFGetField(handle, tag, &value) ? value : -1;
    }

    float floatTag(std::uint32_t tag) const
    {
        float value = -1;
        TIFFGetField(handle, tag, &value);
        return value;
    }

    /// The picture's pixels as other programs show them, from the top.
    std::vector<std::uint32_t> rgba() const
    {
        std::vector<std::uint32_t> pixels(std::size_t{width} * height);
        EXPECT_TRUE(TIFFReadRGBAImageOriented(handle, width, height, pixels.data(), ORIENTATION_TOPLEFT, 1));
        return pixels;
    }

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t strips = 0;
    std::vector<unsigned char> raw;
    long rawSize = -1;

private:
    TIFF* const handle;
};

/// A test of TIFF files, with a folder for its page and its glyphs: there are none unless the test puts them there.
class TIFFFileTest : public testing::Test
{
protected:
    TIFFFileTest() { respath = folder.pathWithSlash(); }
    ~TIFFFileTest() override { respath = resources; }

    /// Draws a page of whole pixels.
    template <typename Drawing>
    void drawPage(ColorSpace colorSpace, int columns, int rows, Drawing const& draw)
    {
        TIFFFile file(name, pixelSize(columns, rows));
        file.setColorSpace(colorSpace);
        file.setResolution(tenPerMillimetre);
        file.startPage("page");
        draw(file);
        file.endPage();
    }

    TemporaryFolder folder;
    String name = folder.pathOf("page.tif");
    std::filesystem::path path = folder.path() / "page.tif";

private:
    String resources = respath;
};
