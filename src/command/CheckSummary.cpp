// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CheckSummary.h"

#include "Console.h"
#include "Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace
{

// People read so many findings of a measurement; the JSON object has all.
constexpr std::size_t mostShownFindings = 50;

std::string withDecimals(double value, int decimals)
{
    char text[400];
    return {text, std::to_chars(text, std::end(text), value, std::chars_format::fixed, decimals).ptr};
}

// Two decimals, whatever the last bits of the mathematical library are.
double rounded(double value)
{
    return std::round(value * 100) / 100;
}

// The probability that the finding is right. What is counted is sure by itself.
std::string certaintyText(Finding const& finding)
{
    return finding.certainty >= 1 ? "" : " (" + withDecimals(100 * finding.certainty, 4) + " % sure)";
}

std::string differenceText(DifferenceStatistics const& statistics)
{
    return "mean " + withDecimals(statistics.mean76, 2) + ", 95 % " + withDecimals(statistics.highest95, 2) +
           ", largest " + withDecimals(statistics.largest76, 2) + " delta E (1976); " +
           withDecimals(statistics.mean2000, 2) + ", " + withDecimals(statistics.highest95of2000, 2) + ", " +
           withDecimals(statistics.largest2000, 2) + " (2000)";
}

std::string labText(LabColor const& lab)
{
    return withDecimals(lab[0], 1) + " " + withDecimals(lab[1], 1) + " " + withDecimals(lab[2], 1);
}

std::string filesText(CheckSummary const& summary, PairedMeasurement const& measurement)
{
    std::string text;
    for (std::size_t const file : measurement.files)
        text +=
            (text.empty() ? "" : ", ") + printable(summary.files[file].path) + " (" + summary.files[file].kind + ")";
    return text;
}

std::size_t countReadings(PairedMeasurement const& measurement)
{
    return static_cast<std::size_t>(std::count_if(measurement.readings.begin(), measurement.readings.end(),
                                                  [](auto const& reading) { return reading.has_value(); }));
}

std::string measurementText(CheckSummary const& summary, std::size_t index)
{
    PairedMeasurement const& measurement = summary.measurements[index];
    MeasurementCheck const& check = summary.checks[index];
    std::string text = "measurement: " + filesText(summary, measurement) + ", " +
                       std::to_string(countReadings(measurement)) + " readings\n";
    text +=
        "findings: " + (check.findings.empty() ? std::string("none") : std::to_string(check.findings.size())) + "\n";
    for (std::size_t i = 0; i < std::min(mostShownFindings, check.findings.size()); ++i)
        text += "  " + std::string(nameOf(check.findings[i].kind)) + ": " + printable(check.findings[i].text) +
                certaintyText(check.findings[i]) + "\n";
    if (check.findings.size() > mostShownFindings)
        text += "  and " + std::to_string(check.findings.size() - mostShownFindings) + " more; --json lists all\n";
    if (!check.explanation.isExplained)
        return text;
    if (check.repeats.count > 0)
        text += "repeats: " + std::to_string(check.repeats.count) +
                " readings from their means: " + differenceText(check.repeats) + "\n";
    text += "fit: readings from what the others suggest: " + differenceText(check.expected) + "\n";
    for (std::size_t sheet = 0; sheet < check.papers.size(); ++sheet)
        if (check.papers[sheet].readings > 0)
            text += "paper of sheet " + std::to_string(sheet + 1) + ": " + labText(check.papers[sheet].mean) + " (" +
                    std::to_string(check.papers[sheet].readings) + " readings)\n";
    text += "drift: " + withDecimals(check.drift, 1) + " delta E over the whole reading\n";
    return text;
}

std::string joined(std::vector<std::string> const& texts)
{
    std::string list;
    for (std::string const& text : texts)
        list += (list.empty() ? "" : ", ") + text;
    return list;
}

Json jsonOf(DifferenceStatistics const& statistics)
{
    return {{"readings", statistics.count},
            {"deltaE76",
             {{"mean", rounded(statistics.mean76)},
              {"percentile95", rounded(statistics.highest95)},
              {"largest", rounded(statistics.largest76)}}},
            {"deltaE2000",
             {{"mean", rounded(statistics.mean2000)},
              {"percentile95", rounded(statistics.highest95of2000)},
              {"largest", rounded(statistics.largest2000)}}}};
}

Json jsonOf(Finding const& finding)
{
    Json json;
    json["kind"] = nameOf(finding.kind);
    if (!finding.columns.empty())
        json["columns"] = finding.columns;
    if (!finding.patches.empty())
        json["patches"] = finding.patches;
    if (finding.kind == FindingKind::shifted)
        json["by"] = finding.by;
    if (finding.kind == FindingKind::repeated)
        json["of"] = finding.of;
    if (finding.sheet > 0)
        json["sheet"] = finding.sheet;
    json["measurement"] = finding.measurement + 1;
    json["certainty"] = finding.certainty;
    json["text"] = finding.text;
    return json;
}

Json statisticsJson(CheckSummary const& summary, std::size_t index)
{
    PairedMeasurement const& measurement = summary.measurements[index];
    MeasurementCheck const& check = summary.checks[index];
    Json json;
    json["files"] = Json::array();
    for (std::size_t const file : measurement.files)
        json["files"].push_back({{"path", summary.files[file].path}, {"values", summary.files[file].kind}});
    json["readings"] = countReadings(measurement);
    json["repeats"] = jsonOf(check.repeats);
    json["fit"] = jsonOf(check.expected);
    json["papers"] = Json::array();
    for (std::size_t sheet = 0; sheet < check.papers.size(); ++sheet) {
        SheetPaper const& paper = check.papers[sheet];
        if (paper.readings > 0)
            json["papers"].push_back(
                {{"sheet", sheet + 1},
                 {"readings", paper.readings},
                 {"lab", {rounded(paper.mean[0]), rounded(paper.mean[1]), rounded(paper.mean[2])}}});
    }
    json["drift"] = rounded(check.drift);
    return json;
}

} // namespace

