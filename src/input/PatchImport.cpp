// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchImport.h"

#include "DecimalText.h"
#include "PlainTable.h"
#include "SpreadsheetDamage.h"
#include "TableChoice.h"
#include "TableReader.h"

#include <algorithm>
#include <utility>

namespace
{

bool hasComma(NumberForm form)
{
    return form == NumberForm::comma || form == NumberForm::percentWithComma;
}

bool hasPercentSign(NumberForm form)
{
    return form == NumberForm::percent || form == NumberForm::percentWithComma;
}

// How the device values of a table are written.
struct Spellings
{
    std::size_t none = 0;
    std::size_t withComma = 0;
    std::size_t withPercentSign = 0;
    std::size_t negative = 0;
    std::size_t all = 0;

    void add(ParsedNumber const& number)
    {
        ++all;
        none += number.form == NumberForm::none ? 1U : 0U;
        withComma += hasComma(number.form) ? 1U : 0U;
        withPercentSign += hasPercentSign(number.form) ? 1U : 0U;
        negative += number.value < 0 ? 1U : 0U;
    }
};

// An id and its row.
using RowId = std::pair<std::string_view, std::size_t>;

bool isShorterOrLess(RowId const& a, RowId const& b)
{
    return a.first.size() != b.first.size() ? a.first.size() < b.first.size() : a < b;
}

bool isSameId(RowId const& a, RowId const& b)
{
    return a.first == b.first;
}

} // namespace

/// Makes patches of a file of tables.
class PatchImport
{
public:
    explicit PatchImport(ImportOptions const& wishes) : options(wishes) {}

    TableImport read(std::string bytes)
    {
        patches.file = readTables(std::move(bytes), options.space);
        patches.notes = patches.file.notes;
        result.faults = patches.file.faults;
        if (!result.faults.isEmpty())
            return std::move(result);
        ChoiceMessages messages;
        auto const chosen = chooseTable(patches.file, options, messages);
        patches.notes.insert(patches.notes.end(), messages.notes.begin(), messages.notes.end());
        result.warnings.merge(messages.warnings);
        result.faults.merge(messages.faults);
        if (chosen) {
            choice = *chosen;
            takeChoice();
        }
        return std::move(result);
    }

private:
    void takeChoice()
    {
        patches.colorSpace = choice.space;
        patches.tableIndex = choice.index;
        patches.idColumn = choice.names.id;
        patches.nameColumn = choice.names.name;
        patches.locationColumn = choice.names.location;
        channels = static_cast<std::size_t>(colorspace_nof_channels[choice.space]);
        result.warnings.merge(table().warnings);
        result.faults.merge(table().faults);
        isPlain = patches.file.kind == TableKind::plain || patches.file.kind == TableKind::targetDescription;
        dropFillers();
        if (table().rows.empty()) {
            if (result.faults.isEmpty())
                result.faults.add(table().place, "the table has no rows, so there is no patch to print");
            return;
        }
        readValues();
        decide();
        warnOfRepeatedIds();
        if (!result.isGood())
            return;
        if (spellings.withComma > 0)
            patches.notes.emplace_back("decimal commas are read as points");
        toPlainScale();
    }

    DataTable& table() { return patches.file.tables[patches.tableIndex]; }
    Field const& field(std::size_t channel) { return table().fields[choice.device.columns[channel]]; }

    // The white patches that fill up the program's own charts.
    void dropFillers()
    {
        bool const isOurs = isSameWord(table().identifier, "IS12642");
        if (!choice.names.control || !isOurs)
            return;
        std::vector<Cell> cells;
        patches.fillers = std::erase_if(table().rows, [&](TextLine const& row) {
            patches.file.split(table(), row, cells);
            return cells[*choice.names.control].text == "I";
        });
        if (patches.fillers > 0)
            patches.notes.push_back("white patches that fill up the chart, left out: " +
                                    std::to_string(patches.fillers));
    }

    // Spectra behind the device values need not be split.
    std::size_t countNeededCells() const
    {
        auto const first = choice.device.columns.begin();
        std::size_t const last = *std::max_element(first, first + static_cast<std::ptrdiff_t>(channels));
        return 1 + std::max(last, choice.names.id.value_or(0));
    }

