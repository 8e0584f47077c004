// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartReference.h"
#include "Finding.h"
#include "support/SimulatedPrint.h"

#include <vector>

/// A measurement with faults that are known.
struct FaultyReadings
{
    /// A fault, as a finding would name it.
    struct Fault
    {
        FindingKind kind = FindingKind::reversed;
        std::vector<std::size_t> strips; // of the chart; those whose readings are wrong
        std::size_t of = 0;              // repeated: the strip that was read
        int by = 0;                      // shifted
    };

    Readings stored;                // as they are in the file
    std::vector<std::size_t> truth; // which patch each stored reading is the right one of; Assignment::nothing for none
    std::vector<Fault> faults;
};

/// Makes faults. Readings that stand twice differ by noise.
class FaultMaker
{
public:
    /// \param clean  the readings without faults
    FaultMaker(ChartReference const& chart, Readings const& clean, double noise, SimulationRandom& random);

    /// Exchanges two sheets. To be called before the others.
    void exchangeSheets();

    void reverse();
    void shift();
    void exchange();
    void repeat();

    /// One of the four, by chance.
    void addAny();

    FaultyReadings result;

private:
    std::size_t freeStrip();
    std::size_t sourceOf(std::size_t strip) const;
    std::optional<LabColor> again(std::optional<LabColor> const& reading);

    ChartReference const& chart;
    double deviation;
    SimulationRandom& random;
    std::vector<bool> isUsed;         // strips
    std::vector<std::size_t> sheetOf; // whose readings a sheet holds
};

/// How many of the faults are found and rightly named.
std::size_t countFound(ChartReference const& chart, FaultyReadings const& faulty, std::vector<Finding> const& findings);

/// What the repair of a measurement did to the strips with wrong readings.
struct RepairResult
{
    std::size_t right = 0;     // whose patches have their own readings again, as far as they were read
    std::size_t untouched = 0; // that are as they were read
    std::size_t wrong = 0;     // others, and strips that were right before
};

/// \param places  for each patch, where its reading stands
RepairResult judgeRepair(ChartReference const& chart, FaultyReadings const& faulty,
                         std::vector<std::size_t> const& places);
