// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartSettings.h"

#include "layout/SheetAxis.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace
{

// Longer than any sheet, and short enough for single precision.
constexpr double longest = 100000;

// A length in mm, from 0 on.
std::optional<double> lengthOf(std::string_view text)
{
    double length = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    bool const isNumber = error == std::errc() && end == text.data() + text.size() && !text.empty();
    bool const isLength = isNumber && std::isfinite(length) && !std::signbit(length) && length <= longest;
    return isLength ? std::optional(length) : std::nullopt;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (std::size_t start = 0; start <= text.size();) {
        std::size_t const end = std::min(text.find(separator, start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// "WIDTHxHEIGHT", both above 0.
std::optional<RealSize> sizeOf(std::string_view text)
{
    auto const parts = split(text, 'x');
    if (parts.size() != 2)
        return std::nullopt;
    auto const width = lengthOf(parts[0]);
    auto const height = lengthOf(parts[1]);
    bool const isSize = width && height && *width > 0 && *height > 0;
    return isSize ? std::optional(RealSize{*width, *height}) : std::nullopt;
}

std::string inQuotes(std::string_view text)
{
    return std::string(1, '"').append(text).append(1, '"');
}

// Collects the settings, or the first reason why they cannot be used.
class Settings
{
public:
    Settings(ChartArguments const& chartArguments, Choices const& allChoices)
        : arguments(chartArguments), choices(allChoices)
    {
    }

    std::variant<ChartSettings, WrongUse> read()
    {
        readDevice();
        readSheet();
        readMargins();
        readPatch();
        readName();
        readFormats();
        readResolution();
        readCompression();
        settings.sheets.hasScaleMark = arguments.scaleMark;
        readGaps();
        readOrder();
        settings.parentFolder = arguments.folder.empty() ? "." : arguments.folder;
        settings.clipsToContent = arguments.clip;
        return fault ? std::variant<ChartSettings, WrongUse>(*fault) : settings;
    }

private:
    void fail(std::string text)
    {
        if (!fault)
            fault = WrongUse{std::move(text)};
    }

    void readDevice()
    {
        if (DeviceChoice const* const device = choices.device(arguments.device))
            settings.device = *device;
        else
            fail("--device: there is no device " + inQuotes(arguments.device) + "; see 'patchloom-cli list devices'");
    }

    void readSheet()
    {
        if (PaperChoice const* const paper = choices.paper(arguments.paper)) {
            settings.sheet = paper->sheet;
            settings.paperName = paper->name;
        } else if (auto const size = sizeOf(arguments.paper)) {
            settings.sheet.setSize(*size);
            settings.sheet.setContent({0, 0, size->width, size->height});
            settings.paperName = pagelayoutpreset_strings[custom];
        } else
            fail("--paper: " + inQuotes(arguments.paper) +
                 " is neither a paper (see 'patchloom-cli list papers') nor WIDTHxHEIGHT in mm");
    }

    // By the steps of the window, so that both make the same numbers.
    void readMargins()
    {
        if (arguments.margins.empty() || fault)
            return;
        auto const parts = split(arguments.margins, ',');
        std::vector<double> margins;
        for (std::string_view const part : parts)
            if (auto const margin = lengthOf(part))
                margins.push_back(*margin);
        if (parts.size() != 4 || margins.size() != 4) {
            fail("--margins: " + inQuotes(arguments.margins) +
                 " is no list of four lengths in mm: top,right,bottom,left, with decimal points");
            return;
        }
        RealSize const size = settings.sheet.getSize();
        if (margins[1] + margins[3] >= size.width || margins[0] + margins[2] >= size.height) {
            fail("--margins: " + arguments.margins + " leaves nothing of a sheet of " + millimetres(size.width) +
                 " x " + millimetres(size.height) + " mm");
            return;
        }
        // Without margins at first, so that no step leaves nothing of the sheet.
        SheetAxis across{size.width, 0, size.width};
        SheetAxis up{size.height, 0, size.height};
        up.setFarMargin(margins[0]);
        across.setFarMargin(margins[1]);
        up.setNearMargin(margins[2]);
        across.setNearMargin(margins[3]);
        settings.sheet.setContent({across.start, up.start, across.extent, up.extent});
    }

    void readPatch()
    {
        RealSize const smallest = settings.device.values.minPatchSize;
        if (auto const side = lengthOf(arguments.patch); side && *side > 0)
            settings.patch = {std::max(smallest.width, *side), std::max(smallest.height, *side)};
        else if (auto const size = sizeOf(arguments.patch)) {
            settings.patch = *size;
            if (!fault && (size->width < smallest.width || size->height < smallest.height))
                fail("--patch: " + arguments.patch + " mm is below the smallest patch of " + settings.device.name +
                     ", " + millimetres(smallest.width) + "x" + millimetres(smallest.height) + " mm");
        } else
            fail("--patch: " + inQuotes(arguments.patch) + " is no size in mm: write 8 or 7.5x9");
    }

    void readName()
    {
        bool const isGiven = !arguments.name.empty();
        if (!isGiven && arguments.table.table == "-") {
            fail("a table from standard input has no name: give the chart one with --name");
            return;
        }
        settings.name = isGiven ? arguments.name : std::filesystem::path(arguments.table.table).stem().string();
        std::string const where = isGiven ? "--name: " : "the table's name makes no chart's name: ";
        std::string const cure = isGiven ? "" : "; give another with --name";
        if (settings.name.empty() || settings.name == "." || settings.name == "..")
            fail(where + inQuotes(settings.name) + " is no name of a folder" + cure);
        else if (settings.name.find('/') != std::string::npos)
            // The window takes it, and writes sheets beside the folder or not at all.
            fail(where + inQuotes(settings.name) + " has a slash, which leads out of the chart's folder" + cure);
        else if (!arguments.lenient && std::any_of(settings.name.begin(), settings.name.end(), isForbidden))
            fail(where + inQuotes(settings.name) +
                 " has a backslash, a quote, <, & or a control character, which break the target "
                 "description" +
                 cure);
    }

    static bool isForbidden(char c)
    {
        auto const byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f || std::string_view("\\<&\"'").find(c) != std::string_view::npos;
    }

    void readFormats()
    {
        auto const names = split(arguments.formats, ',');
        for (std::string_view const name : names)
            if (std::none_of(std::begin(imageKinds), std::end(imageKinds),
                             [name](ImageKind const* kind) { return name == kind->name; }))
                fail("--format: " + inQuotes(name) + " is no format: write eps, tiff, pdf, or several with commas");
        for (ImageKind const* kind : imageKinds)
            if (std::find(names.begin(), names.end(), std::string_view(kind->name)) != names.end())
                settings.kinds.push_back(kind);
    }

    // An option without effect is a mistake in a script more often than a wish.
    void requireTIFF(char const* option)
    {
        if (std::find(settings.kinds.begin(), settings.kinds.end(), &tiffImages) == settings.kinds.end())
            fail(std::string(option) + ": is for TIFF sheets; add tiff to --format");
    }

    void readResolution()
    {
        if (arguments.resolution.empty())
            return;
        constexpr double least = 72;
        constexpr double most = 2400;
        auto const resolution = lengthOf(arguments.resolution);
        if (!resolution || *resolution < least || *resolution > most) {
            fail("--resolution: " + inQuotes(arguments.resolution) + " is no number of dots per inch from 72 to 2400");
            return;
        }
        requireTIFF("--resolution");
        settings.sheets.tiff.resolution = *resolution;
    }

    void readCompression()
    {
        if (arguments.compression.empty())
            return;
        constexpr std::pair<char const*, TIFFCompression> methods[] = {
            {"none", TIFFCompression::none}, {"lzw", TIFFCompression::lzw}, {"deflate", TIFFCompression::deflate}};
        auto const* const method = std::find_if(std::begin(methods), std::end(methods), [this](auto const& known) {
            return arguments.compression == known.first;
        });
        if (method == std::end(methods)) {
            fail("--compression: " + inQuotes(arguments.compression) + " is not none, lzw or deflate");
            return;
        }
        requireTIFF("--compression");
        settings.sheets.tiff.compression = method->second;
    }

    void readGaps()
    {
        constexpr std::pair<char const*, GapRule> rules[] = {
            {"auto", GapRule::automatic}, {"never", GapRule::never}, {"always", GapRule::always}};
        for (auto const& [name, rule] : rules)
            if (arguments.gaps == name) {
                settings.gaps = rule;
                return;
            }
        fail("--gaps: " + inQuotes(arguments.gaps) + " is not auto, never or always");
    }

    void readOrder()
    {
        if (arguments.order == "best")
            settings.order.kind = OrderMethod::best;
        else if (arguments.order != "standard")
            fail("--order: " + inQuotes(arguments.order) + " is not standard or best");
        constexpr int mostEffort = 1000;
        char const* const end = arguments.effort.data() + arguments.effort.size();
        auto const [rest, error] = std::from_chars(arguments.effort.data(), end, settings.order.effort);
        if (error != std::errc() || rest != end || settings.order.effort < 1 || settings.order.effort > mostEffort)
            fail("--effort: " + inQuotes(arguments.effort) + " is no whole number from 1 to 1000");
    }

    ChartArguments const& arguments;
    Choices const& choices;
    ChartSettings settings{};
    std::optional<WrongUse> fault;
};

} // namespace

std::variant<ChartSettings, WrongUse> chartSettings(ChartArguments const& arguments, Choices const& choices)
{
    return Settings(arguments, choices).read();
}

std::string millimetres(double length)
{
    // Differences of lengths can be off by the last digits: people see thousandths at most.
    char text[32];
    double const rounded = std::round(length * 1000) / 1000;
    return {text, std::to_chars(text, std::end(text), rounded).ptr};
}
