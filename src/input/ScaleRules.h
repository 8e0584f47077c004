// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/ColorSpace.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// What a device value of full strength is in a table.
enum class DeviceScale : std::uint32_t { unknown = 0, one = 1, percent = 100, eightBit = 255, sixteenBit = 65535 };

/// The scale of a colour space in the plain table: percent for CMYK, 0 to 255 for RGB.
DeviceScale plainScaleOf(ColorSpace space);

/// What decides the scale of a table. An earlier one overrules those behind it.
enum class ScaleRule { option, statement, dialect, values };

/// What is known about the device values of a table.
struct ValueStatistics
{
    std::size_t count = 0;
    double highest = 0;
    bool hasFraction = false; // a value that is no whole number
    bool hasOnlyZeroAndOne = true;

    void add(double value);
};

/// What the scale of a table is told by.
struct ScaleEvidence
{
    ColorSpace space = undefined;
    DeviceScale option = DeviceScale::unknown; // what the user says
    std::string keyword = "MAX_DEVICE_VALUE";  // what states the scale
    std::string statement;                     // its value; empty without one
    bool hasPercentSigns = false;              // at every value
    std::string percentDialect;                // "CTI1"; empty for files that are not of a family in percent
    bool isPlain = false;                      // a plain table, or a kind of file that has its scales
    ValueStatistics values;
};

/// The scale of a table, or why there is none.
struct ScaleDecision
{
    DeviceScale scale = DeviceScale::unknown;
    ScaleRule rule = ScaleRule::values;
    std::string reason;  // "MAX_DEVICE_VALUE says 1"
    std::string warning; // what is doubtful about it; can be empty
    std::string refusal; // why there is no scale, and what to do
};

/// Decides the scale: by the option, else by what the file states, else by what its kind defines, else by the values
/// where they leave one reading. Values above the scale that its kind defines overrule it for RGB.
ScaleDecision decideScale(ScaleEvidence const& evidence);

/// The highest value that counts as full strength: numbers that were rounded on their way may lie a bit above.
double highestAllowed(DeviceScale scale);

/// "0 to 1", "percent", "0 to 255", "0 to 65535"
std::string nameOf(DeviceScale scale);
