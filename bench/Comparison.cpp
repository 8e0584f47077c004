// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace
{

constexpr double longestComparison = 10; // s
constexpr std::size_t fewestRuns = 3;
constexpr std::size_t mostRuns = 25;

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
    std::printf("| %-44s | %-14s | %9s | %9s | %19s | %-21s |\n", work.c_str(), size.c_str(), baseline.c_str(),
                ours.c_str(), ratio.c_str(), promise.c_str());
    std::fflush(stdout);
}

std::string verdict(bool isKept)
{
    return isKept ? ", kept" : ", MISSED";
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
    auto const run = [clock](Side const& side) {
        side.prepare();
        return secondsOf(side.work, clock);
    };
    std::vector<double> baselineTimes;
    std::vector<double> ourTimes;
    double spent = 0;
    while (baselineTimes.size() < mostRuns && spent < longestComparison) {
        baselineTimes.push_back(run(baseline));
        ourTimes.push_back(run(ours));
        spent += baselineTimes.back() + ourTimes.back();
    }
    // Where only the baseline is slow.
    while (ourTimes.size() < fewestRuns && ourTimes.back() < longestComparison)
        ourTimes.push_back(run(ours));
    return {median(baselineTimes), median(ourTimes)};
}

void printRow(std::string const& work, std::string const& size, Times const& times, Promise const& promise)
{
    bool const isSpeed = promise.kind == Promise::timesAsFast;
    double const ratio = isSpeed ? times.baseline / times.ours : times.ours / times.baseline;
    std::string promiseText;
    if (promise.bound > 0)
        promiseText = (isSpeed ? "at least " : "at most ") + boundText(promise.bound) +
                      verdict(isSpeed ? ratio >= promise.bound : ratio <= promise.bound);
    printCells(work, size, durationText(times.baseline), durationText(times.ours),
               numberText(ratio) + (isSpeed ? " times as fast" : " times as long"), promiseText);
}

void printRow(std::string const& work, std::string const& size, double measured, std::string const& unit, double most)
{
    printCells(work, size, "", numberText(measured) + " " + unit, "",
               "at most " + boundText(most) + verdict(measured <= most));
}
