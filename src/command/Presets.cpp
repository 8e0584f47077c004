// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Presets.h"

#include "TableFile.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <utility>

#include <toml++/toml.h>

namespace
{

// Longer than any sheet, and short enough for single precision.
constexpr double longest = 100000;

// Carries the first fault through the reading of a file.
class Reader
{
public:
    Reader(Choices& allChoices, std::string filePath) : choices(allChoices), path(std::move(filePath)) {}

    std::optional<PresetsFault> read(std::string const& text)
    {
        try {
            readChoices(toml::parse(text));
        } catch (toml::parse_error const& error) {
            fail(error.source().begin, std::string(error.description()));
        }
        return fault;
    }

private:
    void readChoices(toml::table const& table)
    {
        refuseUnknown(table, {"device", "paper"});
        eachOf(table, "device", [this](toml::table const& one) { readDevice(one); });
        eachOf(table, "paper", [this](toml::table const& one) { readPaper(one); });
    }

    void fail(toml::source_position const& place, std::string const& text)
    {
        if (!fault)
            fault = PresetsFault{path + ":" + std::to_string(place.line) + ": " + text};
    }

    void fail(toml::node const& node, std::string const& text) { fail(node.source().begin, text); }

    void refuseUnknown(toml::table const& table, std::initializer_list<std::string_view> known)
    {
        for (auto&& [key, value] : table) {
            bool isKnown = false;
            for (std::string_view const name : known)
                isKnown = isKnown || key.str() == name;
            if (!isKnown)
                fail(key.source().begin, "\"" + std::string(key.str()) + "\" is no name of a setting here");
        }
    }

    template <typename Use>
    void eachOf(toml::table const& table, std::string_view key, Use const& use)
    {
        toml::node const* const node = table.get(key);
        if (!node)
            return;
        toml::array const* const all = node->as_array();
        if (!all || !all->is_homogeneous<toml::table>()) {
            fail(*node, "write [[" + std::string(key) + "]] before each " + std::string(key));
            return;
        }
        for (toml::node const& one : *all)
            use(*one.as_table());
    }

    std::string textOf(toml::table const& table, std::string_view key, char const* byDefault = nullptr)
    {
        toml::node const* const node = table.get(key);
        if (!node) {
            if (!byDefault)
                fail(table, std::string(key) + " is missing");
            return byDefault ? byDefault : "";
        }
        std::optional<std::string> const text = node->value_exact<std::string>();
        if (!text)
            fail(*node, std::string(key) + " must be a text in quotes");
        return text.value_or("");
    }

    // Lengths in mm, from `least` on.
    template <std::size_t count>
    std::array<double, count> lengthsOf(toml::table const& table, std::string_view key, double least,
                                        std::optional<std::array<double, count>> byDefault = std::nullopt)
    {
        std::array<double, count> lengths{};
        toml::node const* const node = table.get(key);
        if (!node) {
            if (!byDefault)
                fail(table, std::string(key) + " is missing");
            return byDefault.value_or(lengths);
        }
        toml::array const* const all = node->as_array();
        if (!all || all->size() != count) {
            fail(*node, std::string(key) + " must be a list of " + std::to_string(count) + " numbers");
            return lengths;
        }
        for (std::size_t i = 0; i < count; ++i)
            lengths[i] = lengthOf(*all->get(i), key, least);
        return lengths;
    }

    double lengthOf(toml::node const& node, std::string_view key, double least)
    {
        std::optional<double> const number = node.value<double>();
        bool const isNumber = number && node.is_number() && std::isfinite(*number);
        if (!isNumber)
            fail(node, std::string(key) + " must be a number of mm");
        else if (*number < least || *number > longest || (least == 0 && std::signbit(*number) && *number != 0))
            fail(node, std::string(key) + " must be between " + (least > 0 ? "0.1" : "0") + " and 100000 mm");
        return isNumber ? *number : 0;
    }

    double lengthOf(toml::table const& table, std::string_view key, double byDefault)
    {
        toml::node const* const node = table.get(key);
        return node ? lengthOf(*node, key, 0) : byDefault;
    }

    bool flagOf(toml::table const& table, std::string_view key)
    {
        toml::node const* const node = table.get(key);
        if (!node)
            return false;
        std::optional<bool> const flag = node->value_exact<bool>();
        if (!flag)
            fail(*node, std::string(key) + " must be true or false");
        return flag.value_or(false);
    }

