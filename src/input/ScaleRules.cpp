// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScaleRules.h"

#include "DecimalText.h"
#include "TableMessages.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace
{

constexpr DeviceScale scales[] = {DeviceScale::one, DeviceScale::percent, DeviceScale::eightBit,
                                  DeviceScale::sixteenBit};

constexpr char const* remedy = "; say --scale 1, 100, 255 or 65535";

std::string shortest(double value)
{
    char digits[40];
    auto const result = std::to_chars(digits, digits + sizeof digits, value);
    return {digits, result.ptr};
}

ScaleDecision decided(DeviceScale scale, ScaleRule rule, std::string reason, std::string warning = {})
{
    return {scale, rule, std::move(reason), std::move(warning), {}};
}

ScaleDecision refused(std::string refusal)
{
    return {DeviceScale::unknown, ScaleRule::values, {}, {}, std::move(refusal)};
}

ScaleDecision byStatement(std::string const& keyword, std::string const& statement)
{
    ParsedNumber const number = parseNumber(statement);
    for (DeviceScale const scale : scales)
        if (number.form == NumberForm::point && number.value == static_cast<double>(scale))
            return decided(scale, ScaleRule::statement, keyword + " says " + shown(statement));
    return refused(keyword + " says " + excerpt(statement) + ", which is none of 1, 100, 255 and 65535" + remedy);
}

// RGB values above 100 in a table without a rule, or above what its kind defines.
ScaleDecision byHighValues(ValueStatistics const& values)
{
    std::string const highest = "the highest value is " + shortest(values.highest);
    if (values.highest <= highestAllowed(DeviceScale::eightBit))
        return decided(DeviceScale::eightBit, ScaleRule::values, highest);
    if (values.highest <= static_cast<double>(DeviceScale::sixteenBit) && !values.hasFraction)
        return decided(DeviceScale::sixteenBit, ScaleRule::values, highest,
                       "all values are whole and " + highest +
                           ": taken as 16 bit, 0 to 65535; say --scale where it is another");
    return refused(highest + ", which fits no scale: correct it" + remedy);
}

ScaleDecision byDialect(ScaleEvidence const& evidence)
{
    ValueStatistics const& values = evidence.values;
    DeviceScale const scale = DeviceScale::percent;
    std::string const reason = evidence.percentDialect.empty() ? "CMYK values are percentages"
                                                               : evidence.percentDialect + " files are in percent";
    if (evidence.space == RGB && values.highest > highestAllowed(scale)) {
        ScaleDecision decision = byHighValues(values);
        if (decision.scale == DeviceScale::eightBit)
            decision.warning =
                reason + ", but " + decision.reason + ": the values are taken as 0 to 255; say --scale 255 to confirm";
        return decision;
    }
    ScaleDecision decision = decided(scale, ScaleRule::dialect, reason);
    if (values.highest <= 1 && values.highest > 0)
        decision.warning = "the highest value is " + shortest(values.highest) + ", taken as " +
                           shortest(values.highest) + " percent; say --scale 1 if 1 is full strength";
    return decision;
}

ScaleDecision byValues(ValueStatistics const& values)
{
    DeviceScale const percent = DeviceScale::percent;
    constexpr double roundedPercent = 99.99;
    if (values.highest > highestAllowed(percent))
        return byHighValues(values);
    std::string const highest = "the highest value is " + shortest(values.highest);
    if (values.highest <= 1 && values.hasFraction)
        return decided(DeviceScale::one, ScaleRule::values, highest);
    if (values.highest >= roundedPercent && values.hasFraction)
        return decided(percent, ScaleRule::values, highest + " and there are fractions");
    return refused("the scale of the RGB values is unknown: " + highest + ", and nothing says what full strength is" +
                   remedy);
}

} // namespace

void ValueStatistics::add(double value)
{
    ++count;
    highest = std::max(highest, value);
    hasFraction = hasFraction || value != std::floor(value);
    hasOnlyZeroAndOne = hasOnlyZeroAndOne && (value == 0 || value == 1);
}

DeviceScale plainScaleOf(ColorSpace space)
{
    return space == CMYK ? DeviceScale::percent : DeviceScale::eightBit;
}

double highestAllowed(DeviceScale scale)
{
    return static_cast<double>(scale) * 1.0001;
}

std::string nameOf(DeviceScale scale)
{
    return scale == DeviceScale::percent ? "percent" : "0 to " + std::to_string(static_cast<std::uint32_t>(scale));
}

ScaleDecision decideScale(ScaleEvidence const& evidence)
{
    if (evidence.option != DeviceScale::unknown)
        return decided(evidence.option, ScaleRule::option,
                       "--scale " + std::to_string(static_cast<std::uint32_t>(evidence.option)));
    if (!evidence.statement.empty())
        return byStatement(evidence.keyword, evidence.statement);
    if (evidence.hasPercentSigns)
        return decided(DeviceScale::percent, ScaleRule::statement, "every value has a percent sign");
    if (evidence.isPlain)
        return decided(plainScaleOf(evidence.space), ScaleRule::dialect,
                       evidence.space == CMYK ? "CMYK is in percent there" : "RGB runs from 0 to 255 there");
    if (!evidence.percentDialect.empty())
        return byDialect(evidence);
    if (evidence.space == RGB)
        return byValues(evidence.values);
    if (evidence.values.hasOnlyZeroAndOne && evidence.values.highest > 0)
        return refused(std::string("the scale of the CMYK values is unknown: all are 0 or 1, which is full strength or "
                                   "one percent") +
                       remedy);
    return byDialect(evidence);
}
