// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Choices.h"

#include "layout/SheetAxis.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace
{

// The instruments' ids, in the order of their presets.
constexpr char const* deviceIds[] = {"gb-spot", "gb-scan", "standard-ruler", "long-ruler"};
static_assert(std::size(deviceIds) == std::size(instrumentPresets));

constexpr char builtIn[] = "built in";

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSameInAnyCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

template <typename Choice>
Choice const* find(std::vector<Choice> const& choices, std::string_view name)
{
    auto const found = std::find_if(choices.begin(), choices.end(), [name](Choice const& choice) {
        return isSameInAnyCase(choice.id, name) || isSameInAnyCase(choice.name, name);
    });
    return found != choices.end() ? &*found : nullptr;
}

} // namespace

DeviceChoice const* Choices::device(std::string_view name) const
{
    return find(devices, name);
}

PaperChoice const* Choices::paper(std::string_view name) const
{
    return find(papers, name);
}

Choices builtInChoices()
{
    Choices choices;
    for (std::size_t i = 0; i < std::size(instrumentPresets); ++i)
        choices.devices.push_back({deviceIds[i], instrumentPresets[i].name, instrumentPresets[i], builtIn});
    for (std::size_t i = 0; i < std::size(paperPresets); ++i) {
        PageLayout sheet;
        sheet.initWithPreset(static_cast<PageLayoutPreset>(i));
        choices.papers.push_back({idOf(paperPresets[i].name), paperPresets[i].name, sheet, builtIn});
    }
    return choices;
}

std::string idOf(std::string_view name)
{
    std::string id;
    for (char const c : name) {
        char const small = lower(c);
        bool const isKept = (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9');
        if (isKept)
            id += small;
        else if (!id.empty() && id.back() != '-')
            id += '-';
    }
    if (!id.empty() && id.back() == '-')
        id.pop_back();
    return id;
}

RealBorder marginsOf(PageLayout const& sheet)
{
    RealRect const content = sheet.getContent();
    SheetAxis const across{sheet.getSize().width, content.x, content.width};
    SheetAxis const up{sheet.getSize().height, content.y, content.height};
    return {up.farMargin(), across.farMargin(), content.y, content.x};
}
