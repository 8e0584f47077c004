// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetMeasures.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <map>
#include <vector>

namespace
{

constexpr double millimetresPerInch = 25.4;
constexpr double millimetresPerPoint = millimetresPerInch / 72;

// The numbers at the start of a text, with any words between them, at most so many.
std::vector<double> numbersIn(std::string_view text, std::size_t most)
{
    std::vector<double> numbers;
    while (!text.empty() && numbers.size() < most) {
        std::size_t const start = text.find_first_not_of(" \r\n");
        if (start == std::string_view::npos)
            break;
        text.remove_prefix(start);
        std::string_view const word = text.substr(0, text.find_first_of(" \r\n"));
        double number = 0;
        auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error == std::errc() && end == word.data() + word.size() && std::isfinite(number))
            numbers.push_back(number);
        text.remove_prefix(word.size());
    }
    return numbers;
}

// Takes the next path off the text: a rectangle.
std::optional<RealRect> takeRectangle(std::string_view& text)
{
    std::size_t const start = text.find("newpath ");
    if (start == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(start);
    std::size_t const end = text.find("fill");
    if (end == std::string_view::npos)
        return std::nullopt;
    auto const n = numbersIn(text.substr(0, end), 10);
    text.remove_prefix(end);
    if (n.size() != 10)
        return std::nullopt;
    return RealRect{n[0], n[1], n[4] - n[0], n[5] - n[1]};
}

// Numbers of a TIFF file. A number that is not there is 0.
class TiffBytes
{
public:
    explicit TiffBytes(std::filesystem::path const& path) : stream(path, std::ios::binary) {}

    bool hasHeader()
    {
        constexpr std::uint64_t littleEndian = 0x4949;
        constexpr std::uint64_t bigEndian = 0x4d4d;
        constexpr std::uint64_t version = 42;
        std::uint64_t const order = number(0, 2);
        isBigEndian = order == bigEndian;
        return (order == littleEndian || isBigEndian) && number(2, 2) == version;
    }

    std::uint64_t number(std::uint64_t place, std::size_t length)
    {
        char bytes[4] = {};
        stream.seekg(static_cast<std::streamoff>(place));
        stream.read(bytes, static_cast<std::streamsize>(length));
        std::uint64_t value = 0;
        for (std::size_t i = 0; stream && i < length; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes[isBigEndian ? i : length - 1 - i]);
        return value;
    }

    /// Whether all numbers were there.
    bool isWhole() const { return static_cast<bool>(stream); }

private:
    std::ifstream stream;
    bool isBigEndian = false;
};

} // namespace

// A TIFF file begins with its byte order, 42 and the place of its directory. The directory has a count and entries of
// 12 bytes: tag, type, count, and the value or its place.
std::optional<RealSize> tiffSheetSize(std::filesystem::path const& path)
{
    enum Tag : unsigned { imageWidth = 256, imageLength = 257, xResolution = 282, yResolution = 283 };
    TiffBytes file(path);
    if (!file.hasHeader())
        return std::nullopt;
    std::map<unsigned, double> values;
    std::uint64_t const directory = file.number(4, 4);
    std::uint64_t const entries = file.number(directory, 2);
    for (std::uint64_t i = 0; i < entries; ++i) {
        std::uint64_t const entry = directory + 2 + 12 * i;
        constexpr unsigned shortType = 3;
        constexpr unsigned rationalType = 5;
        std::uint64_t const type = file.number(entry + 2, 2);
        std::uint64_t const place = file.number(entry + 8, 4);
        double& value = values[static_cast<unsigned>(file.number(entry, 2))];
        if (type == rationalType)
            value = static_cast<double>(file.number(place, 4)) / static_cast<double>(file.number(place + 4, 4));
        else
            value = static_cast<double>(type == shortType ? file.number(entry + 8, 2) : place);
    }
    RealSize const size{values[imageWidth] / values[xResolution] * millimetresPerInch,
                        values[imageLength] / values[yResolution] * millimetresPerInch};
    bool const isSize = file.isWhole() && std::isfinite(size.width) && std::isfinite(size.height);
    return isSize ? std::optional(size) : std::nullopt;
}

std::vector<RealSize> pdfSheetSizes(std::string_view pdf)
{
    constexpr std::string_view box = "/MediaBox [ ";
    std::vector<RealSize> sizes;
    if (!pdf.starts_with("%PDF-"))
        return sizes;
    pdf = pdf.substr(0, pdf.find("\nstream\n"));
    for (std::size_t start = pdf.find(box); start != std::string_view::npos; start = pdf.find(box)) {
        pdf.remove_prefix(start + box.size());
        auto const corners = numbersIn(pdf.substr(0, pdf.find(']')), 4);
        if (corners.size() == 4)
            sizes.push_back({corners[2] * millimetresPerPoint, corners[3] * millimetresPerPoint});
    }
    return sizes;
}

std::optional<SheetMeasures> sheetMeasures(std::string_view eps)
{
    constexpr std::string_view box = "%%BoundingBox: ";
    std::size_t const start = eps.find(box);
    if (!eps.starts_with("%!PS-Adobe") || start == std::string_view::npos)
        return std::nullopt;
    auto const corners = numbersIn(eps.substr(start + box.size()), 4);
    auto const bar = takeRectangle(eps);
    // The second cross stands at the upper left corner, its upright bar after its level one.
    takeRectangle(eps);
    takeRectangle(eps);
    auto const cross = takeRectangle(eps);
    if (corners.size() != 4 || !bar || !cross)
        return std::nullopt;
    constexpr double crossOffset = 0.25; // from the block's corner
    double const bottom = bar->y + bar->height;
    double const top = cross->y + cross->height / 2 - crossOffset;
    return SheetMeasures{{corners[2] * millimetresPerPoint, corners[3] * millimetresPerPoint},
                         {bar->x, bottom, bar->width, top - bottom}};
}
