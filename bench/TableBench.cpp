// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "FillDistance.h"
#include "PatchSet.h"
#include "PrinterProfile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

// How far the colours of a printer are from the patches of a table, and how long the table takes. Each figure is the
// worst of several seeds of the table, each measured at other random colours.
//
// Arguments: "large" adds the largest tables.
//
// Other printers: profiles of Debian's packages, and profiles that our generator makes of the characterisation data of
// other presses in Debian's icc-profiles-free. Those that are not installed are left out. RGB working spaces are no
// printers: their colours lie farther apart than those of any print, so they are only shown.

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

Printer printerOfFile(ColorSpace space, std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string const bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    auto const profile = std::make_shared<PrinterProfile const>(bytes, space);
    promise(profile->getFault().empty(), path + ": " + profile->getFault());
    return printerOf(space, profile);
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
    std::printf("| %-30s | %-5s | %7zu | %-23s | %-23s | %6.2f s |\n", profile.c_str(), colorspace_names[space],
                patches, textOf(measured.fill.deltaE).c_str(), textOf(measured.fill.device).c_str(), measured.seconds);
    std::fflush(stdout);
}

enum class Checked { everything, deltaE, nothing };

void benchPromises(NamedPrinter const& printer, Checked checked, std::uint64_t seedCount)
{
    double const factor = checked == Checked::everything ? 1 : mostOfOtherPrinter;
    for (Promise const& row : promises) {
        if (row.space != printer.printer.getColorSpace())
            continue;
        Measured const measured = worstOf(printer.printer, row.patches, row.inkLimit, seedCount);
        print(printer.name, row.space, row.patches, measured);
        std::string const name = printer.name + ", " + std::to_string(row.patches) + ": ";
        promise(checked == Checked::nothing || isWithin(measured.fill.deltaE, row.deltaE, factor),
                name + "CIELAB at most " + textOf(row.deltaE));
        promise(checked != Checked::everything || isWithin(measured.fill.device, row.device, 1),
                name + "device at most " + textOf(row.device));
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

constexpr char profilesFolder[] = "/usr/share/color/icc/";

struct OtherProfile
{
    ColorSpace space;
    char const* file;
    Checked checked;
};

constexpr OtherProfile otherProfiles[] = {
    {CMYK, "ghostscript/default_cmyk.icc", Checked::deltaE},
    {RGB, "ghostscript/default_rgb.icc", Checked::deltaE},
    {RGB, "compatibleWithAdobeRGB1998.icc", Checked::nothing},
    {RGB, "colord/ECI-RGBv2.icc", Checked::nothing},
};

// Web offset on coated paper, offset on uncoated paper, newspaper, and offset on coated paper.
constexpr char const* presses[] = {"FOGRA28L", "FOGRA29L", "TR002", "TR006"};

void benchOtherProfiles()
{
    for (OtherProfile const& other : otherProfiles) {
        std::string const path = std::string(profilesFolder) + other.file;
        if (std::filesystem::exists(path))
            benchPromises({other.file, printerOfFile(other.space, path)}, other.checked, 1);
    }
}

void benchPresses()
{
#ifdef PATCHLOOM_PROFILE_MAKER
    TemporaryFolder const folder;
    for (char const* const press : presses) {
        std::string const data = std::string(profilesFolder) + press + ".ti3";
        if (!std::filesystem::exists(data))
            continue;
        String const path = folder.pathOf(std::string(press) + ".icc");
        std::string const profile(path.begin(), path.end());
        int const status =
            std::system(String::format(R"("%s" "%s" "%s")", PATCHLOOM_PROFILE_MAKER, data.c_str(), profile.c_str()));
        promise(status == 0, std::string(press) + ": a profile");
        benchPromises({press, printerOfFile(CMYK, profile)}, Checked::deltaE, 1);
    }
#endif
}

} // namespace

int main(int argc, char** argv)
{
    bool const isLarge = argc > 1 && std::string(argv[1]) == "large";
    NamedPrinter const cmyk{"our own", printerOfFile(CMYK, PATCHLOOM_RESOURCES "generic.icc")};
    NamedPrinter const rgb{"our own", printerOfFile(RGB, PATCHLOOM_RESOURCES "RGBgeneric.icc")};
    std::printf("\n| profile                        | space | patches | CIELAB, delta E         | device, %%           "
                "    |     "
                "took |\n|--------------------------------|-------|--------:|-------------------------|---------"
                "----------------|---------:|\n");
    benchPromises(rgb, Checked::everything, seeds);
    benchPromises(cmyk, Checked::everything, seeds);
    benchOtherProfiles();
    benchPresses();
    benchTimes(cmyk);
    if (isLarge)
        for (NamedPrinter const* const printer : {&rgb, &cmyk})
            print(printer->name, printer->printer.getColorSpace(), 20'000, worstOf(printer->printer, 20'000, 300, 1));
    return isKept ? 0 : 1;
}
