// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CheckReport.h"

#include "ChartReport.h"
#include "DisplayColor.h"
#include "NumberText.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace
{

// In units of the drawing.
constexpr double patchSide = 10;
constexpr double expectedSide = 4;
constexpr double margin = 10;
constexpr double pixelsPerUnit = 2.4;

constexpr std::size_t mostListedFindings = 500;

std::string colorOf(LabColor const& lab)
{
    Lab const color{{static_cast<float>(lab[0]), static_cast<float>(lab[1]), static_cast<float>(lab[2])}};
    return htmlColor(displayColorOf(color));
}

// Where a finding is marked: a run of rows in a strip.
struct MarkedPlace
{
    std::size_t finding = 0;
    std::size_t strip = 0;
    std::size_t firstRow = 0;
    std::size_t lastRow = 0;
};

class CheckPage
{
public:
    explicit CheckPage(CheckSubject const& theSubject)
        : subject(theSubject), chart(theSubject.chart), check(theSubject.check),
          page(theSubject.chart.name, "Measurement report", "check.html")
    {
    }

    PageText text()
    {
        if (chart.patches.size() > static_cast<std::size_t>(mostReportCells))
            return PageFault{"no report: the chart has more than " + groupedNumber(mostReportCells) + " patches"};
        page.addSummary(countOf(static_cast<long long>(chart.patches.size()), "patch", "patches") + " on " +
                        countOf(static_cast<long long>(chart.sheetCount), "sheet") + ", measured in " + subject.files +
                        ".");
        page.addChapter("findings", "Findings");
        page.addChapter("sheets", "Sheets");
        page.addChapter("statistics", "Statistics");
        findPlaces();
        setTiles();
        listFindings();
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet)
            addSheet(sheet);
        addStatistics();
        return page.text();
    }

private:
    std::optional<LabColor> const& readingAt(std::size_t patch) const { return subject.measurement.readings[patch]; }

    // What each patch should measure, where the readings fit the chart.
    LabColor const* expectedAt(std::size_t patch) const
    {
        return check.expectations.empty() ? nullptr : &check.expectations[patch].lab;
    }

    void setTiles()
    {
        std::size_t readings = 0;
        for (auto const& reading : subject.measurement.readings)
            readings += reading ? 1U : 0U;
        TemplateValues& values = page.values();
        values.set("FINDINGS", groupedNumber(static_cast<long long>(check.findings.size())));
        values.set("VERDICT", check.findings.empty() ? "nothing is wrong" : "see below");
        values.set("VERDICT_CLASS", check.findings.empty() ? "good" : "bad");
        values.set("READINGS", groupedNumber(static_cast<long long>(readings)));
        values.set("PATCHES", groupedNumber(static_cast<long long>(chart.patches.size())));
        values.set("FIT_MEAN", fixedNumber(check.expected.mean76, 2));
        values.set("FIT_95", fixedNumber(check.expected.highest95, 2));
        values.set("DRIFT", fixedNumber(check.drift, 1));
    }

    std::size_t listedFindings() const { return std::min(mostListedFindings, check.findings.size()); }

    bool hasPlace(std::size_t finding) const
    {
        return std::any_of(places.begin(), places.end(),
                           [finding](MarkedPlace const& place) { return place.finding == finding; });
    }

    void listFindings()
    {
        TemplateValues& values = page.values();
        if (check.findings.empty()) {
            values.add("NO_FINDINGS");
            return;
        }
        TemplateValues table = values.add("FINDING_TABLE");
        for (std::size_t i = 0; i < listedFindings(); ++i) {
            Finding const& finding = check.findings[i];
            TemplateValues row = table.add("FINDING");
            row.set("RANK", std::to_string(i + 1));
            row.set("KIND", nameOf(finding.kind));
            row.set("TEXT", finding.text);
            row.set("CERTAINTY", finding.certainty < 1 ? fixedNumber(100 * finding.certainty, 4) + " %" : "counted");
            if (hasPlace(i)) {
                row.add("PLACE");
                row.add("PLACE_END");
            }
        }
        if (check.findings.size() > listedFindings())
            values.add("MORE").set("TEXT", "and " + std::to_string(check.findings.size() - listedFindings()) +
                                               " more findings; patchloom-cli check --json lists all");
    }

    void findPlaces()
    {
        for (std::size_t i = 0; i < listedFindings(); ++i) {
            Finding const& finding = check.findings[i];
            if (!finding.patches.empty() && finding.columns.size() < 2)
                markPatches(i, finding.patches);
            else
                markColumns(i, finding);
        }
    }

    void markColumns(std::size_t index, Finding const& finding)
    {
        for (std::size_t strip = 0; strip < chart.strips.size(); ++strip) {
            ChartStrip const& place = chart.strips[strip];
            bool const isOnSheet = finding.sheet == 0 || finding.sheet == place.sheet + 1;
            bool const isMeant =
                std::find(finding.columns.begin(), finding.columns.end(), place.label) != finding.columns.end();
            if (isMeant && isOnSheet)
                places.push_back({index, strip, 0, place.count - 1});
        }
    }

    // Neighbours in a column share a frame.
    void markPatches(std::size_t index, std::vector<std::string> const& labels)
    {
        for (std::string const& label : labels) {
            auto const patch = chart.findLabel(label);
            if (!patch)
                continue;
            std::size_t const strip = chart.patches[*patch].strip;
            std::size_t const row = chart.rowOf(*patch);
            bool const goesOn = !places.empty() && places.back().finding == index && places.back().strip == strip &&
                                places.back().lastRow + 1 == row;
            if (goesOn)
                places.back().lastRow = row;
            else
                places.push_back({index, strip, row, row});
        }
    }

    void addSheet(std::size_t sheet)
    {
        auto const [first, last] = chart.stripsOf(sheet);
        std::string const number = std::to_string(sheet + 1);
        TemplateValues values = page.values().add("SHEET");
        values.set("NUMBER", number);
        values.set("CAPTION", countOf(static_cast<long long>(last - first), "column") + ", " +
                                  chart.strips[first].label + " to " + chart.strips[last - 1].label);
        std::size_t rows = 0;
        for (std::size_t strip = first; strip < last; ++strip)
            rows = std::max(rows, chart.strips[strip].count);
        TemplateValues drawing = values.include("DRAWING", "measured.html");
        double const width = 2 * margin + patchSide * static_cast<double>(last - first);
        drawing.set("WIDTH", shortNumber(width, 1));
        drawing.set("HEIGHT", shortNumber(2 * margin + patchSide * static_cast<double>(rows), 1));
        drawing.set("PIXELS", shortNumber(width * pixelsPerUnit, 0));
        drawing.set("ID", "drawing-" + number);
        drawing.set("TITLE", "Sheet " + number + " as it was measured");
        drawing.set("DESCRIPTION", "Measured colours, each with the expected colour in its corner. The table below has "
                                   "the same values.");
        for (std::size_t strip = first; strip < last; ++strip)
            addStrip(strip, values, drawing);
        addRowLabels(first, rows, drawing);
        addMarks(sheet, drawing);
    }

    // As on the print, the first column is the rightmost.
    double left(std::size_t strip) const
    {
        std::size_t const last = chart.stripsOf(chart.strips[strip].sheet)[1];
        return margin + patchSide * static_cast<double>(last - 1 - strip);
    }

    static double top(std::size_t row) { return margin + patchSide * static_cast<double>(row); }

    void addStrip(std::size_t strip, TemplateValues& values, TemplateValues& drawing)
    {
        ChartStrip const& place = chart.strips[strip];
        double const x = left(strip);
        addText(x + patchSide / 2, margin - 3, place.label, drawing);
        for (std::size_t row = 0; row < place.count; ++row) {
            std::size_t const patch = place.first + row;
            double const y = top(row);
            if (auto const& reading = readingAt(patch))
                addSquare("MEASURED", x, y, patchSide, *reading, drawing).set("LABEL", chart.patches[patch].label);
            if (LabColor const* expected = expectedAt(patch))
                addSquare("EXPECTED", x + patchSide - expectedSide, y + patchSide - expectedSide, expectedSide,
                          *expected, drawing);
            addRow(patch, values);
        }
    }

    static TemplateValues addSquare(char const* kind, double x, double y, double side, LabColor const& lab,
                                    TemplateValues& drawing)
    {
        TemplateValues square = drawing.add(kind);
        square.set("X", shortNumber(x, 1));
        square.set("Y", shortNumber(y, 1));
        square.set("SIDE", shortNumber(side, 1));
        square.set("FILL", colorOf(lab));
        return square;
    }

    static void addText(double x, double y, std::string const& text, TemplateValues& drawing)
    {
        TemplateValues value = drawing.add("TEXT");
        value.set("X", shortNumber(x, 1));
        value.set("Y", shortNumber(y, 1));
        value.set("TEXT", text);
    }

    void addRowLabels(std::size_t strip, std::size_t rows, TemplateValues& drawing) const
    {
        ChartStrip const& place = chart.strips[strip];
        for (std::size_t row = 0; row < std::min(rows, place.count); ++row)
            addText(margin / 2, top(row) + 7, chart.patches[place.first + row].label.substr(place.label.size()),
                    drawing);
    }

    void addRow(std::size_t patch, TemplateValues& values) const
    {
        TemplateValues row = values.add("PATCH");
        row.set("LABEL", chart.patches[patch].label);
        auto const& reading = readingAt(patch);
        LabColor const* const expected = expectedAt(patch);
        constexpr char const* measuredNames[] = {"L", "A", "B"};
        constexpr char const* expectedNames[] = {"EXPECTED_L", "EXPECTED_A", "EXPECTED_B"};
        for (std::size_t k = 0; k < 3; ++k) {
            row.set(measuredNames[k], reading ? fixedNumber((*reading)[k], 1) : "–");
            row.set(expectedNames[k], expected ? fixedNumber((*expected)[k], 1) : "–");
        }
        row.set("DELTA", reading && expected ? fixedNumber(deltaE76(*reading, *expected), 1) : "–");
    }

    void addMarks(std::size_t sheet, TemplateValues& drawing)
    {
        for (MarkedPlace const& place : places) {
            if (chart.strips[place.strip].sheet != sheet)
                continue;
            TemplateValues mark = drawing.add("MARK");
            double const x = left(place.strip);
            double const y = top(place.firstRow);
            std::string const rank = std::to_string(place.finding + 1);
            double const size = rank.size() < 2 ? 3.4 : rank.size() < 3 ? 2.9 : 2.1;
            mark.set("X", shortNumber(x, 1));
            mark.set("Y", shortNumber(y, 1));
            mark.set("W", shortNumber(patchSide, 1));
            mark.set("H", shortNumber(patchSide * static_cast<double>(place.lastRow - place.firstRow + 1), 1));
            mark.set("CX", shortNumber(x + 3.2, 1));
            mark.set("CY", shortNumber(y + 3.2, 1));
            mark.set("BASELINE", shortNumber(y + 3.2 + size * 0.36, 2));
            mark.set("SIZE", shortNumber(size, 1));
            mark.set("RANK", rank);
            mark.set("TITLE", check.findings[place.finding].text);
            if (!isMarked(place.finding))
                mark.add("FIRST").set("RANK", rank);
        }
    }

    // Whether a finding has its first mark already: a link leads to that one.
    bool isMarked(std::size_t finding)
    {
        marked.resize(check.findings.size());
        bool const was = marked[finding];
        marked[finding] = true;
        return was;
    }

    void addDifferences(std::string const& name, DifferenceStatistics const& statistics)
    {
        TemplateValues row = page.values().add("DIFFERENCES");
        row.set("NAME", name);
        row.set("COUNT", groupedNumber(static_cast<long long>(statistics.count)));
        row.set("MEAN76", fixedNumber(statistics.mean76, 2));
        row.set("P95_76", fixedNumber(statistics.highest95, 2));
        row.set("LARGEST76", fixedNumber(statistics.largest76, 2));
        row.set("MEAN2000", fixedNumber(statistics.mean2000, 2));
        row.set("P95_2000", fixedNumber(statistics.highest95of2000, 2));
        row.set("LARGEST2000", fixedNumber(statistics.largest2000, 2));
    }

    void addStatistics()
    {
        addDifferences("Readings from what the others suggest", check.expected);
        addDifferences("Repeats from their mean", check.repeats);
        bool const hasPapers = std::any_of(check.papers.begin(), check.papers.end(),
                                           [](SheetPaper const& paper) { return paper.readings > 0; });
        if (!hasPapers)
            return;
        TemplateValues table = page.values().add("PAPERS");
        for (std::size_t sheet = 0; sheet < check.papers.size(); ++sheet) {
            SheetPaper const& paper = check.papers[sheet];
            if (paper.readings == 0)
                continue;
            TemplateValues row = table.add("PAPER");
            row.set("NUMBER", std::to_string(sheet + 1));
            row.set("COUNT", groupedNumber(static_cast<long long>(paper.readings)));
            row.set("L", fixedNumber(paper.mean[0], 1));
            row.set("A", fixedNumber(paper.mean[1], 1));
            row.set("B", fixedNumber(paper.mean[2], 1));
        }
    }

    CheckSubject const& subject;
    ChartReference const& chart;
    MeasurementCheck const& check;
    ReportPage page;
    std::vector<MarkedPlace> places;
    std::vector<bool> marked; // findings
};

} // namespace

PageText checkReport(CheckSubject const& subject)
{
    return CheckPage(subject).text();
}