    // A name that no other choice has, nor its id.
    template <typename Find>
    std::string newName(toml::table const& table, Find const& find)
    {
        std::string name = textOf(table, "name");
        if (fault)
            return name;
        if (idOf(name).empty())
            fail(*table.get("name"), "name must have a letter from a to z or a digit");
        else if (find(name) || find(idOf(name)))
            fail(*table.get("name"), "\"" + name + "\" is the name of another choice; choose a name of its own");
        return name;
    }

    ScanDirection scanOf(toml::table const& table)
    {
        std::string const text = textOf(table, "scan");
        if (text == "rows")
            return alongX;
        if (text == "columns")
            return alongY;
        if (text != "none" && !fault)
            fail(*table.get("scan"), R"(scan must be "none", "rows" or "columns")");
        return none;
    }

    void readDevice(toml::table const& table)
    {
        refuseUnknown(table, {"name", "scan", "reach", "corner", "smallest-patch", "space-above", "space-below", "gap",
                              "within-reach"});
        std::string const name = newName(table, [this](std::string const& text) { return choices.device(text); });
        ScanDirection const scan = scanOf(table);
        auto const reach = lengthsOf<2>(table, "reach", 0);
        auto const corner = lengthsOf<2>(table, "corner", 0, std::array{0.0, 0.0});
        auto const patch = lengthsOf<2>(table, "smallest-patch", 0.1);
        double const above = lengthOf(table, "space-above", 0);
        double const below = lengthOf(table, "space-below", 0);
        double const gap = lengthOf(table, "gap", scan == none ? 0 : 1);
        bool const isWithin = flagOf(table, "within-reach");
        bool const hasReach =
            (reach[0] > 0 || (scan == alongY && !isWithin)) && (reach[1] > 0 || (scan == alongX && !isWithin));
        if (!fault && !hasReach)
            fail(*table.get("reach"), "reach must be above 0 mm where it bounds the chart");
        if (fault)
            return;
        InstrumentPreset const values{"",
                                      {corner[0] + reach[0], corner[1] + reach[1]},
                                      {corner[0], corner[1], reach[0], reach[1]},
                                      {above, 0, below, 0},
                                      {patch[0], patch[1]},
                                      {scan == alongY ? 0 : gap, scan == alongX ? 0 : gap},
                                      isWithin,
                                      scan == none,
                                      scan};
        choices.devices.push_back({idOf(name), name, values, path});
    }

    void readPaper(toml::table const& table)
    {
        refuseUnknown(table, {"name", "size", "margins"});
        std::string const name = newName(table, [this](std::string const& text) { return choices.paper(text); });
        auto const size = lengthsOf<2>(table, "size", 0.1);
        auto const [top, right, bottom, left] = lengthsOf<4>(table, "margins", 0, std::array{0.0, 0.0, 0.0, 0.0});
        bool const hasRoom = left + right < size[0] && top + bottom < size[1];
        if (!fault && !hasRoom)
            fail(*table.get("margins"), "margins leave nothing of the paper");
        if (fault)
            return;
        PageLayout sheet;
        sheet.setSize({size[0], size[1]});
        sheet.setContent({left, bottom, size[0] - left - right, size[1] - bottom - top});
        choices.papers.push_back({idOf(name), name, sheet, path});
    }

    Choices& choices;
    std::string path;
    std::optional<PresetsFault> fault;
};

} // namespace

std::optional<PresetsFault> addPresets(Choices& choices, std::string const& text, std::string const& path)
{
    Choices extended = choices;
    auto fault = Reader(extended, path).read(text);
    if (!fault)
        choices = std::move(extended);
    return fault;
}

std::string userPresetsPath()
{
    auto const folderOf = [](char const* variable) {
        char const* const value = std::getenv(variable);
        // The configuration folder must be absolute; others are to be ignored.
        return std::string(value && *value == '/' ? value : "");
    };
    std::string const home = folderOf("HOME");
    std::string folder = folderOf("XDG_CONFIG_HOME");
    if (folder.empty() && !home.empty())
        folder = home + "/.config";
    return folder.empty() ? "" : folder + "/patchloom/presets.toml";
}

std::optional<PresetsFault> addPresetsFile(Choices& choices, std::string const& path)
{
    std::string const file = path.empty() ? userPresetsPath() : path;
    if (file.empty() || (path.empty() && !isThere(file)))
        return std::nullopt;
    constexpr std::size_t mostBytes = 1 << 20;
    FileContents contents = readFile(file, mostBytes);
    if (!contents.error.empty())
        return PresetsFault{file + ": " + contents.error};
    return addPresets(choices, contents.bytes, file);
}
