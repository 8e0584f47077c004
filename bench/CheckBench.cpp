// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartCheck.h"
#include "ColorEntry.h"
#include "Comparison.h"
#include "Folders.h"
#include "ReadingOrder.h"
#include "support/SimulatedFaults.h"
#include "support/SimulatedPrint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <string>
#include <vector>

// How many errors of measurements are found, on simulated prints. It has a table of its own: rates are no ratios of
// times.
//
// Arguments: the number of runs for each print and size, by default 12; the largest charts get a quarter of them.

namespace
{

struct Print
{
    char const* file;
    ColorSpace space;
    double dotGain;
};

// Profiles and characterisation data of Debian's packages icc-profiles-free, colord-data and libgs-common. The last two
// presses print on uncoated paper and on newsprint.
constexpr Print prints[] = {
    {"/usr/share/color/icc/ghostscript/default_cmyk.icc", CMYK, 0},
    {"/usr/share/color/icc/ghostscript/default_cmyk.icc", CMYK, 0.15},
    {"/usr/share/color/icc/ghostscript/default_cmyk.icc", CMYK, -0.12},
    {"/usr/share/color/icc/compatibleWithAdobeRGB1998.icc", RGB, 0},
    {"/usr/share/color/icc/LStar-RGB.icc", RGB, 0.15},
    {"/usr/share/color/icc/colord/WideGamutRGB.icc", RGB, -0.1},
    {"/usr/share/color/icc/colord/SwappedRedAndGreen.icc", RGB, 0.1},
    {"/usr/share/color/icc/FOGRA30L.ti3", CMYK, 0},
    {"/usr/share/color/icc/TR002.ti3", CMYK, 0},
};

constexpr SimulatedChartSize sizes[] = {{100, 10, 1}, {100, 10, 2}, {100, 25, 1},  {240, 12, 2},  {500, 10, 2},
                                        {500, 25, 1}, {900, 20, 3}, {1617, 33, 2}, {5000, 10, 4}, {5000, 40, 5}};

constexpr double noises[] = {0.3, 0.6, 1};
constexpr double drift = 2;
constexpr double misreading = 12;

struct Rate
{
    std::size_t found = 0;
    std::size_t all = 0;
};

struct Rates
{
    std::map<std::string, Rate> faults;
    Rate cleanWithFindings;
    Rate misread;
    Rate falsePatches;
    RepairResult repair;
    double seconds = 0;
};

class Trials
{
public:
    Trials(SimulatedChartSize const& theSize, ChartReference const& theChart, std::vector<LabColor> const& theColors,
           double theNoise, std::uint64_t seed, std::string const& theName, Rates& theRates)
        : size(theSize), chart(theChart), noise(theNoise), random(seed), name(theName), rates(theRates),
          orders(candidateOrders(theChart)), clean(simulatedReadings(theColors, {theNoise, drift}, random))
    {
    }

    void run()
    {
        runClean();
        runMisread();
        runFault("reversed", [](FaultMaker& maker) { maker.reverse(); });
        runFault("shifted", [](FaultMaker& maker) { maker.shift(); });
        runFault("exchanged", [](FaultMaker& maker) { maker.exchange(); });
        runFault("repeated", [](FaultMaker& maker) { maker.repeat(); });
        if (chart.sheetCount > 1)
            runFault("sheets", [](FaultMaker& maker) { maker.exchangeSheets(); });
        if (size.patches < 500)
            return;
        bool const withSheets = chart.sheetCount > 1 && random.even() < 0.3;
        runFault("three at once", [=](FaultMaker& maker) {
            if (withSheets)
                maker.exchangeSheets();
            for (int i = withSheets ? 1 : 0; i < 3; ++i)
                maker.addAny();
        });
    }

private:
    MeasurementCheck check(Readings const& readings) const
    {
        PairedMeasurement measurement;
        measurement.readings = readings;
        measurement.rows.resize(readings.size());
        measurement.isImpossible.resize(readings.size());
        return checkMeasurement(chart, measurement, orders);
    }