std::size_t CheckSummary::countFindings() const
{
    std::size_t count = 0;
    for (MeasurementCheck const& check : checks)
        count += check.findings.size();
    return count;
}

std::string textOf(CheckSummary const& summary)
{
    ChartReference const& chart = summary.chart;
    std::string text = "chart: " + printable(chart.name) + ", " + std::to_string(chart.patches.size()) +
                       " patches in " + std::to_string(chart.strips.size()) + " columns on " +
                       std::to_string(chart.sheetCount) + (chart.sheetCount == 1 ? " sheet\n" : " sheets\n");
    for (std::size_t i = 0; i < summary.checks.size(); ++i)
        text += measurementText(summary, i);
    for (MeasurementComparison const& comparison : summary.comparisons) {
        text += "measurement " + std::to_string(comparison.second + 1) + " from measurement " +
                std::to_string(comparison.first + 1) + ": " + differenceText(comparison.differences) + "\n";
        if (!comparison.columns.empty())
            text += "  columns that differ: " + joined(comparison.columns) + "\n";
    }
    if (summary.repaired.empty())
        return text;
    text += "repaired: " + printable(summary.repaired) + "\n";
    for (std::string const& change : summary.changes)
        text += "  put right: " + printable(change) + "\n";
    for (std::string const& finding : summary.leftAlone)
        text += "  left alone: " + printable(finding) + "\n";
    if (!summary.missing.empty())
        text += "  without a reading: " + joined(summary.missing) + "\n";
    return text;
}

std::string jsonOf(CheckSummary const& summary)
{
    Json json;
    ChartReference const& chart = summary.chart;
    json["chart"] = {{"name", chart.name},
                     {"patches", chart.patches.size()},
                     {"columns", chart.strips.size()},
                     {"sheets", chart.sheetCount}};
    json["findings"] = Json::array();
    for (MeasurementCheck const& check : summary.checks)
        for (Finding const& finding : check.findings)
            json["findings"].push_back(jsonOf(finding));
    Json measurements = Json::array();
    for (std::size_t i = 0; i < summary.checks.size(); ++i)
        measurements.push_back(statisticsJson(summary, i));
    Json comparisons = Json::array();
    for (MeasurementComparison const& comparison : summary.comparisons) {
        Json entry = jsonOf(comparison.differences);
        entry["measurements"] = {comparison.first + 1, comparison.second + 1};
        entry["columnsThatDiffer"] = comparison.columns;
        comparisons.push_back(std::move(entry));
    }
    json["statistics"] = {{"measurements", std::move(measurements)}, {"comparisons", std::move(comparisons)}};
    if (!summary.repaired.empty())
        json["repair"] = {{"file", summary.repaired},
                          {"changes", summary.changes},
                          {"leftAlone", summary.leftAlone},
                          {"missing", summary.missing}};
    return textOf(json);
}
