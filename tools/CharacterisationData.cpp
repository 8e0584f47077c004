// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// BEGIN_DATA_FORMAT
// SAMPLE_ID CMYK_C CMYK_M CMYK_Y CMYK_K XYZ_X XYZ_Y XYZ_Z LAB_L LAB_A LAB_B
// END_DATA_FORMAT
// BEGIN_DATA
// 1        0     0     0     0   84.48   87.62   74.57   95.00    0.00   -2.00
// END_DATA

#include "CharacterisationData.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>
#include <string>

namespace
{

using Words = std::vector<std::string>;

Words splitIntoWords(std::string const& line)
{
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// The lines between "BEGIN_<section>" and "END_<section>", each as its words.
std::vector<Words> readSection(std::filesystem::path const& file, std::string const& section)
{
    std::ifstream stream(file);
    std::vector<Words> lines;
    bool inside = false;
    for (std::string line; std::getline(stream, line);) {
        Words words = splitIntoWords(line);
        if (words.empty())
            continue;
        if (words[0] == "END_" + section)
            break;
        if (inside)
            lines.push_back(std::move(words));
        else
            inside = words[0] == "BEGIN_" + section;
    }
    return lines;
}

} // namespace

std::vector<MeasuredPatch> readCharacterisationData(std::filesystem::path const& file)
{
    std::vector<Words> const format = readSection(file, "DATA_FORMAT");
    if (format.size() != 1)
        return {};
    Words const& names = format[0];

    std::array<std::size_t, 7> columns;
    std::array const wanted{"CMYK_C", "CMYK_M", "CMYK_Y", "CMYK_K", "LAB_L", "LAB_A", "LAB_B"};
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        columns[i] = static_cast<std::size_t>(std::ranges::find(names, wanted[i]) - names.begin());
        if (columns[i] == names.size())
            return {};
    }

    std::vector<MeasuredPatch> patches;
    for (Words const& words : readSection(file, "DATA")) {
        if (words.size() != names.size())
            return {};
        std::array<double, 7> values;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            std::string const& word = words[columns[i]];
            char const* const end = word.data() + word.size();
            // from_chars takes a point in every locale.
            auto const result = std::from_chars(word.data(), end, values[i]);
            if (result.ec != std::errc() || result.ptr != end)
                return {};
        }
        patches.push_back({{values[0], values[1], values[2], values[3]}, {values[4], values[5], values[6]}});
    }
    return patches;
}