    void tell(char const* what, MeasurementCheck const& check) const
    {
        std::fprintf(stderr, "%s, %s: model %d, spread %.2f:", name.c_str(), what, check.explanation.model.tier,
                     check.explanation.model.spread);
        for (Finding const& finding : check.findings)
            std::fprintf(stderr, " [%s]", finding.text.c_str());
        std::fprintf(stderr, "\n");
    }

    void runClean()
    {
        MeasurementCheck result;
        rates.seconds = std::max(rates.seconds, secondsOf([&] { result = check(clean); }));
        ++rates.cleanWithFindings.all;
        rates.cleanWithFindings.found += result.findings.empty() ? 0U : 1U;
        if (!result.findings.empty())
            tell("clean", result);
        rates.falsePatches.all += clean.size();
        rates.falsePatches.found +=
            static_cast<std::size_t>(std::count(result.isMisread.begin(), result.isMisread.end(), true));
    }

    // A misreading may take a patch below L* = 0.
    bool isImpossible(MeasurementCheck const& result, std::size_t patch) const
    {
        return std::any_of(result.findings.begin(), result.findings.end(), [&](Finding const& finding) {
            return finding.kind == FindingKind::impossible && finding.patches[0] == chart.patches[patch].label;
        });
    }

    // One patch in a hundred is misread, by 12 to 24 delta E.
    void runMisread()
    {
        Readings readings = clean;
        std::vector<bool> isBad(readings.size());
        for (std::size_t const patch : random.some(readings.size() / 100 + 1, readings.size())) {
            LabColor direction{random.normal(), random.normal(), random.normal()};
            double const length = std::hypot(direction[0], direction[1], direction[2]);
            double const amount = misreading * (1 + random.even());
            isBad[patch] = true;
            LabColor lab = readings[patch].value_or(LabColor{});
            for (std::size_t k = 0; k < 3; ++k)
                lab[k] += amount * direction[k] / length;
            readings[patch] = lab;
        }
        MeasurementCheck const result = check(readings);
        for (std::size_t i = 0; i < readings.size(); ++i) {
            Rate& rate = isBad[i] ? rates.misread : rates.falsePatches;
            ++rate.all;
            rate.found += result.isMisread[i] || isImpossible(result, i) ? 1U : 0U;
        }
    }

    template <typename Make>
    void runFault(char const* kind, Make make)
    {
        FaultMaker maker(chart, clean, noise, random);
        make(maker);
        FaultyReadings const& faulty = maker.result;
        MeasurementCheck const result = check(faulty.stored);
        Rate& rate = rates.faults[kind];
        bool const isRight =
            countFound(chart, faulty, result.findings) == faulty.faults.size() &&
            static_cast<std::size_t>(std::count_if(result.findings.begin(), result.findings.end(),
                                                   [](Finding const& f) { return f.kind != FindingKind::patch; })) ==
                faulty.faults.size();
        ++rate.all;
        rate.found += isRight ? 1U : 0U;
        RepairResult const repair = judgeRepair(chart, faulty, result.places);
        rates.repair.right += repair.right;
        rates.repair.untouched += repair.untouched;
        rates.repair.wrong += repair.wrong;
        if (!isRight || repair.wrong > 0) {
            std::string what = kind;
            for (auto const& fault : faulty.faults)
                for (std::size_t const strip : fault.strips)
                    what += " " + chart.strips[strip].label;
            tell((what + (repair.wrong > 0 ? ", WRONG REPAIR" : "")).c_str(), result);
        }
    }

