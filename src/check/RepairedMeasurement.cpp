// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RepairedMeasurement.h"

#include "input/ColumnNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

// What is written:
//
//     CGATS.17
//     ORIGINATOR	"Patchloom"
//     DESCRIPTOR	"New Chart"
//     # put right: column F was read backwards
//     # no reading: S12
//     NUMBER_OF_FIELDS	9
//     BEGIN_DATA_FORMAT
//     SAMPLE_ID	SAMPLE_LOC	CMYK_C	CMYK_M	CMYK_Y	CMYK_K	LAB_L	LAB_A	LAB_B
//     END_DATA_FORMAT
//     NUMBER_OF_SETS	2
//     BEGIN_DATA
//     1	A1	100	0	0	0	55.1	-36.8	-49.9
//     ...
//     END_DATA

namespace
{

constexpr std::string_view ownKeywords[] = {"ORIGINATOR",        "DESCRIPTOR",     "NUMBER_OF_FIELDS", "NUMBER_OF_SETS",
                                            "BEGIN_DATA",        "END_DATA",       "KEYWORD",          "LGOROWLENGTH",
                                            "BEGIN_DATA_FORMAT", "END_DATA_FORMAT"};

constexpr std::string_view spaceColumns[] = {"", "\tCMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K", "\tRGB_R\tRGB_G\tRGB_B"};

// On one line, without what would end a text.
std::string cleaned(std::string_view text)
{
    std::string result;
    for (char const c : text)
        result += isBlank(c) ? ' ' : c == '"' ? '\'' : c;
    return result;
}

std::string cellOf(std::string const& text)
{
    bool const isPlain =
        !text.empty() && std::none_of(text.begin(), text.end(), [](char c) { return isBlank(c) || c == '"'; });
    return isPlain ? text : "\"" + cleaned(text) + "\"";
}

bool isWord(std::string_view name)
{
    return !name.empty() && name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") ==
                                std::string_view::npos;
}

// A column's name as one word, by which it is known again: "LABL" for "Lab L". Empty where there is none.
std::string wordOf(std::string const& name)
{
    std::string const word = isWord(name) ? name : comparableName(name);
    return isWord(word) ? word : "";
}

class RepairWriter
{
public:
    RepairWriter(ChartReference const& theChart, std::vector<Measurement> const& theFiles,
                 PairedMeasurement const& theMeasurement, MeasurementCheck const& theCheck,
                 std::optional<SourceTable> const& theSource)
        : chart(theChart), files(theFiles), measurement(theMeasurement), check(theCheck), source(theSource)
    {
    }

    RepairedMeasurement write()
    {
        if (!chooseColumns())
            return std::move(result);
        listChanges();
        std::string rows;
        std::size_t count = 0;
        for (std::size_t i = 0; i < (source ? source->patches.size() : chart.patches.size()); ++i) {
            std::size_t const patch = source ? source->patches[i] : i;
            RowPlace const place = rowOf(patch);
            if (place.file == RowPlace::none) {
                if (!chart.patches[patch].isFiller)
                    result.missing.push_back(chart.patches[patch].label);
                continue;
            }
            rows += source ? cellOf(source->ids[i]) : chart.patches[patch].id;
            rows += "\t" + chart.patches[patch].label;
            if (hasNames)
                rows += "\t" + cellOf(source ? source->names[i] : "");
            addValues(patch, place, rows);
            ++count;
        }
        addHead();
        result.text += "NUMBER_OF_SETS\t" + std::to_string(count) + "\nBEGIN_DATA\n" + rows + "END_DATA\n";
        return std::move(result);
    }

private:
    // The columns beside ids, places and device values. All files must have the same.
    bool chooseColumns()
    {
        for (std::size_t const file : measurement.files) {
            DataTable const& table = files[file].table();
            ColumnNames const names(table.fields);
            std::vector<std::size_t> own;
            std::vector<std::string> texts;
            for (std::size_t i = 0; i < table.fields.size(); ++i) {
                bool const isLabel = names.id == i || names.name == i || names.location == i || names.control == i;
                std::string const name = wordOf(table.fields[i].name);
                if (isLabel || isDevice(names, i) || name.empty())
                    continue;
                own.push_back(i);
                texts.push_back(name);
            }
            if (columns.empty())
                fields = texts;
            if (fields != texts) {
                result.fault = files[file].path + ": has other columns than " + files[measurement.files.front()].path +
                               ": repair the files one by one";
                return false;
            }
            columns.resize(files.size());
            columns[file] = own;
        }
        if (source)
            hasNames = std::any_of(source->names.begin(), source->names.end(),
                                   [](std::string const& name) { return !name.empty(); });
        return true;
    }

