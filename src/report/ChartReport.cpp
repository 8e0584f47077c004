// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartReport.h"

#include "ChartFigures.h"
#include "ColorPlots.h"
#include "HistogramPlot.h"
#include "NumberText.h"
#include "ReportTexts.h"
#include "ShownSheet.h"
#include "making/ChartMaking.h"
#include "output/SheetDrawing.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace
{

constexpr std::size_t weakPairCount = 10;
constexpr std::size_t mostRepeatGroups = 200;
constexpr std::size_t mostRepeatPlaces = 100; // of a group

char const* const channelNames[][4] = {{"", "", "", ""}, {"C", "M", "Y", "K"}, {"R", "G", "B", ""}};

std::string textOf(String const& string)
{
    return {string.begin(), string.end()};
}

std::string labText(float value)
{
    std::string const text = fixedNumber(static_cast<double>(value), 1);
    return text == "-0.0" ? "0.0" : text;
}

bool isWeak(float deltaE)
{
    return deltaE < deltaEWithoutGaps;
}

class ChartReport
{
public:
    explicit ChartReport(ReportSubject const& reportSubject)
        : subject(reportSubject), chart(reportSubject.chart), sheets(numberedSheets(chart)), pairs(scanPairs(chart)),
          cells(countCells(chart)), page(textOf(chart.getName()), "Chart report", "chart.html")
    {
    }

    PageText text()
    {
        addChapters();
        fillTiles();
        for (NumberedSheet const& sheet : sheets)
            addSheet(sheet);
        addWeakPairs();
        fillNumbers();
        fillDifferences();
        fillPlane(page.values().include("PLANE", "plane.html"), chart);
        fillLightness(page.values().include("LIGHTNESS", "lightness.html"), chart);
        fillInks();
        fillRepeats();
        fillSteps();
        return page.text();
    }

private:
    bool hasPairs() const { return !pairs.empty(); }
    float smallest() const { return pairs.front().deltaE; }
    std::string smallestText() const
    {
        return subject.bound > 0 ? flooredDeltaText(smallest()) : deltaText(smallest());
    }

    void addChapters()
    {
        std::string const space = colorspace_names[chart.getColorSpace()];
        page.addSummary(countOf(cells.patches, "patch", "patches") + " in " + space + " on " +
                        countOf(static_cast<long long>(sheets.size()), "sheet") + " of " + subject.paper + ", for " +
                        deviceText(subject) + ".");
        page.addChapter("sheets", "Sheets");
        if (hasPairs())
            page.addChapter("weakest", "Weakest pairs");
        page.addChapter("numbers", "The numbers explained");
        if (hasPairs())
            page.addChapter("differences", "Differences");
        page.addChapter("colours", "Colours");
        if (chart.getColorSpace() == CMYK)
            page.addChapter("inks", "Sum of inks");
        page.addChapter("repeats", "Repeats");
        page.addChapter("printing", "Print and measure");
    }

    void fillTiles()
    {
        TemplateValues& values = page.values();
        values.set("PATCHES", groupedNumber(cells.patches));
        values.set("SPACE", colorspace_names[chart.getColorSpace()]);
        values.set("SHEETS", groupedNumber(static_cast<long long>(sheets.size())));
        values.set("PAPER", subject.paper + ", " + sizeText(chart.getPageLayout().getSize()));
        values.set("PATCH_WIDTH", shortNumber(chart.getPatchSize().width, 3));
        values.set("PATCH_HEIGHT", shortNumber(chart.getPatchSize().height, 3));
        values.set("GAP_TEXT", gapText(chart));
        values.set("DEVICE", deviceText(subject));
        values.set("SCAN_TEXT", scanText(chart));
        values.set("LIMIT", shortNumber(static_cast<double>(deltaEWithoutGaps), 0));
        for (std::string const& note : subject.notes)
            values.add("NOTE").set("TEXT", note);
        for (int i = 0; i < colorspace_nof_channels[chart.getColorSpace()]; ++i)
            values.add("CHANNEL").set("NAME", channelNames[chart.getColorSpace()][i]);
        if (!hasPairs())
            return;
        values.add("SCANNED");
        values.set("SMALLEST", smallestText());
        bool const hasGaps = chart.getMeasurementLayout().getGap().height > 0;
        values.set("VERDICT_CLASS", isWeak(smallest()) && !hasGaps ? "bad" : "good");
        values.set("VERDICT", !isWeak(smallest()) ? "at least the 18 ΔE that the instrument needs"
                              : hasGaps           ? "below 18 ΔE, but gaps divide the patches"
                                                  : "below the 18 ΔE that the instrument needs");
    }

    void addSheet(NumberedSheet const& sheet)
    {
        std::string const number = std::to_string(sheet.number);
        IntRect const block = sheet.page->getCoordRect();
        std::string const caption = labelOf(chart, {block.x + block.width - 1, block.y + block.height - 1}) + " to " +
                                    labelOf(chart, {block.x, block.y}) + ": " + countOf(block.width, "column") +
                                    " of " + countOf(block.height, "patch", "patches") + ".";
        TemplateValues values = page.values().add("SHEET");
        values.set("NUMBER", number);
        values.set("CAPTION", caption);
        ShownSheet picture = pictureOf(sheet, chart);
        addMarks(picture);
        fillSheet(values.include("DRAWING", "sheet.html"), picture, chart, "drawing-" + number, "Sheet " + number,
                  caption + " The first patch is at the upper right. The table below lists the patches" +
                      (picture.marks.empty() ? "." : ", and discs with numbers mark weak pairs."));
        for (int x = block.x + block.width - 1; x >= block.x; --x)
            for (int y = block.y + block.height - 1; y >= block.y; --y)
                addPatch(values, *sheet.page, {x, y});
    }

    void addMarks(ShownSheet& picture) const
    {
        for (std::size_t i = 0; i < std::min(weakPairCount, pairs.size()); ++i) {
            ScanPair const& pair = pairs[i];
            auto const* first = isPaper(pair.first) ? nullptr : picture.findPatch(pair.first);
            auto const* second = isPaper(pair.second) ? nullptr : picture.findPatch(pair.second);
            if (!first && !second)
                continue;
            RealRect const upper = (first ? first : second)->place;
            RealRect const lower = (second ? second : first)->place;
            RealRect const frame{upper.x, lower.y, upper.width, upper.y + upper.height - lower.y};
            // A pair with the paper has its disc at that edge.
            double const edge = !first    ? upper.y + upper.height
                                : !second ? lower.y
                                          : (upper.y + lower.y + lower.height) / 2;
            std::string const rank = std::to_string(i + 1);
            picture.marks.push_back({frame,
                                     {frame.x + frame.width / 2, edge},
                                     "weak-" + rank,
                                     rank,
                                     "Weak pair " + rank + ": " + nameOf(pair.first) + " and " + nameOf(pair.second) +
                                         ", " + deltaText(pair.deltaE) + " ΔE"});
        }
    }

    std::string nameOf(IntPos cell) const { return isPaper(cell) ? "paper" : labelOf(chart, cell); }

    void addPatch(TemplateValues& sheet, OutputPage const& outputPage, IntPos cell) const
    {
        ColorEntry const* const entry = chart.getColorEntry(cell);
        if (!entry)
            return;
        TemplateValues values = sheet.add("PATCH");
        values.set("LABEL", labelOf(chart, cell));
        for (String const& value : entry->getValues())
            values.add("VALUE").set("TEXT", textOf(value));
        values.set("L", labText(entry->getLab()[0]));
        values.set("A", labText(entry->getLab()[1]));
        values.set("B", labText(entry->getLab()[2]));
        ScanNeighbors const neighbors = neighborsOf(chart, outputPage, cell);
        values.set("BEFORE", deltaText(neighbors.deltaEBefore) + " to " + nameOf(neighbors.before));
        values.set("AFTER", deltaText(neighbors.deltaEAfter) + " to " + nameOf(neighbors.after));
        values.set("ORIGIN", entry->getStatus() == Data ? "table" : "white, added");
    }

    void addWeakPairs()
    {
        std::size_t const count = std::min(weakPairCount, pairs.size());
        page.values().set("WEAK_COUNT", std::to_string(count));
        for (std::size_t i = 0; i < count; ++i) {
            ScanPair const& pair = pairs[i];
            TemplateValues values = page.values().add("WEAK");
            values.set("RANK", std::to_string(i + 1));
            values.set("FIRST", nameOf(pair.first));
            values.set("SECOND", nameOf(pair.second));
            values.set("SHEET", std::to_string(sheetNumberOf(chart, isPaper(pair.first) ? pair.second : pair.first)));
            values.set("DELTA", deltaText(pair.deltaE));
            values.set("LIGHTNESS", fixedNumber(lightnessDifference(pair), 1));
            values.set("VERDICT_CLASS", isWeak(pair.deltaE) ? "bad" : "good");
            values.set("VERDICT", isWeak(pair.deltaE) ? "below 18" : "enough");
        }
    }

    double lightnessDifference(ScanPair const& pair) const
    {
        auto const lightness = [this](IntPos cell) {
            ColorEntry const& entry = isPaper(cell) ? ColorEntry::whitePatch : *chart.getColorEntry(cell);
            return static_cast<double>(entry.getLab()[0]);
        };
        return std::abs(lightness(pair.first) - lightness(pair.second));
    }

    void fillNumbers()
    {
        TemplateValues& values = page.values();
        values.set("FILLERS", groupedNumber(cells.fillers));
        values.set("HIDDEN", groupedNumber(cells.hidden));
        values.set("CELLS", groupedNumber(cells.all()));
        values.set("COLUMNS", groupedNumber(chart.getPatchesX()));
        values.set("ROWS", groupedNumber(chart.getPatchesY()));
        for (std::string const& reason : sheetReasons(subject, cells))
            values.add("SHEET_REASON").set("TEXT", reason);
        values.set("GAP_REASON", gapReason(subject, hasPairs() ? smallest() : 0));
        if (!hasPairs())
            return;
        values.set("SMALLEST_TEXT", isWeak(smallest()) ? "Below the 18 ΔE that make gaps needless."
                                                       : "At least 18 ΔE: the instrument needs no gaps.");
        values.set("FIVE_PERCENT", deltaText(percentileOf(pairs, 0.05)));
        values.set("MEDIAN", deltaText(percentileOf(pairs, 0.5)));
        if (subject.bound <= 0)
            return;
        double const bound = static_cast<double>(subject.bound);
        TemplateValues row = values.add("BOUND");
        row.set("VALUE", boundText());
        row.set("TEXT", "No order of these patches has a larger smallest difference. This order reaches " +
                            shortNumber(std::floor(1000 * static_cast<double>(smallest()) / bound) / 10, 1) +
                            " % of it." + (subject.isBoundLoose ? " The chart is large, and its bound loose." : ""));
    }

    // Rounded up: no order exceeds it.
    std::string boundText() const { return fixedNumber(std::ceil(static_cast<double>(subject.bound) * 100) / 100, 2); }

    void fillDifferences()
    {
        if (!hasPairs())
            return;
        constexpr int mostBars = 60;
        std::vector<double> values;
        for (ScanPair const& pair : pairs)
            values.push_back(static_cast<double>(pair.deltaE));
        auto const limit = static_cast<double>(deltaEWithoutGaps);
        auto const below =
            std::count_if(pairs.begin(), pairs.end(), [](ScanPair const& pair) { return isWeak(pair.deltaE); });
        std::vector<HistogramLine> lines{{limit, "18 ΔE"}};
        if (subject.bound > 0)
            lines.push_back({static_cast<double>(subject.bound), "bound " + boundText()});
        std::string const counted = countOf(static_cast<long long>(pairs.size()), "pair") + ", " +
                                    groupedNumber(below) + " of them below 18 ΔE.";
        fillHistogram(page.values().include("DIFFERENCES", "histogram.html"), histogramOf(values, mostBars),
                      {"differences-plot", "Differences along the scan",
                       "How many neighbours along the scan differ by how much. " + counted,
                       counted + " The smallest difference is " + smallestText() + ", the median " +
                           deltaText(percentileOf(pairs, 0.5)) + ".",
                       "ΔE*ab"},
                      lines, limit);
    }

    void fillInks()
    {
        std::vector<double> const sums = inkSums(chart);
        if (sums.empty())
            return;
        constexpr int mostBars = 21;
        page.values().add("INKED");
        page.values().set("INK_TEXT", inkText(sums));
        fillHistogram(page.values().include("INKS", "histogram.html"), histogramOf(sums, mostBars),
                      {"inks-plot", "Sum of inks", "How many patches have how much ink in all.", inkText(sums), "%"});
    }

    void fillRepeats()
    {
        std::vector<RepeatGroup> const groups = repeatsOf(chart);
        TemplateValues& values = page.values();
        values.set("REPEAT_TEXT", repeatText(chart, groups));
        if (groups.empty())
            return;
        values.add("REPEATS");
        if (groups.size() > mostRepeatGroups)
            values.add("MORE").set("TEXT", "Only the first " + std::to_string(mostRepeatGroups) +
                                               " of these colours are shown.");
        std::vector<RepeatGroup> shown(
            groups.begin(), groups.begin() + static_cast<std::ptrdiff_t>(std::min(groups.size(), mostRepeatGroups)));
        for (RepeatGroup& group : shown)
            group.resize(std::min(group.size(), mostRepeatPlaces));
        for (std::size_t i = 0; i < shown.size(); ++i)
            addRepeats(groups[i], shown[i], std::to_string(i + 1));
        for (NumberedSheet const& sheet : sheets)
            addRepeatMap(sheet, shown);
    }

    // The sheet without its patches, and a disc for each repeat.
    void addRepeatMap(NumberedSheet const& sheet, std::vector<RepeatGroup> const& groups)
    {
        ShownSheet picture = pictureOf(sheet, chart);
        std::string list;
        for (std::size_t i = 0; i < groups.size(); ++i)
            for (IntPos const cell : groups[i]) {
                ShownSheet::Rectangle const* const patch = picture.findPatch(cell);
                if (!patch)
                    continue;
                RealRect const place = patch->place;
                std::string const rank = std::to_string(i + 1);
                std::string const label = labelOf(chart, cell);
                picture.marks.push_back({place,
                                         {place.x + place.width / 2, place.y + place.height / 2},
                                         "repeat-" + label,
                                         rank,
                                         "Repeat " + rank + ": " + label});
                list += (list.empty() ? "" : ", ") + label;
            }
        if (picture.marks.empty())
            return;
        constexpr DisplayColor pale{0xd8, 0xdb, 0xde};
        picture.rectangles = {{frameOf(*sheet.page, chart).content, pale, {}}};
        TemplateValues values = page.values().add("MAP");
        std::string const number = std::to_string(sheet.number);
        values.set("NUMBER", number);
        fillSheet(values.include("DRAWING", "sheet.html"), picture, chart, "map-" + number,
                  "Repeats on sheet " + number, "Patches whose colour the table has more than once: " + list + ".");
    }

    void addRepeats(RepeatGroup const& group, RepeatGroup const& shown, std::string const& rank)
    {
        TemplateValues values = page.values().add("GROUP");
        values.set("RANK", rank);
        std::string text;
        for (String const& value : chart.getColorEntry(group.front())->getValues())
            text += (text.empty() ? "" : " ") + textOf(value);
        values.set("VALUES", text);
        values.set("TIMES", std::to_string(group.size()));
        std::set<int> numbers;
        for (IntPos const cell : group)
            numbers.insert(sheetNumberOf(chart, cell));
        for (IntPos const cell : shown)
            values.add("PLACE").set("LABEL", labelOf(chart, cell));
        if (group.size() > shown.size())
            values.add("REST").set("COUNT", groupedNumber(static_cast<long long>(group.size() - shown.size())));
        std::string onSheets;
        for (int const number : numbers)
            onSheets += (onSheets.empty() ? "" : ", ") + std::to_string(number);
        values.set("ON_SHEETS", onSheets);
    }

    void fillSteps()
    {
        for (std::string const& step : printSteps(subject))
            page.values().add("PRINT_STEP").set("TEXT", step);
        for (std::string const& step : measureSteps(subject))
            page.values().add("MEASURE_STEP").set("TEXT", step);
    }

    ReportSubject const& subject;
    ChartLayout const& chart;
    std::vector<NumberedSheet> sheets;
    std::vector<ScanPair> pairs;
    CellCounts cells;
    ReportPage page;
};

} // namespace

PageText chartReport(ReportSubject const& subject)
{
    ChartLayout const& chart = subject.chart;
    long long const all = static_cast<long long>(chart.getPatchesX()) * chart.getPatchesY();
    int const sheets = chart.countOutputPages();
    if (all > mostReportCells || sheets > mostReportSheets)
        return PageFault{"the chart has " + countOf(all, "cell") + " on " + countOf(sheets, "sheet") +
                         ", and a report shows at most " + groupedNumber(mostReportCells) + " on " +
                         groupedNumber(mostReportSheets) + "; divide the table"};
    return ChartReport(subject).text();
}
