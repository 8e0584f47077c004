// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

/// What a work's time is taken by: the processor's time, which other programs on the machine hardly change, or the time
/// of day, for work that waits for a disk or a display.
enum class Clock { processor, wall };

using Work = std::function<void()>;

/// Seconds that a work takes.
double secondsOf(Work const& work, Clock clock = Clock::processor);

/// One side of a comparison.
struct Side
{
    Work work;
    /// Comes before each run of the work and is not timed.
    Work prepare = [] {};
};

/// What two works took in the middle of their runs, s.
struct Times
{
    double baseline;
    double ours;
};

/// Times two works, several runs each in mixed order, so that a slow minute of the machine meets both alike. Works that
/// take seconds run fewer times. What comes first is run once beforehand and not counted, but for a baseline that takes
/// more than ten seconds: it runs only that once.
Times compare(Side const& baseline, Side const& ours, Clock clock = Clock::processor);

/// What is promised about two times: at least so many times the baseline's speed, or at most so many times its
/// duration. 0 is no promise.
struct Promise
{
    enum Kind { timesAsFast, timesAsLong } kind = timesAsLong;
    double bound = 0;
};

// The table's head is printed by whoever runs the benchmarks one after the other.

/// Prints a row of the table: what was done, to how much, both times, and their ratio beside the promised one.
void printRow(std::string const& work, std::string const& size, Times const& times, Promise const& promise = {});

/// Prints a row about something that is not time, of which at most so much is promised.
void printRow(std::string const& work, std::string const& size, double measured, std::string const& unit, double most);
