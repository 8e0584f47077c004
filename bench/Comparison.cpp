// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <vector>

#include <benchmark/benchmark.h>

namespace
{

constexpr double longestComparison = 10; // s
constexpr int fewestRuns = 3;
constexpr int mostRuns = 25;

double now(Clock clock)
{
    timespec time{};
    clock_gettime(clock == Clock::processor ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double median(std::vector<double> times)
{
    auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// Keeps the times of all runs, by the name of the side.
class TimeKeeper : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(Context const&) override { return true; }

    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(run.real_accumulated_time);
    }

    std::map<std::string, std::vector<double>> times;
};

// In random order, so that neither side always finds the other's data in the caches.
void interleaveRuns()
{
    char program[] = "bench";
    char flag[] = "--benchmark_enable_random_interleaving=true";
    char* arguments[] = {program, flag, nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);
}

void registerSide(char const* name, Side const& side, Clock clock, int runs)
{
    benchmark::RegisterBenchmark(name,
                                 [&side, clock](benchmark::State& state) {
                                     for ([[maybe_unused]] auto iteration : state) {
                                         side.prepare();
                                         state.SetIterationTime(secondsOf(side.work, clock));
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(runs);
}

// How many runs fit the time. `once` is the time of one run.
int runsWithin(double seconds, double once)
{
    return std::clamp(static_cast<int>(std::min<double>(seconds / once, mostRuns)), 1, mostRuns);
}

std::string numberText(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", number < 10 ? 2 : number < 100 ? 1 : 0, number);
    return text;
}

std::string boundText(double bound)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", bound);
    return text;
}

std::string durationText(double seconds)
{
    if (seconds < 1e-3)
        return numberText(seconds * 1e6) + " us";
    return seconds < 1 ? numberText(seconds * 1e3) + " ms" : numberText(seconds) + " s";
}

void printCells(std::string const& work, std::string const& size, std::string const& baseline, std::string const& ours,
                std::string const& ratio, std::string const& promise)
{
    std::printf("| %-44s | %-14s | %9s | %9s | %19s | %-24s |\n", work.c_str(), size.c_str(), baseline.c_str(),
                ours.c_str(), ratio.c_str(), promise.c_str());
    std::fflush(stdout);
}

bool areAllKept = true;

std::string verdict(bool isKept)
{
    areAllKept = areAllKept && isKept;
    return isKept ? ", kept" : ", MISSED";
}

std::string promiseText(Times const& times, Promise const& promise)
{
    switch (promise.kind) {
    case Promise::timesAsFast:
        return "at least " + boundText(promise.bound) + verdict(times.baseline / times.ours >= promise.bound);
    case Promise::timesAsLong:
        return "at most " + boundText(promise.bound) + verdict(times.ours / times.baseline <= promise.bound);
    case Promise::secondsLonger:
        break;
    }
    return "at most +" + durationText(promise.bound) + verdict(times.ours - times.baseline <= promise.bound);
}

} // namespace

double secondsOf(Work const& work, Clock clock)
{
    double const start = now(clock);
    work();
    return now(clock) - start;
}

Times compare(Side const& baseline, Side const& ours, Clock clock)
{
    auto const runOnce = [clock](Side const& side) {
        side.prepare();
        return secondsOf(side.work, clock);
    };
    double const baselineOnce = runOnce(baseline);
    double const oursOnce = runOnce(ours);
    int const runs = runsWithin(longestComparison, baselineOnce + oursOnce);
    // Ours runs several times even when the baseline is slow.
    int const ourRuns = std::max(runs, std::min(fewestRuns, runsWithin(longestComparison, oursOnce)));
    bool const isBaselineTooSlow = baselineOnce > longestComparison;

    interleaveRuns();
    benchmark::ClearRegisteredBenchmarks();
    if (!isBaselineTooSlow)
        registerSide("baseline", baseline, clock, runs);
    registerSide("ours", ours, clock, ourRuns);
    TimeKeeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);
    return {isBaselineTooSlow ? baselineOnce : median(keeper.times["baseline"]), median(keeper.times["ours"])};
}

void printRow(std::string const& work, std::string const& size, Times const& times, Promise const& promise)
{
    bool const isSpeed = promise.kind == Promise::timesAsFast;
    double const ratio = isSpeed ? times.baseline / times.ours : times.ours / times.baseline;
    printCells(work, size, durationText(times.baseline), durationText(times.ours),
               numberText(ratio) + (isSpeed ? " times as fast" : " times as long"),
               promise.bound > 0 ? promiseText(times, promise) : "");
}

void printRow(std::string const& work, std::string const& size, double measured, std::string const& unit, double most)
{
    printCells(work, size, "", numberText(measured) + " " + unit, "",
               "at most " + boundText(most) + verdict(measured <= most));
}

int exitStatus()
{
    return areAllKept ? 0 : 1;
}
