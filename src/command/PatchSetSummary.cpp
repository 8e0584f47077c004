// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSetSummary.h"

#include "Console.h"
#include "Json.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace
{

struct KindName
{
    PatchKind kind;
    char const* name;
    char const* words;
};

// In the order of the summary.
constexpr KindName kindNames[patchKindCount] = {
    {PatchKind::included, "included", "included"}, {PatchKind::white, "white", "white"},
    {PatchKind::corner, "corner", "at corners"},   {PatchKind::ramp, "ramp", "on ramps"},
    {PatchKind::neutral, "neutral", "neutral"},    {PatchKind::spread, "spread", "spread"},
};

double twoDecimals(double number)
{
    return std::round(number * 100) / 100;
}

std::string numberText(double number)
{
    char text[400];
    return {text, std::to_chars(text, std::end(text), twoDecimals(number)).ptr};
}

std::string kindsText(PatchSetSummary const& summary)
{
    std::string text;
    for (KindName const& named : kindNames)
        if (std::size_t const count = summary.counts[static_cast<std::size_t>(named.kind)]; count > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + named.words;
    return text;
}

std::string distanceText(FillDistance const& distance, char const* unit)
{
    return numberText(distance.mean) + unit + " on average, " + numberText(distance.nearlyLargest) + unit +
           " for 99 %, " + numberText(distance.largest) + unit + " at most";
}

Json distanceJson(FillDistance const& distance)
{
    Json json;
    json["mean"] = twoDecimals(distance.mean);
    json["percentile99"] = twoDecimals(distance.nearlyLargest);
    json["largest"] = twoDecimals(distance.largest);
    return json;
}

std::size_t patchesOf(PatchSetSummary const& summary)
{
    std::size_t all = 0;
    for (std::size_t const count : summary.counts)
        all += count;
    return all;
}

} // namespace

std::string textOf(PatchSetSummary const& summary)
{
    PatchSetSettings const& settings = summary.settings;
    std::string text = printable(summary.output.empty() ? "standard output" : summary.output) + "\n";
    auto const line = [&text](std::string const& label, std::string const& value) {
        text += "  " + label + std::string(label.size() < 13 ? 13 - label.size() : 1, ' ') + value + "\n";
    };
    line("patches",
         std::to_string(patchesOf(summary)) + " " + colorspace_names[settings.space] + ": " + kindsText(summary));
    if (settings.space == CMYK)
        line("sum of inks", "at most " + numberText(settings.wish.inkLimit) + " %");
    line("profile", summary.profile.empty() ? "the program's own" : printable(summary.profile));
    line("colours", distanceText(summary.fill.deltaE, " dE") + " from a patch");
    line("values", distanceText(summary.fill.device, " %") + " from a patch");
    if (settings.sheets > 0)
        line("sheets", std::to_string(settings.sheets) + " filled: " + printable(settings.chart.device.name) + ", " +
                           printable(settings.chart.paperName) + ", patches of " +
                           millimetres(settings.chart.patch.width) + " x " + millimetres(settings.chart.patch.height) +
                           " mm, gaps of " + millimetres(static_cast<double>(summary.gap)) + " mm");
    return text;
}

std::string jsonOf(PatchSetSummary const& summary)
{
    PatchSetSettings const& settings = summary.settings;
    Json json;
    json["file"] = summary.output.empty() ? Json(nullptr) : Json(summary.output);
    json["colorSpace"] = colorspace_names[settings.space];
    json["patches"] = patchesOf(summary);
    for (KindName const& named : kindNames)
        json["kinds"][named.name] = summary.counts[static_cast<std::size_t>(named.kind)];
    json["inkLimit"] = settings.space == CMYK ? Json(settings.wish.inkLimit) : Json(nullptr);
    json["profile"] = summary.profile.empty() ? Json(nullptr) : Json(summary.profile);
    json["round"] = settings.stepName;
    json["neutralWeight"] = settings.wish.neutralWeight;
    json["seed"] = settings.wish.seed;
    json["fillDistance"]["deltaE"] = distanceJson(summary.fill.deltaE);
    json["fillDistance"]["device"] = distanceJson(summary.fill.device);
    if (settings.sheets > 0) {
        json["fit"]["sheets"] = settings.sheets;
        json["fit"]["device"] = settings.chart.device.id;
        json["fit"]["paper"] = settings.chart.paperName;
        json["fit"]["patchSize"] = {settings.chart.patch.width, settings.chart.patch.height};
        json["fit"]["gap"] = summary.gap;
    }
    return textOf(json);
}