    void readValues()
    {
        std::vector<Cell> cells;
        std::size_t const needed = countNeededCells();
        patches.lineStarts.reserve(table().rows.size());
        for (std::size_t row = 0; row < table().rows.size(); ++row) {
            splitRow(patches.file.textOf(table().rows[row]), table().separation, needed, cells);
            patches.lineStarts.push_back(static_cast<std::uint32_t>(patches.valueLines.size()));
            for (std::size_t channel = 0; channel < channels; ++channel) {
                std::string_view const text = cells[choice.device.columns[channel]].text;
                ParsedNumber const number = parseNumber(text);
                spellings.add(number);
                if (number.form != NumberForm::none)
                    statistics.add(number.value);
                if (number.form == NumberForm::point)
                    patches.valueLines += text;
                else
                    appendPlainSpelling(patches.valueLines, text);
                patches.valueLines += channel + 1 < channels ? ' ' : '\n';
            }
            if (choice.names.id)
                ids.emplace_back(cells[*choice.names.id].text, row);
        }
    }

    // A decimal comma is one where commas separate nothing and no number of the table has a point.
    bool hasPoint()
    {
        std::vector<Cell> cells;
        for (TextLine const& row : table().rows) {
            patches.file.split(table(), row, cells);
            for (std::size_t i = 0; i < table().fields.size(); ++i) {
                bool const isLabel = choice.names.id == i || choice.names.name == i || choice.names.location == i;
                bool const mayHavePoint = !isLabel && cells[i].text.find('.') != std::string_view::npos;
                if (mayHavePoint && parseNumber(cells[i].text).form != NumberForm::none)
                    return true;
            }
        }
        return false;
    }

    // Why a comma is no decimal sign here; empty where it is one.
    std::string refusalOfComma()
    {
        if (spellings.withComma == 0)
            return {};
        if (patches.file.kind == TableKind::plain && !options.allowsCommaInPlainTable)
            return "a decimal comma, where a plain table takes a point: write a point, or have `patchloom-cli convert` "
                   "do so";
        if (table().separation == Separation::comma)
            return "a decimal comma in a table that commas separate: write a point";
        if (hasPoint())
            return "a decimal comma in a table that has decimal points too: write all numbers alike";
        return {};
    }

    void decide()
    {
        ScaleEvidence evidence;
        evidence.space = choice.space;
        evidence.option = options.scale;
        for (std::string const& name :
             {std::string("MAX_DEVICE_VALUE"), "MaxRange of Color" + std::string(colorspace_names[choice.space])})
            if (Keyword const* const keyword = table().findKeyword(name)) {
                evidence.keyword = name;
                evidence.statement = keyword->value;
            }
        evidence.hasPercentSigns = spellings.withPercentSign == spellings.all;
        std::string const& identifier = table().identifier;
        for (char const* const family : {"CTI1", "CTI2", "CTI3"})
            if (isSameWord(identifier, family))
                evidence.percentDialect = family;
        evidence.isPlain = isPlain || patches.file.kind == TableKind::cxf;
        evidence.values = statistics;
        patches.scale = decideScale(evidence);
        std::string const comma = refusalOfComma();
        double const limit = highestValue();
        bool const areAllGood = spellings.none == 0 && comma.empty() && spellings.negative == 0 &&
                                (spellings.withPercentSign == 0 || evidence.hasPercentSigns) &&
                                statistics.highest <= limit;
        if (!areAllGood)
            listFaults(comma, limit);
        if (!patches.scale.refusal.empty())
            result.faults.add(placeOf(patches.file.text, field(0).offset), patches.scale.refusal);
        if (!patches.scale.warning.empty())
            result.warnings.add(placeOf(patches.file.text, field(0).offset), patches.scale.warning);
    }

    double highestValue() const
    {
        DeviceScale const scale = patches.scale.scale;
        if (scale == DeviceScale::unknown)
            return statistics.highest;
        return isPlain ? static_cast<double>(scale) : highestAllowed(scale);
    }

