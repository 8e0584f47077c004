// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

/// Which clock measures a work: the processor's time, which other programs on the machine hardly change, or the time of
/// day, for work that waits for a disk or a display.
enum class Clock { processor, wall };

using Work = std::function<void()>;

/// Seconds that a work takes.
double secondsOf(Work const& work, Clock clock = Clock::processor);

/// One side of a comparison.
struct Side
{
    Work work;
    /// Runs before each run of the work and is not timed.
    Work prepare = [] {};
};

/// The median time of each work, s.
struct Times
{
    double baseline;
    double ours;
};

/// Times two works. Each runs up to 25 times, in random order, so that a slow minute of the machine affects both alike.
/// Works that take seconds run fewer times. The first run of each is not counted, except for a baseline that takes more
/// than ten seconds: it runs only once.
Times compare(Side const& baseline, Side const& ours, Clock clock = Clock::processor);

/// What is promised about two times: at least `bound` times the baseline's speed, at most `bound` times its duration,
/// or at most `bound` seconds more. 0 is no promise.
struct Promise
{
    enum Kind { timesAsFast, timesAsLong, secondsLonger } kind = timesAsLong;
    double bound = 0;
};

// ./dev bench prints the table's head.

/// Prints a row of the table: the work, the size of its chart, both times, their ratio, and whether the promise is
/// kept.
void printRow(std::string const& work, std::string const& size, Times const& times, Promise const& promise = {});

/// Prints a row about something other than time; at most `most` is promised.
void printRow(std::string const& work, std::string const& size, double measured, std::string const& unit, double most);

/// What the program ends with: 0 when every row so far keeps its promise, else 1.
int exitStatus();
