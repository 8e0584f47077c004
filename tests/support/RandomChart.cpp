// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RandomChart.h"

#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

// Standard distributions differ between libraries. Standard engines do not.
class Dice
{
public:
    explicit Dice(unsigned number) : engine(number) {}

    /// 0 to largest.
    int upTo(int largest) { return static_cast<int>(engine() % static_cast<unsigned>(largest + 1)); }
    bool oneIn(int times) { return upTo(times - 1) == 0; }
    /// mm
    double length(int least, int largest) { return least + upTo(2 * (largest - least)) / 2.0; }

private:
    std::mt19937 engine;
};

PageLayout randomPaper(Dice& dice)
{
    if (dice.oneIn(3))
        return paper(static_cast<PageLayoutPreset>(dice.upTo(creditCardLandscape)));
    RealSize const size = dice.oneIn(4) ? RealSize{dice.length(0, 40), dice.length(0, 40)}
                                        : RealSize{dice.length(20, 500), dice.length(20, 500)};
    int const widest = dice.oneIn(8) ? 300 : 20;
    double const left = dice.length(0, widest);
    double const bottom = dice.length(0, widest);
    return sheetOf(size, {left, bottom, size.width - left - dice.length(0, widest),
                          size.height - bottom - dice.length(0, widest)});
}

int halves(double millimetres)
{
    return static_cast<int>(std::lround(2 * millimetres));
}

// The part of a length within a reach.
int lengthWithin(int start, int length, int reachStart, int reach)
{
    return std::min(start + length, reachStart + reach) - std::max(start, reachStart);
}

// The columns or rows on the sheets along an axis. Lengths are in halves of mm from the reach's start, where the first
// sheet's usable part begins.
int countAlong(int sheets, int sheetStep, int usable, int reach, int step)
{
    int count = 0;
    for (int i = 0; i < sheets; ++i) {
        int const start = i * sheetStep;
        int const end = std::min(start + usable, reach);
        if (end - start >= step)
            count += end / step - (start + step - 1) / step;
    }
    return count;
}

} // namespace

RandomSettings::RandomSettings(unsigned number)
{
    Dice dice(number);
    instrument = ::instrument(static_cast<MeasurementLayoutPreset>(dice.upTo(longRuler)));
    if (dice.oneIn(8))
        instrument = scanningAlongX(instrument);
    paper = randomPaper(dice);
    patch = {dice.length(3, 20), dice.length(3, 20)};
    gap = static_cast<float>(dice.upTo(2)) / 2;
    seed = dice.upTo(1);
    entries = dice.oneIn(10) ? dice.upTo(900) : dice.upTo(60);
    colorSpace = dice.oneIn(2) ? CMYK : RGB;
    clipToContent = dice.oneIn(4);
}

void PrintTo(RandomSettings const& settings, std::ostream* stream)
{
    *stream << measurementlayout_strings[settings.instrument.getPreset()] << ", direction "
            << settings.instrument.getScanDirection() << ", paper " << testing::PrintToString(settings.paper.getSize())
            << ", content" << testing::PrintToString(settings.paper.getContent()) << ", patch"
            << testing::PrintToString(settings.patch) << ", gap " << settings.gap << ", seed " << settings.seed << ", "
            << settings.entries << ' ' << colorspace_names[settings.colorSpace] << " entries"
            << (settings.clipToContent ? ", clipped" : "");
}

Room roomOf(RandomSettings const& settings)
{
    ScanDirection const direction = settings.instrument.getScanDirection();
    bool const isTable = settings.instrument.mustFit();
    RealRect const reach = settings.instrument.getContent();
    RealRect const content = settings.paper.getContent();
    RealSize const paper = settings.paper.getSize();
    int const gap =
        halves(direction == alongY ? static_cast<double>(settings.gap) : settings.instrument.getGap().height);
    // The labels take 16 and 2 mm beside, 8 mm above and below; the scan 12.5 mm above and 6.5 mm below.
    int usableX = halves(isTable ? std::min(content.width, reach.width) : content.width) - halves(18);
    int usableY = halves(isTable ? std::min(content.height, reach.height) : content.height) - halves(8);
    if (usableX <= 0 || usableY <= 0)
        return {{0, 0}, {1, 1}};
    int const stepX = halves(settings.patch.width);
    int const stepY = halves(settings.patch.height) + gap;
    if (direction == none) {
        IntSize const sheets{std::max(1, halves(reach.width) / std::max(1, halves(paper.width))),
                             std::max(1, halves(reach.height) / std::max(1, halves(paper.height)))};
        return {{countAlong(sheets.width, halves(paper.width), usableX, halves(reach.width), stepX),
                 countAlong(sheets.height, halves(paper.height), usableY, halves(reach.height), stepY)},
                sheets};
    }
    if (direction == alongY)
        usableY = lengthWithin(halves(6.5), usableY - halves(12.5 + 6.5), halves(reach.y), halves(reach.height));
    else
        usableX = lengthWithin(0, usableX, halves(reach.x), halves(reach.width));
    IntSize const grid{std::max(0, usableX) / stepX, std::max(0, usableY) / stepY};
    return {grid.width > 0 && grid.height > 0 ? grid : IntSize{0, 0}, {1, 1}};
}

GrowingArray<ColorEntry> distinctEntries(ColorSpace colorSpace, int count)
{
    Dice dice(static_cast<unsigned>(count));
    GrowingArray<ColorEntry> entries;
    for (int i = 0; i < count; ++i) {
        std::string line = std::to_string(i % 100) + "." + std::to_string(i / 100);
        for (int channel = 1; channel < colorspace_nof_channels[colorSpace]; ++channel)
            line += ' ' + std::to_string(dice.upTo(colorSpace == CMYK ? 100 : 255));
        entries.add(entryOf(colorSpace, line));
    }
    return entries;
}

RandomChart::RandomChart(RandomSettings const& chosen)
    : settings(chosen), entries(distinctEntries(chosen.colorSpace, chosen.entries)),
      layout(chartOf(entries, chosen.instrument, chosen.paper, chosen.patch)),
      result(layout.computeLayout(chosen.gap, chosen.seed))
{
    layout.setClipToContent(chosen.clipToContent);
    layout.setName(String("Chart"));
}
