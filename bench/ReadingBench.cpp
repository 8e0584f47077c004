// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Folders.h"
#include "InputFile.h"
#include "Samples.h"
#include "support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <lcms2.h>

// Reading a table against what the colour engine alone takes for it, and the memory that a large chart needs.

namespace
{

constexpr int count = 100'000;

/// The colour conversions of a whole table, each in one call to the colour engine.
class BatchConversion
{
public:
    explicit BatchConversion(ColorSpace colorSpace)
        : deviceProfile(cmsOpenProfileFromFile(respath + (colorSpace == CMYK ? "generic.icc" : "RGBgeneric.icc"), "r")),
          labProfile(cmsCreateLab4Profile(nullptr)),
          displayProfile(cmsOpenProfileFromFile(respath + "RGBgeneric.icc", "r")),
          toLab(transform(deviceProfile, colorSpace == CMYK ? TYPE_CMYK_FLT : TYPE_RGB_FLT, labProfile, TYPE_Lab_FLT)),
          toDisplay(transform(labProfile, TYPE_Lab_FLT, displayProfile, TYPE_RGB_FLT))
    {
    }

    ~BatchConversion()
    {
        cmsDeleteTransform(toDisplay);
        cmsDeleteTransform(toLab);
        cmsCloseProfile(displayProfile);
        cmsCloseProfile(labProfile);
        cmsCloseProfile(deviceProfile);
    }

    BatchConversion(BatchConversion const&) = delete;
    BatchConversion& operator=(BatchConversion const&) = delete;

    /// Takes the device values of a table: percent, or shares of 255.
    void take(InputFile& table)
    {
        int const channels = colorspace_nof_channels[table.getColorSpace()];
        for (ColorEntry const& entry : *table.getEntries())
            for (int channel = 0; channel < channels; ++channel) {
                auto const value = static_cast<float>(entry.getRealValue(channel));
                device.push_back(table.getColorSpace() == RGB ? value / 255.0f : value);
            }
        lab.resize(3 * table.getEntries()->getCount());
        display.resize(lab.size());
    }

    void run()
    {
        auto const colors = static_cast<cmsUInt32Number>(lab.size() / 3);
        cmsDoTransform(toLab, device.data(), lab.data(), colors);
        cmsDoTransform(toDisplay, lab.data(), display.data(), colors);
    }

    /// Whether a table's entries have the very colours that came out.
    bool agreesWith(InputFile& table) const
    {
        float const* nextLab = lab.data();
        float const* nextDisplay = display.data();
        for (ColorEntry const& entry : *table.getEntries()) {
            if (std::memcmp(entry.getLab(), nextLab, 3 * sizeof(float)) != 0 ||
                std::memcmp(entry.getDisplayColor(), nextDisplay, 3 * sizeof(float)) != 0)
                return false;
            nextLab += 3;
            nextDisplay += 3;
        }
        return true;
    }

private:
    static cmsHTRANSFORM transform(cmsHPROFILE from, cmsUInt32Number fromFormat, cmsHPROFILE to,
                                   cmsUInt32Number toFormat)
    {
        return cmsCreateTransform(from, fromFormat, to, toFormat, INTENT_ABSOLUTE_COLORIMETRIC, 0);
    }

    cmsHPROFILE deviceProfile;
    cmsHPROFILE labProfile;
    cmsHPROFILE displayProfile;
    cmsHTRANSFORM toLab;
    cmsHTRANSFORM toDisplay;
    std::vector<float> device;
    std::vector<float> lab;
    std::vector<float> display;
};

[[noreturn]] void fail(char const* message)
{
    std::fprintf(stderr, "%s\n", message);
    std::exit(1);
}

void benchReading(String const& path, ColorSpace colorSpace)
{
    InputFile table;
    table.init(path);
    BatchConversion conversion(colorSpace);
    conversion.take(table);
    Times const times = compare({[&] { conversion.run(); }}, {[&] { table.init(path); }});
    if (!conversion.agreesWith(table))
        fail("The colours that were read are not those of the colour engine.");
    printRow("reading against its colour conversions alone", sizeText(table), times, {Promise::timesAsLong, 2.5});
}

// The most memory that a process ever holds which reads a table and arranges it; bytes.
double peakMemory(String const& path)
{
    pid_t const child = fork();
    if (child < 0)
        fail("There can be no other process.");
    if (child == 0) {
        ColorEntry::prepareColorConversions();
        InputFile table;
        table.init(path);
        rulerChart(table);
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || status != 0)
        fail("A large chart could not be made.");
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

} // namespace

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    TemporaryFolder const folder;
    String const paths[] = {writeRandomTable(folder, CMYK, count), writeRandomTable(folder, RGB, count)};
    // Before this process grows: its children start with what it has.
    double const bytes[] = {peakMemory(paths[0]) / count, peakMemory(paths[1]) / count};

    ColorEntry::prepareColorConversions();
    benchReading(paths[0], CMYK);
    benchReading(paths[1], RGB);
    ColorEntry::endColorConversions();
    printRow("peak memory, bytes a patch", "100,000 CMYK", bytes[0], "B", 1024);
    printRow("peak memory, bytes a patch", "100,000 RGB", bytes[1], "B", 1024);
    return exitStatus();
}
