// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableChoice.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr std::size_t shownNames = 8;

// Tables beside the patches that some programs write: they have the columns of device values too.
bool isAuxiliaryTable(DataTable const& table)
{
    constexpr std::string_view auxiliaryTables[] = {"DENSITY_EXTREME_VALUES", "DEVICE_COMBINATION_VALUES"};
    bool const isCalibration = isSameWord(table.identifier, "CAL") || isSameWord(table.identifier, "SPECT");
    return isCalibration || std::any_of(std::begin(auxiliaryTables), std::end(auxiliaryTables),
                                        [&](std::string_view name) { return table.findKeyword(name) != nullptr; });
}

// "A, B, C and 5 more"
std::string listOf(std::vector<std::string> const& names)
{
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), shownNames); ++i)
        list += (i > 0 ? ", " : "") + shown(names[i]);
    if (names.size() > shownNames)
        list += " and " + std::to_string(names.size() - shownNames) + " more";
    return list;
}

std::vector<std::string> fieldNames(DataTable const& table)
{
    std::vector<std::string> names;
    for (Field const& field : table.fields)
        if (!field.name.empty())
            names.push_back(field.name);
    return names;
}

class Chooser
{
public:
    Chooser(TableFile const& source, ImportOptions const& wishes, ChoiceMessages& target)
        : file(source), options(wishes), messages(target)
    {
        for (DataTable const& table : file.tables)
            columnNames.emplace_back(table.fields);
    }

    std::optional<TableChoice> choose()
    {
        auto const index = options.tableNumber > 0 ? numberedTable() : firstTable();
        if (!index)
            return {};
        TableChoice choice{*index, undefined, {}, columnNames[*index]};
        if (!chooseSpace(choice))
            return {};
        noteOtherTables(choice.index);
        noteOtherColumns(choice);
        return choice;
    }

private:
    std::optional<std::size_t> numberedTable()
    {
        if (options.tableNumber <= file.tables.size())
            return options.tableNumber - 1;
        messages.faults.add({}, "has " + counted(file.tables.size(), "table") + ", so there is no table " +
                                    std::to_string(options.tableNumber) + ": say another --table");
        return {};
    }

    bool hasPatches(std::size_t index) const
    {
        DataTable const& table = file.tables[index];
        ColumnNames const& names = columnNames[index];
        return (names.hasDeviceValues() || !names.incompleteSpaces.empty()) && !isAuxiliaryTable(table);
    }

    std::size_t firstTable() const
    {
        for (bool const needsRows : {true, false})
            for (std::size_t i = 0; i < file.tables.size(); ++i)
                if (hasPatches(i) && (!needsRows || file.tables[i].rows.size() + file.tables[i].unreadRows > 0))
                    return i;
        return 0;
    }

    bool fault(DataTable const& table, std::optional<std::size_t> column, std::string text)
    {
        TextPlace place = table.place;
        if (column)
            place = placeOf(file.text, table.fields[*column].offset);
        messages.faults.add(place, std::move(text));
        return false;
    }

    bool chooseSpace(TableChoice& choice)
    {
        DataTable const& table = file.tables[choice.index];
        ColumnNames const& names = choice.names;
        if (table.fields.empty())
            return fault(table, {},
                         "the columns have no names: put their names between lines with BEGIN_DATA_FORMAT and "
                         "END_DATA_FORMAT before BEGIN_DATA");
        bool const hasSeveral = names.cmyk.has_value() + names.rgb.has_value() + names.foreignSpaces.size() > 1;
        if (options.space == undefined && hasSeveral && (names.cmyk || names.rgb))
            return fault(table, {}, severalSpaces(names));
        choice.space = options.space != undefined ? options.space : names.cmyk ? CMYK : names.rgb ? RGB : undefined;
        auto const& device = choice.space == CMYK ? names.cmyk : names.rgb;
        if (choice.space == undefined || !device)
            return faultOfMissingSpace(table, names);
        if (!names.repeated.empty())
            return fault(table, names.repeatedColumn,
                         "the column " + names.repeated.front() + " is there more than once: remove one of them");
        choice.device = *device;
        if (device->isUnnamed && choice.space == CMYK)
            messages.warnings.add(placeOf(file.text, table.fields[device->columns[0]].offset),
                                  "the inks are not named: " + shown(table.fields[device->columns[0]].name) +
                                      " and the next are taken as C M Y K");
        return true;
    }

