// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ChartCase.h"

#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>

namespace
{

// The number of a display name; -1 if there is none.
template <std::size_t count>
int indexOf(char const* const (&names)[count], std::string const& name)
{
    auto const found = std::find(std::begin(names), std::end(names), name);
    return found == std::end(names) ? -1 : static_cast<int>(found - std::begin(names));
}

template <typename... Numbers>
bool read(std::string const& text, Numbers&... numbers)
{
    std::istringstream stream(text);
    return static_cast<bool>((stream >> ... >> numbers)) && (stream >> std::ws).eof();
}

} // namespace

ChartCase::ChartCase(std::filesystem::path const& folder)
{
    EXPECT_TRUE(input.init(String((folder / "input.txt").c_str()))) << folder;
    layout.setColorSpace(input.getColorSpace());
    layout.setOriginalEntries(input.getEntries());

    std::ifstream settings(folder / "settings");
    EXPECT_TRUE(settings) << folder;
    for (std::string line; std::getline(settings, line);) {
        std::istringstream words(line);
        std::string key;
        std::string value;
        std::getline(words >> key >> std::ws, value);
        EXPECT_TRUE(apply(key, value)) << folder << ": " << line;
    }
    layout.computeLayout(gap, seed);
}

bool ChartCase::apply(std::string const& key, std::string const& value)
{
    if (key == "name")
        layout.setName(String(value.c_str()));
    else if (key == "device" && indexOf(measurementlayout_strings, value) >= 0)
        layout.setMeasurementLayout(instrument(MeasurementLayoutPreset(indexOf(measurementlayout_strings, value))));
    else if (key == "paper" && indexOf(pagelayoutpreset_strings, value) >= 0)
        layout.setPageLayout(paper(PageLayoutPreset(indexOf(pagelayoutpreset_strings, value))));
    else if (RealSize size; key == "patch" && read(value, size.width, size.height))
        layout.setPatchSize(size);
    else if (RealRect content; key == "paper" && read(value, size.width, size.height, content.x, content.y,
                                                      content.width, content.height))
        layout.setPageLayout(sheetOf(size, content));
    else if (key == "clip")
        layout.setClipToContent(value == "yes");
    else
        return (key == "gap" && read(value, gap)) || (key == "seed" && read(value, seed));
    return true;
}

std::vector<std::filesystem::path> chartCases()
{
    std::vector<std::filesystem::path> folders;
    for (auto const& entry : std::filesystem::directory_iterator(PATCHLOOM_TEST_DATA "charts"))
        if (entry.is_directory())
            folders.push_back(entry.path());
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::string caseName(std::filesystem::path const& folder)
{
    std::string name = folder.filename().string();
    std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
    return name;
}

std::string bytesOf(std::filesystem::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

std::vector<std::string> filesIn(std::filesystem::path const& folder)
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}
