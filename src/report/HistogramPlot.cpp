// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HistogramPlot.h"

#include "NumberText.h"

#include <algorithm>
#include <cmath>

namespace
{

// The drawing's measures, in units of its own.
constexpr double width = 720;
constexpr double height = 280;
constexpr double left = 48;
constexpr double right = width - 12;
constexpr double top = 40;
constexpr double bottom = height - 44;
constexpr double tickDrop = 16;
constexpr double unitDrop = 36;
constexpr int mostLevels = 5;

std::string place(double length)
{
    return shortNumber(length, 1);
}

// The step between the levels that are named at the left: 1, 2, 5, 10 and so on.
int levelStep(int largest)
{
    int step = 1;
    for (int decade = 1; largest / step > mostLevels; decade *= 10)
        for (int const factor : {1, 2, 5})
            if (largest / step > mostLevels)
                step = factor * decade;
    return step;
}

class HistogramPlot
{
public:
    HistogramPlot(TemplateValues plot, Histogram const& counted)
        : values(plot), histogram(counted),
          largest(std::max(1, *std::max_element(counted.counts.begin(), counted.counts.end()))),
          barWidth((right - left) / static_cast<double>(counted.counts.size()))
    {
    }

    void addLevels()
    {
        constexpr double baselineShift = 4;
        constexpr double space = 6;
        int const step = levelStep(largest);
        for (int level = step; level <= largest; level += step) {
            TemplateValues one = values.add("LEVEL");
            one.set("LEFT", place(left));
            one.set("RIGHT", place(right));
            one.set("X", place(left - space));
            one.set("Y", place(yOf(level)));
            one.set("BASELINE", place(yOf(level) + baselineShift));
            one.set("COUNT", groupedNumber(level));
        }
    }

    void addBars(double weakBelow)
    {
        constexpr double space = 1;
        for (std::size_t i = 0; i < histogram.counts.size(); ++i) {
            int const count = histogram.counts[i];
            TemplateValues one = values.add("BAR");
            one.set("X", place(xOf(histogram.start(i)) + space));
            one.set("Y", place(yOf(count)));
            one.set("W", place(std::max(barWidth - 2 * space, space)));
            one.set("H", place(bottom - yOf(count)));
            one.set("FROM", shortNumber(histogram.start(i), 1));
            one.set("TO", shortNumber(histogram.start(i + 1), 1));
            one.set("COUNT", groupedNumber(count));
            if (histogram.start(i + 1) <= weakBelow)
                one.add("WEAK");
        }
    }

    void addTicks()
    {
        std::size_t const every = (histogram.counts.size() + 11) / 12;
        for (std::size_t i = 0; i <= histogram.counts.size(); i += every) {
            TemplateValues one = values.add("TICK");
            one.set("X", place(xOf(histogram.start(i))));
            one.set("Y", place(bottom + tickDrop));
            one.set("TEXT", shortNumber(histogram.start(i), 1));
        }
    }

    // Texts stand in turn in two rows, so that close lines do not cover each other's.
    void addLines(std::vector<HistogramLine> const& lines)
    {
        constexpr double firstBaseline = 14;
        constexpr double lineHeight = 15;
        constexpr double space = 4;
        int row = 0;
        for (HistogramLine const& line : lines) {
            double const x = xOf(line.value);
            if (x < left || x > right)
                continue;
            bool const isAtRight = x > (left + right) / 2;
            double const baseline = firstBaseline + lineHeight * (row++ % 2);
            TemplateValues one = values.add("LINE");
            one.set("X", place(x));
            one.set("TOP", place(baseline - lineHeight / 2));
            one.set("BOTTOM", place(bottom));
            one.set("TEXT_X", place(isAtRight ? x - space : x + space));
            one.set("TEXT_Y", place(baseline));
            one.set("ANCHOR", isAtRight ? "end" : "start");
            one.set("TEXT", line.text);
        }
    }

private:
    double xOf(double value) const { return left + value / histogram.step * barWidth; }
    double yOf(int count) const { return bottom - (bottom - top) * count / largest; }

    TemplateValues values;
    Histogram const& histogram;
    int largest;
    double barWidth;
};

} // namespace

void fillHistogram(TemplateValues values, Histogram const& histogram, HistogramTexts const& texts,
                   std::vector<HistogramLine> const& lines, double weakBelow)
{
    values.set("ID", texts.id);
    values.set("TITLE", texts.title);
    values.set("CAPTION", texts.caption);
    values.set("DESCRIPTION", texts.description);
    values.set("UNIT", texts.unit);
    values.set("WIDTH", place(width));
    values.set("HEIGHT", place(height));
    values.set("LEFT", place(left));
    values.set("RIGHT", place(right));
    values.set("BOTTOM", place(bottom));
    values.set("UNIT_BASELINE", place(bottom + unitDrop));
    HistogramPlot plot(values, histogram);
    plot.addLevels();
    plot.addBars(weakBelow);
    plot.addTicks();
    plot.addLines(lines);
}
