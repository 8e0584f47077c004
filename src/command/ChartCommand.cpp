// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartCommand.h"

#include "ChartSettings.h"
#include "ChartSummary.h"
#include "ExitStatus.h"
#include "Presets.h"
#include "ReportFile.h"
#include "TableChart.h"
#include "TableFile.h"
#include "making/ChartFiles.h"
#include "making/Interrupts.h"
#include "making/PendingFolder.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <utility>

namespace
{

namespace fs = std::filesystem;

// One run of the command.
class ChartRun
{
public:
    ChartRun(ChartArguments const& chartArguments, ChartSettings chartSettings, Console const& where)
        : arguments(chartArguments), settings(std::move(chartSettings)), console(where),
          folder(textOf(chartFolder(stringOf(settings.parentFolder), stringOf(settings.name))))
    {
    }

    int run(PlainTable const& table)
    {
        if (!mayUseFolder())
            return notMade;
        if (!chart.make(settings, table, nameOfTable(arguments.table.table), console))
            return notMade;
        if (!write(table))
            return notMade;
        return tell(table.notes);
    }

private:
    std::string reportName() const { return settings.name + ".html"; }

    bool isOwnFile(std::string const& name) const
    {
        if (name == settings.name + ".xml" || name == reportName())
            return true;
        for (ImageKind const* kind : imageKinds) {
            std::string const prefix = settings.name + "_";
            std::string const suffix = kind->suffix;
            bool const fits =
                name.size() > prefix.size() + suffix.size() && name.starts_with(prefix) && name.ends_with(suffix);
            if (fits && std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()),
                                    name.end() - static_cast<std::ptrdiff_t>(suffix.size()),
                                    [](unsigned char c) { return std::isdigit(c) != 0; }))
                return true;
        }
        return false;
    }

    // Whether the chart's folder can be made, or replaced without losing anything but a chart.
    bool mayUseFolder() const
    {
        std::error_code failure;
        if (!fs::is_directory(settings.parentFolder, failure)) {
            console.error(settings.parentFolder + ": is no folder" + reasonText(failure.value()) +
                          "; make it, or give another with --output");
            return false;
        }
        fs::file_status const status = fs::symlink_status(folder, failure);
        if (!fs::exists(status))
            return true;
        if (!arguments.force) {
            console.error(folder + ": is there already; give --force to replace it, or another name with --name");
            return false;
        }
        if (!fs::is_directory(status)) {
            console.error(folder +
                          ": is no folder, and is not replaced; move it away, or give another name with --name");
            return false;
        }
        fs::directory_iterator const content(folder, failure);
        if (failure) {
            console.error(folder + ": cannot be looked into" + reasonText(failure.value()) +
                          ", and is not replaced; move it away, or give another name with --name");
            return false;
        }
        std::string const foreign =
            firstForeignFile(folder, [this](std::string const& name) { return isOwnFile(name); });
        if (!foreign.empty())
            console.error(folder + ": holds " + foreign +
                          ", which is no part of a chart, and is not replaced; move that file away");
        return foreign.empty();
    }

    static std::string reasonText(int error)
    {
        return error != 0 ? " (" + std::string(std::strerror(error)) + ")" : "";
    }

    bool write(PlainTable const& table)
    {
        Interrupts const interrupts;
        PendingFolder pending(folder);
        if (pending.getError() != 0) {
            console.error(settings.parentFolder + ": cannot be written to" + reasonText(pending.getError()) +
                          "; give another folder with --output");
            return false;
        }
        int sheet = 0;
        int const sheets = chart.layout().countOutputPages() * static_cast<int>(settings.kinds.size());
        auto const before = [&] {
            progress.show("writing sheet " + std::to_string(++sheet) + " of " + std::to_string(sheets));
            return Interrupts::signal() == 0;
        };
        auto fault = writeChartFiles(chart.layout(), stringOf(pending.path().string()),
                                     targetDescriptionName(stringOf(folder)), settings.kinds, before);
        progress.clear();
        if (!fault && arguments.report && Interrupts::signal() == 0) {
            PageText const page = chartReport(subjectOf(chart, settings, table.notes));
            if (!isMade(page, console))
                return false;
            fault = writePage(std::get<std::string>(page), pending.path() / reportName());
        }
        collectFiles(pending.path());
        if (!fault && Interrupts::signal() == 0) {
            // What somebody put into an old folder meanwhile is not lost either.
            if (arguments.force && !mayUseFolder())
                return false;
            fault = pending.finish(arguments.force);
        }
        if (Interrupts::signal() != 0 && fs::exists(pending.path())) {
            pending.remove();
            Interrupts::endProcess(Interrupts::signal());
        }
        if (fault)
            console.error(faultText(*fault, pending.path()));
        return !fault;
    }

    // Faults name the files by the places where they would have been.
    std::string faultText(FileFault const& fault, fs::path const& temporary) const
    {
        if (fault.error == EEXIST)
            return folder + ": has appeared meanwhile, and is left as it is; give --force to replace it";
        std::string path = textOf(fault.path);
        if (path.starts_with(temporary.string()))
            path = folder + path.substr(temporary.string().size());
        return path + ": cannot be written" + reasonText(fault.error) + "; no chart was made";
    }

    void collectFiles(fs::path const& temporary)
    {
        std::error_code failure;
        for (fs::directory_iterator next(temporary, failure), end; !failure && next != end; next.increment(failure))
            files.push_back(folder + "/" + next->path().filename().string());
        std::sort(files.begin(), files.end());
    }

    int tell(std::vector<std::string> const& notes)
    {
        if (arguments.quiet)
            return done;
        ChartSummary summary = summaryOf(chart.layout(), settings, chart.made(), chart.countPatches());
        summary.notes = notes;
        summary.files = files;
        return console.print(arguments.json ? jsonOf(summary) : ::textOf(summary)) ? done : notMade;
    }

    ChartArguments const& arguments;
    ChartSettings settings;
    Console const& console;
    std::string folder;
    TableChart chart;
    std::vector<std::string> files;
    Progress progress;
};

} // namespace

int runChart(ChartArguments const& arguments, Console const& console)
{
    Choices choices = builtInChoices();
    if (auto const fault = addPresetsFile(choices, arguments.presets.path)) {
        console.error(fault->text);
        return notMade;
    }
    auto settings = chartSettings(arguments, choices);
    auto const options = importOptions(arguments.table);
    for (WrongUse const* wrong :
         std::initializer_list<WrongUse const*>{std::get_if<WrongUse>(&settings), std::get_if<WrongUse>(&options)})
        if (wrong) {
            console.error(wrong->text);
            return wrongUse;
        }
    auto const table = readPlainTable(arguments, std::get<ImportOptions>(options), console);
    if (!table)
        return notMade;
    return ChartRun(arguments, std::get<ChartSettings>(std::move(settings)), console).run(*table);
}
