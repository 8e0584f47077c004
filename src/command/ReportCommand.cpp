// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReportCommand.h"

#include "ChartSettings.h"
#include "ExitStatus.h"
#include "Presets.h"
#include "ReportFile.h"
#include "TableChart.h"
#include "TableFile.h"

#include <cstring>
#include <initializer_list>

namespace
{

// The options of a table's chart, with the defaults of a chart.
ChartArguments tableArguments(ReportArguments const& arguments)
{
    ChartArguments const defaults;
    ChartArguments chart = arguments.chart;
    if (chart.device.empty())
        chart.device = defaults.device;
    if (chart.paper.empty())
        chart.paper = defaults.paper;
    return chart;
}

class ReportRun
{
public:
    ReportRun(ReportArguments const& reportArguments, Choices const& allChoices, Console const& where)
        : arguments(reportArguments), choices(allChoices), console(where)
    {
    }

    int runTable() const
    {
        ChartArguments const chartArguments = tableArguments(arguments);
        auto const settings = chartSettings(chartArguments, choices);
        auto const options = importOptions(chartArguments.table);
        for (WrongUse const* wrong :
             std::initializer_list<WrongUse const*>{std::get_if<WrongUse>(&settings), std::get_if<WrongUse>(&options)})
            if (wrong) {
                console.error(wrong->text);
                return wrongUse;
            }
        auto const& chosen = std::get<ChartSettings>(settings);
        if (!mayWrite(chosen.name))
            return notMade;
        auto const table = readPlainTable(chartArguments, std::get<ImportOptions>(options), console);
        TableChart chart;
        if (!table || !chart.make(chosen, *table, nameOfTable(chartArguments.table.table), console))
            return notMade;
        return write(chartReport(subjectOf(chart, chosen, table->notes)), chosen.name);
    }

private:
    std::string pathOf(std::string const& chartName) const
    {
        return arguments.output.empty() ? chartName + ".html" : arguments.output;
    }

    bool mayWrite(std::string const& chartName) const
    {
        std::string const path = pathOf(chartName);
        if (path == "-" || arguments.force || !isThere(path))
            return true;
        console.error(path + ": is there already; give --force to replace it");
        return false;
    }

    int write(PageText const& page, std::string const& chartName) const
    {
        if (!isMade(page, console))
            return notMade;
        std::string const& text = std::get<std::string>(page);
        std::string const path = pathOf(chartName);
        if (path == "-")
            return console.print(text) ? done : notMade;
        auto const fault = writePage(text, path);
        if (fault)
            console.error(path + ": cannot be written (" + std::strerror(fault->error) + ")");
        return fault ? notMade : done;
    }

    ReportArguments const& arguments;
    Choices const& choices;
    Console const& console;
};

} // namespace

int runReport(ReportArguments const& arguments, Console const& console)
{
    Choices choices = builtInChoices();
    if (auto const fault = addPresetsFile(choices, arguments.chart.presets.path)) {
        console.error(fault->text);
        return notMade;
    }
    return ReportRun(arguments, choices, console).runTable();
}