    void listFaults(std::string const& comma, double limit)
    {
        TableMessages faults;
        std::vector<Cell> cells;
        for (TextLine const& row : table().rows) {
            patches.file.split(table(), row, cells);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                Cell const& cell = cells[choice.device.columns[channel]];
                ParsedNumber const number = parseNumber(cell.text);
                bool const isBadComma = hasComma(number.form) && !comma.empty();
                bool const isBadSign = hasPercentSign(number.form) && spellings.withPercentSign < spellings.all;
                bool const isInRange = number.value >= 0 && number.value <= limit;
                if (number.form == NumberForm::none || isBadComma || isBadSign || !isInRange)
                    faults.addMade([&] {
                        return TableMessage{patches.file.placeOf(cell.text, row),
                                            shown(field(channel).name) + " " +
                                                faultOf(cell.text, number, isBadComma ? comma : "", isBadSign)};
                    });
            }
        }
        result.faults.merge(faults);
    }

    std::string faultOf(std::string_view text, ParsedNumber const& number, std::string const& comma, bool isBadSign)
    {
        if (text.empty())
            return "is empty: fill in the value";
        std::string const found = excerpt(text);
        if (number.form == NumberForm::none) {
            std::string_view const damage = spreadsheetDamageIn(text);
            if (!damage.empty())
                return "is " + found + ", " + std::string(damage) +
                       " that a spreadsheet has left: export the table anew, with this column as text";
            return "is " + found + ", which is no number: correct it";
        }
        if (!comma.empty())
            return "is " + found + ", " + comma;
        if (isBadSign)
            return "is " + found + ": give every value a percent sign, or none";
        if (number.value < 0)
            return "is " + found + ", which is below 0: correct it";
        return "is " + found + ", which is above " + std::to_string(static_cast<std::uint32_t>(patches.scale.scale)) +
               (isPlain ? ": correct it" : ": correct it, or say with --scale what full strength is");
    }

    void toPlainScale()
    {
        DeviceScale const from = patches.scale.scale;
        DeviceScale const to = plainScaleOf(choice.space);
        auto const full = static_cast<double>(from);
        patches.isRescaled = from != to;
        if (!patches.isRescaled && statistics.highest <= full)
            return;
        if (statistics.highest > full)
            result.warnings.add(placeOf(patches.file.text, field(0).offset),
                                "values a bit above " + nameOf(from) + " are taken as full strength");
        Ratio const ratio{static_cast<std::uint32_t>(to), static_cast<std::uint32_t>(from)};
        std::string const fullText = std::to_string(static_cast<std::uint32_t>(to));
        std::string const lines = std::move(patches.valueLines);
        patches.valueLines.clear();
        patches.lineStarts.clear();
        TextLines source(lines);
        for (TextLine line; source.next(line);) {
            patches.lineStarts.push_back(static_cast<std::uint32_t>(patches.valueLines.size()));
            RowCells cells(std::string_view(lines).substr(line.offset, line.length), Separation::blanks);
            for (Cell cell; cells.next(cell);) {
                if (parseNumber(cell.text).value > full)
                    patches.valueLines += fullText;
                else if (patches.isRescaled)
                    patches.valueLines += rescaled(cell.text, ratio);
                else
                    patches.valueLines += cell.text;
                patches.valueLines += ' ';
            }
            patches.valueLines.back() = '\n';
        }
    }

    // Only the first is named, with the number of all.
    void warnOfRepeatedIds()
    {
        if (std::is_sorted(ids.begin(), ids.end(), isShorterOrLess) &&
            std::adjacent_find(ids.begin(), ids.end(), isSameId) == ids.end())
            return;
        std::sort(ids.begin(), ids.end(), isShorterOrLess);
        std::size_t repeated = 0;
        RowId first{{}, table().rows.size()};
        for (std::size_t i = 1; i < ids.size(); ++i)
            if (isSameId(ids[i], ids[i - 1])) {
                ++repeated;
                if (ids[i].second < first.second)
                    first = ids[i];
            }
        if (repeated == 0)
            return;
        TextLine const& row = table().rows[first.second];
        std::string text =
            shown(table().fields[choice.names.id.value_or(0)].name) + " " + excerpt(first.first) + " is there twice";
        if (repeated > 1)
            text += ", and " + counted(repeated - 1, "more repeated id");
        result.warnings.add(patches.file.placeOf(first.first, row), text + ": measurements cannot be told apart by it");
    }

    ImportOptions options;
    TableImport result;
    PatchTable& patches = result.patches;
    TableChoice choice;
    std::size_t channels = 0;
    bool isPlain = false;
    Spellings spellings;
    ValueStatistics statistics;
    std::vector<RowId> ids;
};

TableImport importTable(std::string bytes, ImportOptions const& options)
{
    return PatchImport(options).read(std::move(bytes));
}
