// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEngine.h"
#include "Comparison.h"
#include "FillDistance.h"
#include "PatchSet.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// How far the colours of a printer are from the patches of a table, and how long the table takes. Each figure is the
// worst of several seeds of the table, each measured at other random colours.
//
// Arguments: "large" adds the largest tables.

namespace
{

struct Promise
{
    ColorSpace space;
    std::size_t patches;
    double inkLimit;
    FillDistance deltaE;
    FillDistance device;
};

constexpr Promise promises[] = {
    {RGB, 500, 400, {5.8, 9.6, 11.6}, {6.7, 12.5, 15.6}},   {RGB, 918, 400, {4.7, 7.8, 9.5}, {5.5, 10.2, 14.7}},
    {RGB, 2000, 400, {3.6, 6.0, 7.8}, {4.2, 8.0, 11.1}},    {CMYK, 500, 300, {4.1, 8.6, 12.4}, {12.4, 19.5, 24.6}},
    {CMYK, 1617, 300, {2.75, 5.7, 8.6}, {9.4, 15.0, 19.0}},
};

// The colours of another printer are at most so much farther from the patches, in CIELAB.
constexpr double mostOfOtherPrinter = 1.1;

// Seconds for a table of CMYK patches.
struct TimePromise
{
    std::size_t patches;
    double seconds;
};

constexpr TimePromise timePromises[] = {{1617, 5}, {5000, 30}};

constexpr std::uint64_t seeds = 5;

bool isKept = true;

void promise(bool isSo, std::string const& what)
{
    if (isSo)
        return;
    std::fprintf(stderr, "broken: %s\n", what.c_str());
    isKept = false;
}

// A printer through a profile.
struct NamedPrinter
{
    std::string name;
    Printer printer;
};

Printer printerOf(ColorSpace space, std::string const& path)
{
    auto const engine = std::make_shared<ColorEngine>(String(space == CMYK ? path.c_str() : ""),
                                                      String(space == RGB ? path.c_str() : ""));
    return {space, [engine, space](float const* percents, float* labs, std::size_t count) {
                std::vector<float> values(percents, percents + count * (space == CMYK ? 4 : 3));
                if (space == RGB)
                    for (float& value : values)
                        value /= 100;
                engine->toLab(space, values.data(), labs, count);
            }};
}

struct Measured
{
    FillDistances fill;
    double seconds = 0;
};

Measured measure(Printer const& printer, std::size_t patches, double inkLimit, std::uint64_t seed)
{
    PatchSetWish wish;
    wish.patches = patches;
    wish.inkLimit = inkLimit;
    wish.seed = seed;
    wish.step = printer.getColorSpace() == CMYK ? ValueStep::tenth : ValueStep::eightBit;
    PatchSet set;
    Measured measured;
    measured.seconds = secondsOf([&] { set = makePatchSet(printer, wish); });
    promise(set.fault.empty() && set.patches.size() == patches, "a set of " + std::to_string(patches) + " patches");
    measured.fill = fillDistancesOf(printer, inkLimit, set.colors(), 1000 + seed);
    return measured;
}

void worsen(FillDistance& worst, FillDistance const& other)
{
    worst.mean = std::max(worst.mean, other.mean);
    worst.nearlyLargest = std::max(worst.nearlyLargest, other.nearlyLargest);
    worst.largest = std::max(worst.largest, other.largest);
}

Measured worstOf(Printer const& printer, std::size_t patches, double inkLimit, std::uint64_t seedCount)
{
    Measured worst;
    for (std::uint64_t seed = 0; seed < seedCount; ++seed) {
        Measured const next = measure(printer, patches, inkLimit, seed);
        worsen(worst.fill.deltaE, next.fill.deltaE);
        worsen(worst.fill.device, next.fill.device);
        worst.seconds = std::max(worst.seconds, next.seconds);
    }
    return worst;
}

std::string textOf(FillDistance const& fill)
{
    char text[64];
    std::snprintf(text, sizeof text, "%5.2f / %5.2f / %5.2f", fill.mean, fill.nearlyLargest, fill.largest);
    return text;
}

bool isWithin(FillDistance const& fill, FillDistance const& most, double factor)
{
    return fill.mean <= factor * most.mean && fill.nearlyLargest <= factor * most.nearlyLargest &&
           fill.largest <= factor * most.largest;
}

void print(std::string const& profile, ColorSpace space, std::size_t patches, Measured const& measured)
{
    std::printf("| %-24s | %-4s | %6zu | %s | %s | %6.2f s |\n", profile.c_str(), colorspace_names[space], patches,
                textOf(measured.fill.deltaE).c_str(), textOf(measured.fill.device).c_str(), measured.seconds);
    std::fflush(stdout);
}

void benchPromises(NamedPrinter const& printer, double factor, std::uint64_t seedCount)
{
    for (Promise const& row : promises) {
        if (row.space != printer.printer.getColorSpace())
            continue;
        Measured const measured = worstOf(printer.printer, row.patches, row.inkLimit, seedCount);
        print(printer.name, row.space, row.patches, measured);
        std::string const name = printer.name + ", " + std::to_string(row.patches) + ": ";
        promise(isWithin(measured.fill.deltaE, row.deltaE, factor), name + "CIELAB at most " + textOf(row.deltaE));
        if (factor <= 1)
            promise(isWithin(measured.fill.device, row.device, 1), name + "device at most " + textOf(row.device));
    }
}

void benchTimes(NamedPrinter const& printer)
{
    for (auto const& [patches, seconds] : timePromises) {
        Measured const measured = worstOf(printer.printer, patches, 300, 1);
        print(printer.name, CMYK, patches, measured);
        promise(measured.seconds <= seconds,
                std::to_string(patches) + " patches within " + std::to_string(seconds) + " s");
    }
}

// Profiles of Debian's packages. Those that are not installed are left out.
constexpr std::pair<ColorSpace, char const*> otherProfiles[] = {
    {CMYK, "ghostscript/default_cmyk.icc"}, {CMYK, "ghostscript/ps_cmyk.icc"}, {RGB, "compatibleWithAdobeRGB1998.icc"},
    {RGB, "colord/ECI-RGBv2.icc"},          {RGB, "colord/ProPhotoRGB.icc"},
};

} // namespace

int main(int argc, char** argv)
{
    bool const isLarge = argc > 1 && std::string(argv[1]) == "large";
    NamedPrinter const cmyk{"our own", printerOf(CMYK, PATCHLOOM_RESOURCES "generic.icc")};
    NamedPrinter const rgb{"our own", printerOf(RGB, PATCHLOOM_RESOURCES "RGBgeneric.icc")};
    std::printf("\n| profile                  | space | patches | CIELAB: mean / 99 %% / largest | device | took |\n"
                "|--------------------------|------|-------:|---|---|---:|\n");
    benchPromises(rgb, 1, seeds);
    benchPromises(cmyk, 1, seeds);
    for (auto const& [space, file] : otherProfiles) {
        std::string const path = std::string("/usr/share/color/icc/") + file;
        if (std::filesystem::exists(path))
            benchPromises({file, printerOf(space, path)}, mostOfOtherPrinter, 1);
    }
    benchTimes(cmyk);
    if (isLarge)
        for (NamedPrinter const* const printer : {&rgb, &cmyk})
            print(printer->name, printer->printer.getColorSpace(), 20'000, worstOf(printer->printer, 20'000, 300, 1));
    return isKept ? 0 : 1;
}
