// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TargetTable.h"

#include "support/ChartCase.h"

#include <algorithm>
#include <cstdlib>

namespace
{

std::vector<std::string> split(std::string const& text, char separator)
{
    std::vector<std::string> parts(1);
    for (char const c : text)
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

} // namespace

std::vector<TargetPatch> readTargetTable(std::filesystem::path const& file)
{
    std::vector<std::string> const lines = linesOf(bytesOf(file));
    auto const begin = std::find(lines.begin(), lines.end(), "BEGIN_DATA");
    auto const end = std::find(begin, lines.end(), "END_DATA");
    std::vector<TargetPatch> patches;
    for (auto line = begin; line != end; ++line) {
        std::vector<std::string> const cells = split(*line, '\t');
        if (cells.size() > 3)
            patches.push_back({std::atoi(cells[0].c_str()), cells[1], cells[2], {cells.begin() + 3, cells.end()}});
    }
    return patches;
}

std::string creationTimeIn(std::string const& target)
{
    std::string const label = "\nCREATED\t\"";
    std::size_t const start = target.find(label);
    if (start == std::string::npos)
        return {};
    std::size_t const first = start + label.size();
    return target.substr(first, target.find('"', first) - first);
}

std::string withoutCreationTime(std::string const& target)
{
    std::string const time = creationTimeIn(target);
    return time.empty() ? target : std::string(target).replace(target.find(time), time.size(), "{now}");
}

std::vector<std::string> linesOf(std::string const& text)
{
    return split(text, '\n');
}
