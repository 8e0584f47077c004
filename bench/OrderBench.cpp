// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "BestOrder.h"
#include "ColorEntry.h"
#include "Comparison.h"
#include "Folders.h"
#include "InputFile.h"
#include "OrderSearch.h"
#include "Samples.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

// How far the neighbours along the scan differ in the fast order and in the best one, and what no order exceeds. It has
// a table of its own: differences are no ratios of times.
//
// Arguments: "large" adds the tables of 20,000 patches.

namespace
{

Lab labOf(ColorEntry const& entry)
{
    float const* const lab = entry.getLab();
    return {{lab[0], lab[1], lab[2]}};
}

// The difference is at least this share of the bound in charts of 500 to 5,000 patches, and in all from 72 patches on.
constexpr double leastShare = 0.96;
constexpr double leastShareOfSmallCharts = 0.95;

// The best order takes at most so many times as long as the fast one, for the example.
constexpr double mostTimesAsLong = 5000;

bool isKept = true;

void promise(bool isSo, std::string const& name, char const* what)
{
    if (isSo)
        return;
    std::fprintf(stderr, "%s: broken: %s\n", name.c_str(), what);
    isKept = false;
}

double deltaEOf(float squared)
{
    return std::sqrt(static_cast<double>(squared));
}

// The table in whole columns, filled up with white.
OrderTask taskOf(InputFile& table, int height)
{
    auto const patches = static_cast<int>(table.getEntries()->getCount());
    OrderTask task{{(patches + height - 1) / height, height}, {}, {}, {}};
    ColorEntry::getWhite(task.paper.values);
    for (ColorEntry const& entry : *table.getEntries())
        task.colors.push_back(labOf(entry));
    ColorEntry filler;
    filler.initAsWhite(table.getColorSpace(), false);
    task.colors.resize(static_cast<std::size_t>(task.grid.width * height), labOf(filler));
    task.takesPart.assign(task.colors.size(), true);
    return task;
}

void benchOrder(std::string const& name, InputFile& table)
{
    for (int const height : {24, 25}) {
        OrderTask const task = taskOf(table, height);
        float fast = 0;
        double const fastTime = secondsOf([&] { fast = OrderSearch(task).run(); });
        BestOrder best;
        double const bestTime = secondsOf([&] { best = findBestOrder(task, {}); });
        if (best.smallest < fast || best.smallest > best.bound) {
            std::fprintf(stderr, "The best order of %s is not between the fast one and the bound.\n", name.c_str());
            std::exit(1);
        }
        std::printf("| %-24s | %-12s | %7d | %5.1f | %5.1f | %5.1f%s | %5.3f | %8.4f s | %7.2f s |\n", name.c_str(),
                    sizeText(table).c_str(), height, deltaEOf(fast), deltaEOf(best.smallest),
                    std::ceil(deltaEOf(best.bound) * 10) / 10, best.isBoundLoose ? ", loose" : "",
                    deltaEOf(best.smallest) / deltaEOf(best.bound), fastTime, bestTime);
        std::fflush(stdout);
        double const share = deltaEOf(best.smallest) / deltaEOf(best.bound);
        auto const patches = table.getEntries()->getCount();
        promise(best.isBoundLoose || patches < 72 || share >= leastShareOfSmallCharts, name,
                "at least 0.95 of the bound");
        promise(best.isBoundLoose || patches < 500 || share >= leastShare, name, "at least 0.96 of the bound");
        promise(patches != 1617 || bestTime <= mostTimesAsLong * fastTime, name, "at most 5000 times the fast order");
    }
}

void benchFile(std::string const& name, String const& path)
{
    InputFile table;
    table.init(path);
    benchOrder(name, table);
}

// All combinations of some levels in each channel.
String writeGrid(TemporaryFolder const& folder, ColorSpace colorSpace, int levels)
{
    int const channels = colorspace_nof_channels[colorSpace];
    int const full = colorSpace == CMYK ? 100 : 255;
    int count = 1;
    for (int channel = 0; channel < channels; ++channel)
        count *= levels;
    std::string text = colorSpace == CMYK ? "CMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K\n" : "RGB_R\tRGB_G\tRGB_B\n";
    for (int i = 0; i < count; ++i)
        for (int channel = 0, rest = i; channel < channels; ++channel, rest /= levels)
            text += std::to_string(rest % levels * full / (levels - 1)) + (channel + 1 == channels ? '\n' : '\t');
    return folder.write("grid" + std::to_string(count) + ".txt", text);
}

} // namespace

int main(int argc, char** argv)
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    TemporaryFolder const folder;
    std::printf("\n| table                    | size         | column  |  fast |  best | bound | ratio |  fast took |  "
                "best took |\n"
                "|--------------------------|--------------|--------:|------:|------:|------:|------:|-----------:|----"
                "-------:|\n");
    for (char const* const name : {"it8.7-4-cmyk.txt", "rgb-cube-897.txt", "rgb-near-neutrals-231.txt", "rgb-24.txt"})
        benchFile(name, String((std::string(PATCHLOOM_EXAMPLES) + name).c_str()));
    for (ColorSpace const colorSpace : {CMYK, RGB})
        for (int const count : {72, 120, 250, 500, 1'000, 2'000, 5'000})
            benchFile("random", writeRandomTable(folder, colorSpace, count));
    for (int const levels : {5, 6, 8})
        benchFile("grid", writeGrid(folder, CMYK, levels));
    for (int const levels : {8, 10, 13, 17})
        benchFile("grid", writeGrid(folder, RGB, levels));
    if (argc > 1 && std::strcmp(argv[1], "large") == 0)
        for (ColorSpace const colorSpace : {CMYK, RGB})
            benchFile("random", writeRandomTable(folder, colorSpace, 20'000));
    ColorEntry::endColorConversions();
    return isKept ? 0 : 1;
}
