// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What can be wrong with a measurement.
enum class FindingKind {
    reversed,   // a column was read backwards
    shifted,    // from some row on, the readings of a column belong to patches before or behind their own
    exchanged,  // columns hold each other's readings
    repeated,   // a column holds a second reading of another one
    sheets,     // sheets hold each other's readings
    order,      // the whole table is in another order
    patch,      // a patch was misread
    missing,    // a patch has no reading
    extra,      // a reading belongs to no patch
    impossible, // a reading that no colour can have
    paper,      // bare paper differs between sheets
    drift,      // the colour drifts along the reading
    repeats     // readings of the same device values differ too much
};

/// "reversed", "shifted" and so on.
std::string_view nameOf(FindingKind kind);

/// One thing that is wrong, where, and how sure that is.
struct Finding
{
    FindingKind kind = FindingKind::patch;
    std::vector<std::string> columns; // labels as printed: "C"
    std::vector<std::string> patches; // "C12"
    std::string of;                   // repeated: the column that was read in place of this one
    int by = 0;                       // shifted: how many patches behind their own places the readings stand
    std::size_t sheet = 0;            // from 1; 0 for several
    std::size_t measurement = 0;      // index of the measurement

    /// 1 less the probability that the finding is wrong. Column faults are compared with a right reading by Bayes'
    /// rule. Single patches: the chance that any right reading of a chart of this size lies as far off. What is
    /// counted, not judged, is certain: 1.
    double certainty = 1;

    std::string text; // one line
};

/// What is wrong with a reading: "L* is -12.5, outside 0 to 110".
std::string impossibleLightness(double lightness);
