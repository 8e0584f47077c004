// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchTable.h"

#include "PlainTable.h"

#include <utility>

namespace
{

void appendCsvCell(std::string& csv, std::string const& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        csv += text;
        return;
    }
    csv += '"';
    for (char const c : text)
        csv.append(c == '"' ? 2 : 1, c);
    csv += '"';
}

} // namespace

std::string_view PatchTable::valuesOf(std::size_t patch) const
{
    std::size_t const end = patch + 1 < count() ? lineStarts[patch + 1] : valueLines.size();
    return std::string_view(valueLines).substr(lineStarts[patch], end - 1 - lineStarts[patch]);
}

PatchLabel PatchTable::labelOf(std::size_t patch) const
{
    std::vector<Cell> cells;
    file.split(table(), table().rows[patch], cells);
    auto const content = [&](std::optional<std::size_t> column) {
        return column ? cells[*column].content() : std::string();
    };
    return {content(idColumn), content(nameColumn), content(locationColumn)};
}

std::string plainTableOf(PatchTable const& patches)
{
    std::string text;
    for (std::string const& name : plainColumnNames(patches.colorSpace))
        text += (text.empty() ? "" : " ") + name;
    return text + "\n" + patches.valueLines;
}

std::string idTableOf(PatchTable const& patches)
{
    std::string csv = "LINE,SAMPLE_ID,SAMPLE_NAME\n";
    for (std::size_t patch = 0; patch < patches.count(); ++patch) {
        PatchLabel const label = patches.labelOf(patch);
        // The header is the plain table's first line.
        csv += std::to_string(patch + 2) + ",";
        appendCsvCell(csv, label.id);
        csv += ",";
        appendCsvCell(csv, label.name.empty() ? label.location : label.name);
        csv += "\n";
    }
    return csv;
}
