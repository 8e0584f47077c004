// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ListCommand.h"

#include "ChartSettings.h"
#include "Console.h"
#include "Json.h"

#include <algorithm>
#include <vector>

namespace
{

constexpr char const* scanNames[] = {"none", "rows", "columns"};

using Row = std::vector<std::string>;

// How many characters a terminal shows of UTF-8: continuation bytes do not count.
std::size_t widthOf(std::string const& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string tableOf(std::vector<Row> const& rows)
{
    std::vector<std::size_t> widths(rows.front().size());
    for (Row const& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    std::string text;
    for (Row const& row : rows) {
        for (std::size_t i = 0; i + 1 < row.size(); ++i)
            text += row[i] + std::string(widths[i] - widthOf(row[i]) + 2, ' ');
        text += row.back() + "\n";
    }
    return text;
}

std::string bothText(double across, double up)
{
    return millimetres(across) + "x" + millimetres(up);
}

// A width or height of 0 is not bounded.
std::string reachText(InstrumentPreset const& device)
{
    auto const lengthText = [](double length) { return length > 0 ? millimetres(length) : std::string("any"); };
    return lengthText(device.content.width) + "x" + lengthText(device.content.height);
}

std::string devicesText(Choices const& choices)
{
    std::vector<Row> rows{
        {"DEVICE", "NAME", "SCAN", "REACH", "PATCH", "ABOVE", "BELOW", "GAP", "WITHIN REACH", "FROM"}};
    for (DeviceChoice const& device : choices.devices) {
        InstrumentPreset const& values = device.values;
        rows.push_back({device.id, printable(device.name), scanNames[values.scanDirection], reachText(values),
                        bothText(values.minPatchSize.width, values.minPatchSize.height),
                        millimetres(values.minMargin.top), millimetres(values.minMargin.bottom),
                        millimetres(std::max(values.gap.width, values.gap.height)), values.mustFit ? "yes" : "no",
                        printable(device.origin)});
    }
    return tableOf(rows);
}

std::string papersText(Choices const& choices)
{
    std::vector<Row> rows{{"PAPER", "NAME", "SIZE", "MARGINS", "FROM"}};
    for (PaperChoice const& paper : choices.papers) {
        RealBorder const margins = marginsOf(paper.sheet);
        rows.push_back({paper.id, printable(paper.name),
                        bothText(paper.sheet.getSize().width, paper.sheet.getSize().height),
                        millimetres(margins.top) + "," + millimetres(margins.right) + "," +
                            millimetres(margins.bottom) + "," + millimetres(margins.left),
                        printable(paper.origin)});
    }
    return tableOf(rows);
}

Json deviceJson(DeviceChoice const& device)
{
    InstrumentPreset const& values = device.values;
    return {{"id", device.id},
            {"name", device.name},
            {"scan", scanNames[values.scanDirection]},
            {"reach", {values.content.width, values.content.height}},
            {"corner", {values.content.x, values.content.y}},
            {"smallestPatch", {values.minPatchSize.width, values.minPatchSize.height}},
            {"spaceAbove", values.minMargin.top},
            {"spaceBelow", values.minMargin.bottom},
            {"gap", std::max(values.gap.width, values.gap.height)},
            {"withinReach", values.mustFit},
            {"origin", device.origin}};
}

Json paperJson(PaperChoice const& paper)
{
    RealSize const size = paper.sheet.getSize();
    RealBorder const margins = marginsOf(paper.sheet);
    return {{"id", paper.id},
            {"name", paper.name},
            {"size", {size.width, size.height}},
            {"margins", {margins.top, margins.right, margins.bottom, margins.left}},
            {"origin", paper.origin}};
}

bool wants(ListArguments const& arguments, char const* what)
{
    return arguments.what.empty() || arguments.what == what;
}

} // namespace

std::string listText(Choices const& choices, ListArguments const& arguments)
{
    std::string text;
    if (wants(arguments, "devices"))
        text += devicesText(choices);
    if (wants(arguments, "papers"))
        text += (text.empty() ? "" : "\n") + papersText(choices);
    return text + "Lengths are in mm. Margins are top, right, bottom, left.\n";
}

std::string listJson(Choices const& choices, ListArguments const& arguments)
{
    Json json;
    if (wants(arguments, "devices")) {
        json["devices"] = Json::array();
        for (DeviceChoice const& device : choices.devices)
            json["devices"].push_back(deviceJson(device));
    }
    if (wants(arguments, "papers")) {
        json["papers"] = Json::array();
        for (PaperChoice const& paper : choices.papers)
            json["papers"].push_back(paperJson(paper));
    }
    return textOf(json);
}
