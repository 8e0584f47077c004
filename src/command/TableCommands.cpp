// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableCommands.h"

#include "ChartSettings.h"
#include "ExitStatus.h"
#include "Json.h"
#include "TableFile.h"
#include "input/TableSummary.h"

#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace
{

// The table that the arguments name; the exit status where there is none.
std::variant<PatchTable, int> tableOf(TableArguments const& arguments, Console const& console)
{
    auto options = importOptions(arguments);
    if (WrongUse const* wrong = std::get_if<WrongUse>(&options)) {
        console.error(wrong->text);
        return wrongUse;
    }
    auto& import = std::get<ImportOptions>(options);
    import.allowsCommaInPlainTable = true;
    auto table = readTable(console, arguments, import);
    if (!table)
        return notMade;
    return std::move(*table);
}

std::string numberText(double number)
{
    char text[400];
    return {text, std::to_chars(text, std::end(text), number).ptr};
}

char const* const channelNames[][4] = {{}, {"C", "M", "Y", "K"}, {"R", "G", "B"}};

std::string rangesText(TableSummary const& summary)
{
    std::string text;
    for (std::size_t i = 0; i < summary.ranges.size(); ++i)
        text += std::string(i > 0 ? ", " : "") + channelNames[summary.colorSpace][i] + " " +
                numberText(summary.ranges[i].lowest) + " to " + numberText(summary.ranges[i].highest);
    return text;
}

std::string placeText(TableSummary const& summary)
{
    std::string text = "lines " + std::to_string(summary.firstLine) + " to " + std::to_string(summary.lastLine);
    if (summary.tableCount > 1)
        text += ", table " + std::to_string(summary.tableNumber) + " of " + std::to_string(summary.tableCount);
    return text;
}

std::string descriptionText(PatchTable const& table, TableSummary const& summary)
{
    std::string text;
    auto const line = [&text](std::string const& label, std::string const& value) {
        text += label + std::string(label.size() < 16 ? 16 - label.size() : 1, ' ') + value + "\n";
    };
    line("kind", std::string(nameOf(table.source().kind)) + ", " + std::string(nameOf(table.source().encoding)));
    line("where", placeText(summary));
    line("colour space", colorspace_names[summary.colorSpace]);
    line("patches", std::to_string(summary.patches) + ", " + std::to_string(summary.distinctColors) +
                        " distinct colours, " + std::to_string(summary.repeats) + " repeats, " +
                        std::to_string(summary.whites) + " white");
    line("values", rangesText(summary));
    if (summary.colorSpace == CMYK) {
        line("sum of inks", "at most " + numberText(summary.largestInkSum) + " % (line " +
                                std::to_string(summary.largestInkSumLine) + ")");
        for (InkExcess const& excess : summary.inkExcesses)
            line("over " + std::to_string(excess.limit) + " %", std::to_string(excess.patches) + " patches");
    }
    line("scale", table.scale.reason + (table.isRescaled ? "; values are rescaled" : ""));
    for (std::string const& note : table.notes)
        line("note", printable(note));
    return text;
}

std::string descriptionJson(PatchTable const& table, TableSummary const& summary)
{
    Json json;
    json["kind"] = nameOf(table.source().kind);
    json["encoding"] = nameOf(table.source().encoding);
    json["table"] = summary.tableNumber;
    json["tables"] = summary.tableCount;
    json["firstLine"] = summary.firstLine;
    json["lastLine"] = summary.lastLine;
    json["colorSpace"] = colorspace_names[summary.colorSpace];
    json["patches"] = summary.patches;
    json["distinctColors"] = summary.distinctColors;
    json["repeats"] = summary.repeats;
    json["whites"] = summary.whites;
    json["ranges"] = Json::array();
    for (ChannelRange const& range : summary.ranges)
        json["ranges"].push_back({range.lowest, range.highest});
    if (summary.colorSpace == CMYK) {
        json["largestInkSum"] = summary.largestInkSum;
        json["largestInkSumLine"] = summary.largestInkSumLine;
        for (InkExcess const& excess : summary.inkExcesses)
            json["inkExcesses"][std::to_string(excess.limit)] = excess.patches;
    }
    json["scale"] = {{"reason", table.scale.reason}, {"rescaled", table.isRescaled}};
    json["fillers"] = table.fillers;
    json["notes"] = table.notes;
    return textOf(json);
}

} // namespace

int runConvert(ConvertArguments const& arguments, Console const& console)
{
    auto result = tableOf(arguments.table, console);
    if (int const* status = std::get_if<int>(&result))
        return *status;
    auto const& table = std::get<PatchTable>(result);
    std::string const plain = plainTableOf(table);
    if (!arguments.ids.empty() && !writeFile(arguments.ids, idTableOf(table), arguments.force, console))
        return notMade;
    bool const isPrinted = arguments.output.empty() || arguments.output == "-";
    bool const isDone = isPrinted ? console.print(plain) : writeFile(arguments.output, plain, arguments.force, console);
    return isDone ? done : notMade;
}

int runDescribe(DescribeArguments const& arguments, Console const& console)
{
    auto result = tableOf(arguments.table, console);
    if (int const* status = std::get_if<int>(&result))
        return *status;
    auto const& table = std::get<PatchTable>(result);
    TableSummary const summary = summaryOf(table);
    return console.print(arguments.json ? descriptionJson(table, summary) : descriptionText(table, summary)) ? done
                                                                                                             : notMade;
}
