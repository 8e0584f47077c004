// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSetSettings.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace
{

// The number that is all of a text.
template <typename Number>
std::optional<Number> numberOf(std::string const& text)
{
    Number number = 0;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

struct StepName
{
    char const* name;
    ValueStep step;
};

constexpr StepName stepNames[] = {{"1", ValueStep::whole}, {"0.1", ValueStep::tenth}, {"8bit", ValueStep::eightBit}};

constexpr int mostSteps = 1000;
constexpr int mostSheets = 1000;
constexpr double mostInk = 400;
constexpr double mostNeutralWeight = 10;

// Collects the settings, or the first reason why they cannot be used.
class Settings
{
public:
    Settings(PatchSetArguments const& patchSetArguments, Choices const& allChoices)
        : arguments(patchSetArguments), choices(allChoices)
    {
    }

    std::variant<PatchSetSettings, WrongUse> read()
    {
        readSpace();
        readCount();
        readInkLimit();
        readStep();
        auto const most = static_cast<int>(PatchSetWish::mostPatches);
        readOptional("--whites", arguments.whites, most, settings.wish.whites);
        readOptional("--neutrals", arguments.neutrals, mostSteps, settings.wish.neutrals);
        readOptional("--ramps", arguments.ramps, mostSteps, settings.wish.ramps);
        readNeutralWeight();
        readSeed();
        return fault ? std::variant<PatchSetSettings, WrongUse>(*fault) : settings;
    }

private:
    void fail(std::string text)
    {
        if (!fault)
            fault = WrongUse{std::move(text)};
    }

    void readSpace()
    {
        if (arguments.space == "cmyk")
            settings.space = CMYK;
        else if (arguments.space == "rgb")
            settings.space = RGB;
        else
            fail("--space: \"" + arguments.space + "\" is not cmyk or rgb");
    }

    // A whole number from a least to a most.
    std::optional<int> readNumber(std::string const& option, std::string const& text, int least, int most)
    {
        auto const number = numberOf<int>(text);
        if (number && *number >= least && *number <= most)
            return number;
        fail(option + ": \"" + text + "\" is no whole number from " + std::to_string(least) + " to " +
             std::to_string(most));
        return std::nullopt;
    }

    void readOptional(std::string const& option, std::string const& text, int most, std::optional<int>& value)
    {
        if (!text.empty())
            value = readNumber(option, text, 0, most);
    }

    void readCount()
    {
        if (arguments.patches.empty() == arguments.fit.empty()) {
            fail(arguments.fit.empty() ? "say how many patches: give --patches N or --fit SHEETS"
                                       : "--fit: the sheets say how many patches; leave out --patches");
            return;
        }
        if (arguments.fit.empty()) {
            auto const most = static_cast<int>(PatchSetWish::mostPatches);
            settings.wish.patches =
                static_cast<std::size_t>(readNumber("--patches", arguments.patches, 1, most).value_or(0));
            return;
        }
        settings.sheets = readNumber("--fit", arguments.fit, 1, mostSheets).value_or(0);
        ChartArguments chart;
        chart.device = arguments.device;
        chart.paper = arguments.paper;
        chart.margins = arguments.margins;
        chart.patch = arguments.patch;
        chart.name = "table";
        auto result = chartSettings(chart, choices);
        if (WrongUse const* const wrong = std::get_if<WrongUse>(&result))
            fail(wrong->text);
        else
            settings.chart = std::get<ChartSettings>(std::move(result));
    }

    void readInkLimit()
    {
        if (arguments.inkLimit.empty())
            return;
        if (settings.space == RGB) {
            fail("--ink-limit: only cmyk has inks to limit; leave it out");
            return;
        }
        auto const limit = numberOf<double>(arguments.inkLimit);
        if (!limit || !std::isfinite(*limit))
            fail("--ink-limit: \"" + arguments.inkLimit + "\" is no percentage");
        else if (*limit < PatchSetWish::leastInkLimit)
            fail("--ink-limit: " + arguments.inkLimit + " % leaves no full ink; give 100 to 400");
        else if (*limit > mostInk)
            fail("--ink-limit: four inks are 400 % at most; give 100 to 400");
        else
            settings.wish.inkLimit = *limit;
    }

    void readStep()
    {
        std::string const usual = settings.space == RGB ? "8bit" : "0.1";
        settings.stepName = arguments.rounding.empty() ? usual : arguments.rounding;
        for (StepName const& named : stepNames)
            if (settings.stepName == named.name) {
                settings.wish.step = named.step;
                return;
            }
        fail("--round: \"" + arguments.rounding + "\" is not 1, 0.1 or 8bit");
    }

    void readNeutralWeight()
    {
        auto const weight = numberOf<double>(arguments.neutralWeight);
        if (weight && *weight >= 1 && *weight <= mostNeutralWeight)
            settings.wish.neutralWeight = *weight;
        else
            fail("--neutral-weight: \"" + arguments.neutralWeight + "\" is no number from 1 to 10");
    }

    void readSeed()
    {
        if (auto const seed = numberOf<std::uint64_t>(arguments.seed))
            settings.wish.seed = *seed;
        else
            fail("--seed: \"" + arguments.seed + "\" is no whole number from 0 to " +
                 std::to_string(std::numeric_limits<std::uint64_t>::max()));
    }

    PatchSetArguments const& arguments;
    Choices const& choices;
    PatchSetSettings settings{};
    std::optional<WrongUse> fault;
};

} // namespace

std::variant<PatchSetSettings, WrongUse> patchSetSettings(PatchSetArguments const& arguments, Choices const& choices)
{
    return Settings(arguments, choices).read();
}