    static bool isDevice(ColumnNames const& names, std::size_t column)
    {
        auto const has = [column](std::optional<DeviceColumns> const& device, std::size_t channels) {
            if (!device)
                return false;
            auto const begin = device->columns.begin();
            auto const end = begin + static_cast<std::ptrdiff_t>(channels);
            return std::find(begin, end, column) != end;
        };
        return has(names.cmyk, 4) || has(names.rgb, 3);
    }

    RowPlace rowOf(std::size_t patch) const
    {
        std::size_t const place = check.places[patch];
        return place == Assignment::nothing ? RowPlace() : measurement.rows[place];
    }

    void addValues(std::size_t patch, RowPlace place, std::string& rows)
    {
        for (std::size_t channel = 0; channel < chart.channels(); ++channel)
            rows += "\t" + chart.patches[patch].values[channel];
        Measurement const& file = files[place.file];
        file.source.split(file.table(), file.table().rows[place.row], cells);
        for (std::size_t const column : columns[place.file])
            rows += "\t" + cellOf(cells[column].content());
        rows += "\n";
    }

    // A finding is put right where the readings of its columns have moved.
    void listChanges()
    {
        for (Finding const& finding : check.findings) {
            constexpr FindingKind repaired[] = {FindingKind::reversed, FindingKind::shifted, FindingKind::exchanged,
                                                FindingKind::repeated, FindingKind::sheets,  FindingKind::order};
            bool const isOfColumns =
                std::find(std::begin(repaired), std::end(repaired), finding.kind) != std::end(repaired);
            // The device values have told this order: the rows are in place already.
            bool const isTold = finding.kind == FindingKind::order && check.explanation.order.text.empty();
            if (isOfColumns)
                (isTold || hasMoved(finding) ? result.changes : result.left).push_back(finding.text);
        }
    }

    bool hasMoved(Finding const& finding) const
    {
        for (std::size_t patch = 0; patch < check.places.size(); ++patch) {
            std::string const& column = chart.stripOf(patch).label;
            bool const isMeant = finding.columns.empty() || std::find(finding.columns.begin(), finding.columns.end(),
                                                                      column) != finding.columns.end();
            if (isMeant && check.places[patch] != patch)
                return true;
        }
        return false;
    }

    void addHead()
    {
        result.text = "CGATS.17\nORIGINATOR\t\"Patchloom\"\nDESCRIPTOR\t\"" + cleaned(chart.name) + "\"\n";
        DataTable const& table = files[measurement.files.front()].table();
        for (Keyword const& keyword : table.keywords) {
            bool const isOwn = std::any_of(std::begin(ownKeywords), std::end(ownKeywords),
                                           [&](std::string_view name) { return isSameWord(name, keyword.name); });
            if (!isOwn && isWord(keyword.name))
                result.text += keyword.name + "\t\"" + cleaned(keyword.value) + "\"\n";
        }
        for (std::string const& change : result.changes)
            result.text += "# put right: " + cleaned(change) + "\n";
        for (std::string const& label : result.missing)
            result.text += "# no reading: " + label + "\n";
        std::size_t const count = 2 + (hasNames ? 1U : 0U) + chart.channels() + fields.size();
        result.text += "NUMBER_OF_FIELDS\t" + std::to_string(count) + "\nBEGIN_DATA_FORMAT\nSAMPLE_ID\tSAMPLE_LOC";
        result.text += hasNames ? "\tSAMPLE_NAME" : "";
        result.text += spaceColumns[chart.colorSpace];
        for (std::string const& field : fields)
            result.text += "\t" + field;
        result.text += "\nEND_DATA_FORMAT\n";
    }

    ChartReference const& chart;
    std::vector<Measurement> const& files;
    PairedMeasurement const& measurement;
    MeasurementCheck const& check;
    std::optional<SourceTable> const& source;
    RepairedMeasurement result;
    std::vector<std::vector<std::size_t>> columns; // of each file
    std::vector<std::string> fields;
    bool hasNames = false;
    std::vector<Cell> cells;
};

} // namespace

RepairedMeasurement repairMeasurement(ChartReference const& chart, std::vector<Measurement> const& files,
                                      PairedMeasurement const& measurement, MeasurementCheck const& check,
                                      std::optional<SourceTable> const& source)
{
    return RepairWriter(chart, files, measurement, check, source).write();
}