    SimulatedChartSize size;
    ChartReference const& chart;
    double noise;
    SimulationRandom random;
    std::string name;
    Rates& rates;
    std::vector<ReadingOrder> orders;
    Readings clean;
};

void runPrint(Print const& print, SimulatedChartSize const& size, int run, Rates& rates)
{
    std::uint64_t const seed = static_cast<std::uint64_t>(run) * 1000 +
                               static_cast<std::uint64_t>(&print - prints) * 20 +
                               static_cast<std::uint64_t>(&size - sizes);
    double const noise = noises[run % 3];
    std::string const name = std::string(std::strrchr(print.file, '/') + 1) + " " + std::to_string(size.patches) + "/" +
                             std::to_string(size.rows) + "/" + std::to_string(size.sheets) + " run " +
                             std::to_string(run);
    if (std::strstr(print.file, ".ti3")) {
        // The data have fewer patches than the largest charts.
        if (size.patches > 900)
            return;
        PressChart const press = pressChart(print.file, size, seed);
        Trials(size, press.chart, press.colors, noise, seed, name, rates).run();
        return;
    }
    SimulatedPrinter const printer(print.file, print.space, print.dotGain);
    if (!printer.isOpen()) {
        std::fprintf(stderr, "%s is not there: install the packages that ./dev lists\n", print.file);
        std::exit(1);
    }
    ChartReference const chart = simulatedChart(print.space, size, static_cast<std::uint64_t>(run));
    Trials(size, chart, printer.print(chart), noise, seed, name, rates).run();
}

// What is promised of each size, and of all sizes together.
constexpr double leastFaultsFound = 0.99;
constexpr double leastMisreadFound = 0.95; // from 900 patches on
constexpr double mostCleanWithFindings = 1.0 / 200;
constexpr double mostFalsePatches = 1.0 / 5000;
constexpr double mostSeconds = 1;

double share(Rate const& rate)
{
    return rate.all == 0 ? 0 : static_cast<double>(rate.found) / static_cast<double>(rate.all);
}

bool promise(bool isKept, char const* what)
{
    if (!isKept)
        std::fprintf(stderr, "broken: %s\n", what);
    return isKept;
}

bool areKept(SimulatedChartSize const& size, Rates const& rates)
{
    bool areKept = promise(rates.repair.wrong == 0, "no column is made worse by repair");
    for (auto const& [kind, rate] : rates.faults)
        areKept &= promise(rate.all == 0 || share(rate) >= leastFaultsFound, "99 % of the faults are found");
    if (size.patches >= 900)
        areKept &= promise(share(rates.misread) >= leastMisreadFound, "95 % of the misread patches are found");
    return areKept && promise(rates.seconds <= mostSeconds, "a check takes at most a second");
}

std::string percent(Rate const& rate)
{
    if (rate.all == 0)
        return "-";
    char text[40];
    std::snprintf(text, sizeof text, "%.1f %%", 100 * static_cast<double>(rate.found) / static_cast<double>(rate.all));
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    int const runs = argc > 1 ? std::atoi(argv[1]) : 12;
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    constexpr char const* kinds[] = {"reversed", "shifted", "exchanged", "repeated", "sheets", "three at once"};
    std::printf(
        "| patches | rows | sheets | reversed | shifted | exchanged | repeated | sheets exchanged | three at "
        "once | clean with findings | misread patches | false patches | wrong columns put right | made worse | s |\n");
    std::printf("|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n");
    bool isKept = true;
    Rate clean;
    Rate falsePatches;
    for (SimulatedChartSize const& size : sizes) {
        int const runsOfSize = size.patches > 2000 ? std::max(1, runs / 4) : runs;
        Rates rates;
        for (Print const& print : prints)
            for (int run = 0; run < runsOfSize; ++run)
                runPrint(print, size, run, rates);
        std::printf("| %zu | %d | %d |", size.patches, size.rows, size.sheets);
        for (char const* kind : kinds)
            std::printf(" %s |", percent(rates.faults[kind]).c_str());
        std::printf(
            " %zu of %zu | %s | %zu of %zu | %s | %zu | %.2f |\n", rates.cleanWithFindings.found,
            rates.cleanWithFindings.all, percent(rates.misread).c_str(), rates.falsePatches.found,
            rates.falsePatches.all,
            percent({rates.repair.right, rates.repair.right + rates.repair.untouched + rates.repair.wrong}).c_str(),
            rates.repair.wrong, rates.seconds);
        std::fflush(stdout);
        isKept &= areKept(size, rates);
        for (auto const& [sum, rate] :
             {std::pair(&clean, &rates.cleanWithFindings), {&falsePatches, &rates.falsePatches}}) {
            sum->found += rate->found;
            sum->all += rate->all;
        }
    }
    isKept &= promise(share(clean) <= mostCleanWithFindings, "1 clean measurement in 200 has findings");
    isKept &= promise(share(falsePatches) <= mostFalsePatches, "1 right patch in 5,000 counts as misread");
    return isKept ? 0 : 1;
}
