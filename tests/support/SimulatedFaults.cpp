// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/SimulatedFaults.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace
{

bool isSame(std::vector<std::string> const& labels, std::vector<std::string> const& others)
{
    auto sorted = labels;
    auto sortedOthers = others;
    std::sort(sorted.begin(), sorted.end());
    std::sort(sortedOthers.begin(), sortedOthers.end());
    return sorted == sortedOthers;
}

bool isFound(ChartReference const& chart, FaultyReadings::Fault const& fault, Finding const& finding)
{
    std::vector<std::string> labels;
    for (std::size_t const strip : fault.strips)
        labels.push_back(chart.strips[strip].label);
    return finding.kind == fault.kind && isSame(labels, finding.columns) && finding.by == fault.by &&
           (fault.kind != FindingKind::repeated || finding.of == chart.strips[fault.of].label);
}

} // namespace

FaultMaker::FaultMaker(ChartReference const& theChart, Readings const& clean, double noise, SimulationRandom& theRandom)
    : chart(theChart), deviation(noise / std::sqrt(8 / std::numbers::pi)), random(theRandom),
      isUsed(theChart.strips.size()), sheetOf(theChart.sheetCount)
{
    result.stored = clean;
    result.truth.resize(clean.size());
    std::iota(result.truth.begin(), result.truth.end(), std::size_t{0});
    std::iota(sheetOf.begin(), sheetOf.end(), std::size_t{0});
}

std::size_t FaultMaker::freeStrip()
{
    std::size_t strip = 0;
    do {
        strip = random.below(isUsed.size());
    } while (isUsed[strip]);
    isUsed[strip] = true;
    return strip;
}

std::size_t FaultMaker::sourceOf(std::size_t strip) const
{
    std::size_t const sheet = chart.strips[strip].sheet;
    return chart.stripsOf(sheetOf[sheet])[0] + strip - chart.stripsOf(sheet)[0];
}

std::optional<LabColor> FaultMaker::again(std::optional<LabColor> const& reading)
{
    if (!reading)
        return std::nullopt;
    LabColor second = *reading;
    for (double& value : second)
        value += deviation * std::numbers::sqrt2 * random.normal();
    return second;
}

void FaultMaker::exchangeSheets()
{
    auto const sheets = random.some(2, chart.sheetCount);
    auto const [p, pEnd] = chart.stripsOf(sheets[0]);
    auto const q = chart.stripsOf(sheets[1])[0];
    std::swap(sheetOf[sheets[0]], sheetOf[sheets[1]]);
    FaultyReadings::Fault fault;
    fault.kind = FindingKind::sheets;
    for (std::size_t i = 0; i < pEnd - p; ++i) {
        for (std::size_t row = 0; row < chart.strips[p + i].count; ++row) {
            std::swap(result.stored[chart.strips[p + i].first + row], result.stored[chart.strips[q + i].first + row]);
            std::swap(result.truth[chart.strips[p + i].first + row], result.truth[chart.strips[q + i].first + row]);
        }
        fault.strips.push_back(p + i);
        fault.strips.push_back(q + i);
    }
    result.faults.push_back(fault);
}

void FaultMaker::reverse()
{
    std::size_t const strip = freeStrip();
    auto const first = static_cast<std::ptrdiff_t>(chart.strips[strip].first);
    auto const count = static_cast<std::ptrdiff_t>(chart.strips[strip].count);
    std::reverse(result.stored.begin() + first, result.stored.begin() + first + count);
    std::reverse(result.truth.begin() + first, result.truth.begin() + first + count);
    result.faults.push_back({FindingKind::reversed, {strip}, 0, 0});
}

// A patch is lost, and the last place is empty. Or a patch is counted twice, and the last one has no place.
void FaultMaker::shift()
{
    std::size_t const strip = freeStrip();
    std::size_t const first = chart.strips[strip].first;
    std::size_t const last = first + chart.strips[strip].count - 1;
    bool const isLost = random.even() < 0.5;
    std::size_t const begin = first + random.below(chart.strips[strip].count - 5);
    if (isLost) {
        for (std::size_t i = begin; i < last; ++i) {
            result.stored[i] = result.stored[i + 1];
            result.truth[i] = result.truth[i + 1];
        }
        result.stored[last].reset();
        result.truth[last] = Assignment::nothing;
    } else {
        for (std::size_t i = last; i > begin; --i) {
            result.stored[i] = result.stored[i - 1];
            result.truth[i] = result.truth[i - 1];
        }
        result.stored[begin + 1] = again(result.stored[begin]);
        result.truth[begin + 1] = Assignment::nothing;
    }
    result.faults.push_back({FindingKind::shifted, {strip}, 0, isLost ? -1 : 1});
}

void FaultMaker::exchange()
{
    std::size_t const p = freeStrip();
    std::size_t const q = freeStrip();
    for (std::size_t row = 0; row < std::min(chart.strips[p].count, chart.strips[q].count); ++row) {
        std::swap(result.stored[chart.strips[p].first + row], result.stored[chart.strips[q].first + row]);
        std::swap(result.truth[chart.strips[p].first + row], result.truth[chart.strips[q].first + row]);
    }
    result.faults.push_back({FindingKind::exchanged, {p, q}, 0, 0});
}

void FaultMaker::repeat()
{
    std::size_t const strip = freeStrip();
    std::size_t const source = freeStrip();
    for (std::size_t row = 0; row < std::min(chart.strips[strip].count, chart.strips[source].count); ++row) {
        result.stored[chart.strips[strip].first + row] = again(result.stored[chart.strips[source].first + row]);
        result.truth[chart.strips[strip].first + row] = Assignment::nothing;
    }
    result.faults.push_back({FindingKind::repeated, {strip}, sourceOf(source), 0});
}

void FaultMaker::addAny()
{
    constexpr void (FaultMaker::*makers[])() = {&FaultMaker::reverse, &FaultMaker::shift, &FaultMaker::exchange,
                                                &FaultMaker::repeat};
    (this->*makers[random.below(4)])();
}

std::size_t countFound(ChartReference const& chart, FaultyReadings const& faulty, std::vector<Finding> const& findings)
{
    std::size_t found = 0;
    for (auto const& fault : faulty.faults)
        found += std::any_of(findings.begin(), findings.end(),
                             [&](Finding const& finding) { return isFound(chart, fault, finding); })
                     ? 1U
                     : 0U;
    return found;
}

RepairResult judgeRepair(ChartReference const& chart, FaultyReadings const& faulty,
                         std::vector<std::size_t> const& places)
{
    std::vector<std::size_t> right(faulty.truth.size(), Assignment::nothing);
    for (std::size_t i = 0; i < faulty.truth.size(); ++i)
        if (faulty.truth[i] != Assignment::nothing)
            right[faulty.truth[i]] = i;
    RepairResult result;
    for (ChartStrip const& strip : chart.strips) {
        bool isRight = true;
        bool isUntouched = true;
        bool wasRight = true;
        for (std::size_t i = strip.first; i < strip.first + strip.count; ++i) {
            // An empty place is as good as none.
            bool const isNothing = places[i] == Assignment::nothing || !faulty.stored[places[i]];
            isRight = isRight && (isNothing ? right[i] == Assignment::nothing : places[i] == right[i]);
            isUntouched = isUntouched && places[i] == i;
            wasRight = wasRight && right[i] == i;
        }
        if (!isRight || !wasRight)
            ++(isRight ? result.right : isUntouched && !wasRight ? result.untouched : result.wrong);
    }
    return result;
}
