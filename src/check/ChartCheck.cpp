// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartCheck.h"

#include "CorrectedReadings.h"
#include "ReadingTrend.h"
#include "StripFindings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace
{

// A misread patch differs at least so much from what is expected, in delta E and in spreads.
constexpr double leastMisreading = 7;
constexpr double leastScore = 3.5;

// Readings of darker patches can fall below L* = 0 by noise.
constexpr double mostDarkLightness = 20;

// Sheets of paper, the drift and repeats differ too much beyond this, delta E (1976). Instruments and presses stay
// below it.
constexpr double mostPaperDifference = 3;
constexpr double mostDrift = 4;
constexpr double mostRepeatDifference = 3;
constexpr std::size_t fewestRepeats = 5;

// The share of right readings with a higher score, as simulated prints have it: 8 of 285,000 have more than 3.
double shareOfRightReadings(double score)
{
    return std::exp(-3.5 * score);
}

std::string withOneDecimal(double value)
{
    std::array<char, 40> text{};
    auto const end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1).ptr;
    return {text.data(), end};
}

class MeasurementChecker
{
public:
    MeasurementChecker(ChartReference const& theChart, PairedMeasurement const& theMeasurement)
        : chart(theChart), measurement(theMeasurement)
    {
    }

    MeasurementCheck check(std::vector<ReadingOrder> const& orders)
    {
        result.explanation = explainStrips(chart, measurement.readings, orders);
        result.findings = stripFindings(chart, result.explanation);
        result.findings.insert(result.findings.end(), measurement.findings.begin(), measurement.findings.end());
        result.places = correctedPlaces(chart, result.explanation, true);
        result.corrected.resize(chart.patches.size());
        ReadingPlaces const places = correctedPlaces(chart, result.explanation, false);
        for (std::size_t i = 0; i < places.size(); ++i)
            if (places[i] != Assignment::nothing)
                result.corrected[i] = measurement.readings[places[i]];
        result.isMisread.resize(chart.patches.size());
        findMissing();
        if (result.explanation.isExplained)
            result.expectations = expectPatches(chart, result.corrected, result.explanation.model);
        findImpossible();
        if (result.explanation.isExplained) {
            findMisread();
            checkPaper();
            checkTrend();
            checkRepeats();
        }
        return std::move(result);
    }

private:
    Finding& add(FindingKind kind, std::string text)
    {
        Finding finding;
        finding.kind = kind;
        finding.text = std::move(text);
        result.findings.push_back(std::move(finding));
        return result.findings.back();
    }

    // Places without a row. White patches that fill up the chart may be left out.
    bool isMissing(std::size_t patch) const
    {
        return !measurement.readings[patch] && !measurement.isImpossible[patch] && !chart.patches[patch].isFiller;
    }

