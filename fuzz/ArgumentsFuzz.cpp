// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any words, one a line, as the command's arguments and a chart's settings.

#include "Fuzzing.h"
#include "command/ChartSettings.h"
#include "command/PatchSetSettings.h"
#include "command/TableFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>

namespace
{

void requireWrongUse(WrongUse const& wrong)
{
    require(!wrong.text.empty(), "wrong use is told");
}

bool isLength(double length)
{
    return std::isfinite(length) && length >= 0;
}

void requireSettings(ChartSettings const& settings)
{
    RealSize const smallest = settings.device.values.minPatchSize;
    require(settings.patch.width >= smallest.width && settings.patch.height >= smallest.height,
            "a patch can be measured");
    require(isLength(settings.patch.width) && isLength(settings.patch.height), "a patch has a size");
    RealRect const content = settings.sheet.getContent();
    require(isLength(content.x) && isLength(content.y), "margins are lengths");
    require(content.width > 0 && content.height > 0, "a sheet has room");
    require(!settings.name.empty() && settings.name.find('/') == std::string::npos, "a name is one of a folder");
    require(!settings.kinds.empty(), "a chart has sheets");
    require(settings.order.effort >= 1, "an effort is at least 1");
}

void requirePatchSet(PatchSetArguments const& arguments)
{
    auto const result = patchSetSettings(arguments, builtInChoices());
    if (auto const* wrong = std::get_if<WrongUse>(&result)) {
        requireWrongUse(*wrong);
        return;
    }
    auto const& settings = std::get<PatchSetSettings>(result);
    PatchSetWish const& wish = settings.wish;
    require((wish.patches > 0) != (settings.sheets > 0), "patches or sheets are wished");
    require(wish.patches <= PatchSetWish::mostPatches, "a table has no more patches than it may");
    require(wish.inkLimit >= PatchSetWish::leastInkLimit && wish.inkLimit <= 400, "an ink limit can be kept");
    require(wish.neutralWeight >= 1 && wish.neutralWeight <= 10, "a weight is in its range");
    require(wish.whites.value_or(0) >= 0 && wish.ramps.value_or(0) >= 0 && wish.neutrals.value_or(0) >= 0,
            "counts are not negative");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string text(reinterpret_cast<char const*>(data), size);
    std::replace(text.begin(), text.end(), '\0', '?'); // no argument has one
    std::vector<std::string> words;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        words.push_back(line);

    Arguments const arguments = parseArguments(words);
    if (auto const* wrong = std::get_if<WrongUse>(&arguments))
        requireWrongUse(*wrong);
    if (auto const* information = std::get_if<Information>(&arguments))
        require(!information->text.empty(), "information is told");
    if (auto const* table = std::get_if<PatchSetArguments>(&arguments))
        requirePatchSet(*table);
    auto const* chart = std::get_if<ChartArguments>(&arguments);
    if (!chart)
        return 0;
    auto const settings = chartSettings(*chart, builtInChoices());
    if (auto const* wrong = std::get_if<WrongUse>(&settings))
        requireWrongUse(*wrong);
    else
        requireSettings(std::get<ChartSettings>(settings));
    if (auto const options = importOptions(chart->table); auto const* wrong = std::get_if<WrongUse>(&options))
        requireWrongUse(*wrong);
    return 0;
}