    static std::string severalSpaces(ColumnNames const& names)
    {
        std::vector<std::string> found;
        if (names.rgb)
            found.emplace_back("RGB");
        if (names.cmyk)
            found.emplace_back("CMYK");
        for (ForeignSpace const& foreign : names.foreignSpaces)
            found.push_back(foreign.name);
        std::string const choices = names.rgb && names.cmyk ? "--space RGB or --space CMYK"
                                    : names.rgb             ? "--space RGB"
                                                            : "--space CMYK";
        return "the table has device values of " + counted(found.size(), "colour space") + ", " + listOf(found) +
               ": say " + choices;
    }

    bool faultOfMissingSpace(DataTable const& table, ColumnNames const& names)
    {
        std::string const wanted =
            options.space == undefined ? "" : "no " + std::string(colorspace_names[options.space]) + " columns: ";
        for (IncompleteSpace const& space : names.incompleteSpaces)
            if (options.space == undefined || space.found.starts_with(colorspace_names[options.space]))
                return fault(table, space.column,
                             wanted + "the column " + space.missing + " is missing beside " + space.found);
        if (!names.foreignSpaces.empty())
            return fault(table, names.foreignSpaces.front().column,
                         wanted + "the table is of " + names.foreignSpaces.front().name +
                             ": charts are made of CMYK and RGB only");
        if (names.cmyk || names.rgb)
            return fault(table, {}, wanted + "the table is of " + (names.cmyk ? "CMYK" : "RGB"));
        if (names.hasMeasurements)
            return fault(table, {},
                         wanted + "only measured values (" + listOf(fieldNames(table)) +
                             ") and no device values: take the table that the chart was printed from");
        return fault(table, {},
                     wanted + "no column of device values such as CMYK_C or RGB_R among " + listOf(fieldNames(table)));
    }

    void noteOtherTables(std::size_t chosen)
    {
        std::size_t withPatches = 0;
        for (std::size_t i = 0; i < file.tables.size(); ++i) {
            withPatches += hasPatches(i) && i != chosen ? 1U : 0U;
            if (i != chosen && messages.notes.size() < TableMessages::limit)
                messages.notes.push_back(noteOf(i));
        }
        if (withPatches > 0 && options.tableNumber == 0)
            messages.warnings.add(file.tables[chosen].place,
                                  counted(withPatches, "other table") + (withPatches == 1 ? " has" : " have") +
                                      " device values too: table " + std::to_string(chosen + 1) +
                                      " is taken, --table chooses another");
    }

    std::string noteOf(std::size_t index) const
    {
        DataTable const& table = file.tables[index];
        std::string note = "table " + std::to_string(index + 1) + " in line " + std::to_string(table.place.line) +
                           " is left out: " + counted(table.rows.size() + table.unreadRows, "row");
        if (isAuxiliaryTable(table))
            return note + ", no patches but values that help to compute";
        return note + (hasPatches(index) ? "" : ", no device values");
    }

    void noteOtherColumns(TableChoice const& choice)
    {
        DataTable const& table = file.tables[choice.index];
        auto const device = choice.device.columns.begin();
        std::vector<std::string> others;
        for (std::size_t i = 0; i < table.fields.size(); ++i) {
            bool const isDevice = std::find(device, device + colorspace_nof_channels[choice.space], i) !=
                                  device + colorspace_nof_channels[choice.space];
            bool const isLabel = choice.names.id == i || choice.names.name == i || choice.names.location == i ||
                                 choice.names.control == i;
            if (!isDevice && !isLabel && !table.fields[i].name.empty())
                others.push_back(table.fields[i].name);
        }
        if (!others.empty())
            messages.notes.push_back("columns left out: " + listOf(others));
    }

    TableFile const& file;
    ImportOptions const& options;
    ChoiceMessages& messages;
    std::vector<ColumnNames> columnNames;
};

} // namespace

std::optional<TableChoice> chooseTable(TableFile const& file, ImportOptions const& options, ChoiceMessages& messages)
{
    return Chooser(file, options, messages).choose();
}