    void findMissing()
    {
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
            auto const [first, last] = chart.stripsOf(sheet);
            std::vector<std::string> columns;
            std::vector<std::string> patches;
            for (std::size_t strip = first; strip < last; ++strip)
                if (!result.explanation.matches[strip].isShifted()) // a shift says itself which readings are missing
                    addMissing(chart.strips[strip], columns, patches);
            if (columns.size() == last - first) {
                Finding& finding = add(FindingKind::missing, "sheet " + std::to_string(sheet + 1) + " has no readings");
                finding.columns = columns;
                finding.sheet = sheet + 1;
                continue;
            }
            for (std::string const& column : columns) {
                Finding& finding = add(FindingKind::missing, "column " + column + " has no readings");
                finding.columns = {column};
                finding.sheet = sheet + 1;
            }
            if (patches.empty())
                continue;
            Finding& finding =
                add(FindingKind::missing, (patches.size() == 1 ? std::string("1 patch has")
                                                               : std::to_string(patches.size()) + " patches have") +
                                              " no reading: " + firstOf(patches));
            finding.patches = patches;
            finding.sheet = sheet + 1;
        }
    }

    static std::string firstOf(std::vector<std::string> const& patches)
    {
        constexpr std::size_t shown = 8;
        std::string list;
        for (std::size_t i = 0; i < std::min(shown, patches.size()); ++i)
            list += (i > 0 ? ", " : "") + patches[i];
        return list + (patches.size() > shown ? " and more" : "");
    }

    void addMissing(ChartStrip const& strip, std::vector<std::string>& columns, std::vector<std::string>& patches) const
    {
        std::vector<std::string> missing;
        std::size_t printed = 0;
        for (std::size_t patch = strip.first; patch < strip.first + strip.count; ++patch) {
            printed += chart.patches[patch].isFiller ? 0U : 1U;
            if (isMissing(patch))
                missing.push_back(chart.patches[patch].label);
        }
        if (!missing.empty() && missing.size() == printed)
            columns.push_back(strip.label);
        else
            patches.insert(patches.end(), missing.begin(), missing.end());
    }

    bool isMisread(std::size_t patch) const
    {
        PatchExpectation const& expectation = result.expectations[patch];
        auto const& reading = result.corrected[patch];
        return reading && expectation.score > leastScore && deltaE76(*reading, expectation.lab) > leastMisreading;
    }

    // Noise takes dark patches a little below L* = 0. Other patches cannot be there.
    void findImpossible()
    {
        for (std::size_t i = 0; i < chart.patches.size(); ++i) {
            auto& reading = result.corrected[i];
            if (!reading || (*reading)[0] >= 0)
                continue;
            if (!result.expectations.empty() && result.expectations[i].lab[0] < mostDarkLightness && !isMisread(i))
                continue;
            Finding& finding = add(FindingKind::impossible,
                                   "patch " + chart.patches[i].label + ": " + impossibleLightness((*reading)[0]));
            finding.patches = {chart.patches[i].label};
            finding.sheet = chart.stripOf(i).sheet + 1;
            reading.reset();
        }
    }

    void findMisread()
    {
        std::vector<ColorPair> pairs;
        for (std::size_t i = 0; i < chart.patches.size(); ++i) {
            auto const& reading = result.corrected[i];
            if (!reading)
                continue;
            result.isMisread[i] = isMisread(i);
            if (!result.isMisread[i])
                pairs.push_back({*reading, result.expectations[i].lab});
        }
        result.expected = statisticsOf(pairs);
        for (ChartStrip const& strip : chart.strips)
            nameMisread(strip);
    }

    void nameMisread(ChartStrip const& strip)
    {
        std::vector<std::size_t> misread;
        for (std::size_t patch = strip.first; patch < strip.first + strip.count; ++patch)
            if (result.isMisread[patch])
                misread.push_back(patch);
        if (misread.size() > 2 && 2 * misread.size() > strip.count) {
            Finding& finding = add(FindingKind::patch, "column " + strip.label + ": " + std::to_string(misread.size()) +
                                                           " readings fit neither their patches nor another column");
            finding.columns = {strip.label};
            finding.sheet = strip.sheet + 1;
            finding.certainty = certaintyOfPatches(misread);
            for (std::size_t const patch : misread)
                finding.patches.push_back(chart.patches[patch].label);
            return;
        }
        for (std::size_t const patch : misread) {
            double const difference =
                deltaE76(result.corrected[patch].value_or(LabColor{}), result.expectations[patch].lab);
            Finding& finding =
                add(FindingKind::patch, "patch " + chart.patches[patch].label + " is " + withOneDecimal(difference) +
                                            " delta E from what the other patches suggest");
            finding.patches = {chart.patches[patch].label};
            finding.sheet = strip.sheet + 1;
            finding.certainty = certaintyOfPatches({patch});
        }
    }

    double certaintyOfPatches(std::vector<std::size_t> const& patches) const
    {
        double worst = 0;
        for (std::size_t const patch : patches)
            worst = std::max(worst, shareOfRightReadings(result.expectations[patch].score));
        double const certainty = 1 - std::min(1.0, worst * static_cast<double>(chart.patches.size()));
        return std::min(0.999999, std::floor(certainty * 1e6) / 1e6);
    }

    // Readings that are right as far as is known.
    Readings soundReadings() const
    {
        Readings readings = result.corrected;
        for (std::size_t i = 0; i < readings.size(); ++i)
            if (result.isMisread[i])
                readings[i].reset();
        return readings;
    }

    void checkPaper()
    {
        result.papers.resize(chart.sheetCount);
        Readings const readings = soundReadings();
        for (std::size_t i = 0; i < readings.size(); ++i) {
            auto const& reading = readings[i];
            if (!reading || !chart.isWhite(i))
                continue;
            SheetPaper& paper = result.papers[chart.stripOf(i).sheet];
            ++paper.readings;
            for (std::size_t k = 0; k < 3; ++k)
                paper.mean[k] += (*reading)[k];
        }
        for (SheetPaper& paper : result.papers)
            for (double& value : paper.mean)
                value /= static_cast<double>(std::max<std::size_t>(1, paper.readings));
        comparePapers();
    }

    // The sheets whose paper differs most. A mean of few readings may differ by chance.
    void comparePapers()
    {
        SheetPair const worst = worstPair([this](std::size_t sheet) { return result.papers[sheet].mean; },
                                          [this](std::size_t sheet) { return result.papers[sheet].readings; });
        if (worst.excess > 0)
            addPaper("bare paper differs", worst);
    }

    struct SheetPair
    {
        std::size_t first = 0;
        std::size_t second = 0;
        double difference = 0;
        double excess = 0; // over what chance and presses allow
    };

    template <typename ColorOf, typename CountOf>
    SheetPair worstPair(ColorOf colorOf, CountOf countOf) const
    {
        SheetPair worst;
        for (std::size_t i = 0; i < chart.sheetCount; ++i)
            for (std::size_t j = i + 1; j < chart.sheetCount; ++j) {
                if (countOf(i) == 0 || countOf(j) == 0)
                    continue;
                double const chance =
                    3 * std::sqrt(1.0 / static_cast<double>(countOf(i)) + 1.0 / static_cast<double>(countOf(j)));
                double const difference = deltaE76(colorOf(i), colorOf(j));
                double const excess = difference - mostPaperDifference - chance;
                if (excess > worst.excess)
                    worst = {i, j, difference, excess};
            }
        return worst;
    }

    void addPaper(std::string const& what, SheetPair const& pair)
    {
        Finding& finding =
            add(FindingKind::paper, what + " by " + withOneDecimal(pair.difference) + " delta E between sheets " +
                                        std::to_string(pair.first + 1) + " and " + std::to_string(pair.second + 1));
        finding.certainty = certaintyOf(2 * pair.excess + 4);
    }

    // A chart may have bare paper on one sheet only. Then the other colours tell of another paper.
    void checkTrend()
    {
        ReadingTrend const trend = trendOf(chart, soundReadings(), result.explanation.model);
        result.drift = deltaE76(trend.drift, {});
        double const chance = 6 * trend.chance;
        double const excess = result.drift - mostDrift - chance;
        if (excess > 0) {
            Finding& finding = add(FindingKind::drift, "the colour drifts by " + withOneDecimal(result.drift) +
                                                           " delta E from the first patch to the last");
            finding.certainty = certaintyOf(4 * excess / std::max(0.1, chance) + 4);
        }
        bool const hasPaper = std::any_of(result.findings.begin(), result.findings.end(),
                                          [](Finding const& finding) { return finding.kind == FindingKind::paper; });
        if (!trend.isSteps || hasPaper)
            return;
        SheetPair const worst = worstPair([&](std::size_t sheet) { return trend.offsets[sheet]; },
                                          [&](std::size_t sheet) { return trend.counts[sheet]; });
        if (worst.excess > 0)
            addPaper("all colours differ", worst);
    }

    void checkRepeats()
    {
        result.repeats = statisticsOf(repeatsOf(chart, soundReadings()));
        if (result.repeats.count < fewestRepeats || result.repeats.mean76 <= mostRepeatDifference)
            return;
        Finding& finding = add(FindingKind::repeats,
                               "readings of the same device values differ by " + withOneDecimal(result.repeats.mean76) +
                                   " delta E from their mean, on average of " + std::to_string(result.repeats.count));
        finding.certainty = certaintyOf(4 + static_cast<double>(result.repeats.count) *
                                                (result.repeats.mean76 / mostRepeatDifference - 1));
    }

    ChartReference const& chart;
    PairedMeasurement const& measurement;
    MeasurementCheck result;
};

} // namespace

MeasurementCheck checkMeasurement(ChartReference const& chart, PairedMeasurement const& measurement,
                                  std::vector<ReadingOrder> const& orders)
{
    return MeasurementChecker(chart, measurement).check(orders);
}
