// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReportCommand.h"

#include "ChartSettings.h"
#include "ExitStatus.h"
#include "Presets.h"
#include "ReportFile.h"
#include "TableChart.h"
#include "TableFile.h"
#include "making/ChartReading.h"
#include "search/OrderBound.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

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

// An option that says how a table is laid out, and is no use for a chart that is there; empty for none.
std::string uselessOption(ChartArguments const& arguments)
{
    ChartArguments const defaults;
    std::pair<char const*, bool> const options[] = {{"--scale", !arguments.table.scale.empty()},
                                                    {"--space", !arguments.table.space.empty()},
                                                    {"--table", !arguments.table.number.empty()},
                                                    {"--patch", arguments.patch != defaults.patch},
                                                    {"--name", !arguments.name.empty()},
                                                    {"--clip", arguments.clip},
                                                    {"--gaps", arguments.gaps != defaults.gaps},
                                                    {"--order", arguments.order != defaults.order},
                                                    {"--effort", arguments.effort != defaults.effort},
                                                    {"--lenient", arguments.lenient}};
    for (auto const& [name, isGiven] : options)
        if (isGiven)
            return name;
    return "";
}

// The bound of a chart that is there. Nobody knows how it was ordered.
OrderBound boundOf(ChartLayout const& chart)
{
    OrderTask task{{chart.getPatchesX(), chart.getPatchesY()}, ColorEntry::whitePatch.getColor(), {}, {}};
    float smallest = ColorEntry::furthestKey;
    for (int y = 0; y < task.grid.height; ++y)
        for (int x = 0; x < task.grid.width; ++x) {
            ColorEntry const& entry = *chart.getColorEntry({x, y});
            task.colors.push_back(entry.getColor());
            task.takesPart.push_back(entry.isArranged());
            if (entry.isArranged())
                smallest = std::min(smallest, entry.getKey());
        }
    return findOrderBound(task, smallest);
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
        return write(chartReport(::subjectOf(chart, chosen, table->notes)), chosen.name);
    }

    int runFolder() const
    {
        ChartArguments const& chartArguments = arguments.chart;
        if (std::string const option = uselessOption(chartArguments); !option.empty()) {
            console.error(option + ": is for tables; the chart in " + chartArguments.table.table + " is made already");
            return wrongUse;
        }
        auto const candidates = findCandidates();
        if (auto const* wrong = std::get_if<WrongUse>(&candidates)) {
            console.error(wrong->text);
            return wrongUse;
        }
        auto const& [devices, papers] = std::get<Candidates>(candidates);
        bool const isPaperKnown = !chartArguments.paper.empty() || !chartArguments.margins.empty();
        ReadChart chart;
        if (auto const fault = chart.read(chartArguments.table.table, devices, papers, isPaperKnown)) {
            console.error(*fault);
            return notMade;
        }
        std::error_code failure;
        std::string const folderName = std::filesystem::weakly_canonical(chartArguments.table.table, failure).filename();
        return mayWrite(folderName) ? write(chartReport(subjectOf(chart)), folderName) : int{notMade};
    }

private:
    struct Candidates
    {
        std::vector<DeviceCandidate> devices;
        std::vector<PaperCandidate> papers;
    };

    // The devices and papers that the chart may be for: all, or those that the user names.
    std::variant<Candidates, WrongUse> findCandidates() const
    {
        ChartArguments one = tableArguments(arguments);
        one.name = "chart";
        // What is named must be right, and so must the margins.
        auto const named = chartSettings(one, choices);
        if (auto const* wrong = std::get_if<WrongUse>(&named); wrong && !arguments.chart.paper.empty())
            return *wrong;
        Candidates candidates;
        for (DeviceChoice const& device : choices.devices)
            if (arguments.chart.device.empty() || choices.device(arguments.chart.device) == &device)
                candidates.devices.push_back({device.name, device.values});
        if (candidates.devices.empty())
            return std::get<WrongUse>(named);
        std::optional<WrongUse> firstWrong;
        std::vector<std::string> papers;
        for (PaperChoice const& paper : choices.papers)
            papers.push_back(paper.id);
        if (!arguments.chart.paper.empty())
            papers = {arguments.chart.paper};
        for (std::string const& paper : papers) {
            one.paper = paper;
            auto const settings = chartSettings(one, choices);
            if (auto const* good = std::get_if<ChartSettings>(&settings))
                candidates.papers.push_back({good->paperName, good->sheet});
            else if (!firstWrong)
                firstWrong = std::get<WrongUse>(settings);
        }
        if (candidates.papers.empty() && firstWrong)
            return *firstWrong;
        return candidates;
    }

    static ReportSubject subjectOf(ReadChart const& chart)
    {
        OrderBound const bound = isScanned(chart.layout()) ? boundOf(chart.layout()) : OrderBound{};
        std::vector<std::string> notes;
        if (chart.papers().size() > 1) {
            std::string text = "the files do not tell the paper: the page shows " + chart.papers().front() +
                               ", but the chart would fit";
            for (std::size_t i = 1; i < chart.papers().size(); ++i)
                text += (i > 1 ? ", " : " ") + chart.papers()[i];
            notes.push_back(text + " as well; give --paper");
        }
        return {.chart = chart.layout(),
                .devices = chart.devices(),
                .paper = chart.papers().front(),
                .withoutGaps = std::nullopt,
                .isGapRuleKnown = false,
                .bound = std::sqrt(bound.squared),
                .isBoundLoose = bound.isLoose,
                .notes = notes};
    }

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
    ReportRun const run(arguments, choices, console);
    std::error_code failure;
    bool const isFolder = std::filesystem::is_directory(arguments.chart.table.table, failure);
    return isFolder ? run.runFolder() : run.runTable();
}
