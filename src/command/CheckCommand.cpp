// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CheckCommand.h"

#include "CheckSummary.h"
#include "ExitStatus.h"
#include "ReportFile.h"
#include "TableFile.h"
#include "check/ReadingOrder.h"
#include "check/RepairedMeasurement.h"
#include "lib/OvWholeFile.h"
#include "report/CheckReport.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace
{

namespace fs = std::filesystem;

// The target description in a chart's folder: the file of the folder's name, else the only one there is.
std::string descriptionIn(fs::path const& folder)
{
    std::error_code error;
    fs::path const full = fs::canonical(folder, error);
    fs::path const own = folder / (full.filename().string() + ".xml");
    if (error || fs::exists(own, error))
        return own;
    std::vector<std::string> found;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->path().extension() == ".xml")
            found.push_back(entry->path());
    return found.size() == 1 ? found.front() : own.string();
}

std::string descriptionPath(std::string const& chart)
{
    std::error_code error;
    return fs::is_directory(chart, error) ? descriptionIn(chart) : chart;
}

class CheckRun
{
public:
    CheckRun(CheckArguments const& checkArguments, Console const& where) : arguments(checkArguments), console(where) {}

    int run()
    {
        for (auto const& [option, path] : {std::pair("--repair", &arguments.repair), {"--report", &arguments.report}})
            if (!path->empty() && isThere(*path)) {
                console.error(*path + ": is there already; " + option + " overwrites nothing");
                return wrongUse;
            }
        if (!readChart() || !readMeasurements() || !readSource())
            return wrongUse;
        for (auto const& [option, path] : {std::pair("--repair", &arguments.repair), {"--report", &arguments.report}})
            if (!path->empty() && pairing.measurements.size() > 1) {
                console.error(std::string(option) + " takes one measurement of the chart, and these are " +
                              std::to_string(pairing.measurements.size()));
                return wrongUse;
            }
        checkAll();
        CheckSummary summary{chart, files, pairing.measurements, checks, comparisons(), "", {}, {}, {}};
        if (!arguments.repair.empty() && !repair(summary))
            return wrongUse;
        if (!arguments.report.empty() && !report())
            return wrongUse;
        if (!console.print(arguments.json ? jsonOf(summary) : textOf(summary)))
            return wrongUse;
        return summary.countFindings() == 0 ? done : notMade;
    }

private:
    std::optional<std::string> contentsOf(std::string const& path)
    {
        FileContents contents = readFile(path, mostTableBytes);
        if (contents.error.empty())
            return std::move(contents.bytes);
        console.error(nameOfTable(path) + ": " + contents.error);
        return std::nullopt;
    }

    bool readChart()
    {
        std::string const path = descriptionPath(arguments.chart);
        auto bytes = contentsOf(path);
        if (!bytes)
            return false;
        ReferenceReading reading = readReference(std::move(*bytes));
        if (!reading.fault.empty()) {
            console.error(nameOfTable(path) + ": " + reading.fault);
            return false;
        }
        chart = std::move(reading.chart);
        return true;
    }

    bool readMeasurements()
    {
        for (std::string const& path : arguments.measurements) {
            auto bytes = contentsOf(path);
            if (!bytes)
                return false;
            files.push_back(readMeasurement(std::move(*bytes), nameOfTable(path)));
            printFaults(console, path, files.back().faults);
            if (!files.back().faults.isEmpty())
                return false;
            printWarnings(console, path, files.back().warnings);
        }
        pairing = pairMeasurements(chart, files);
        if (!pairing.fault.empty())
            console.error(pairing.fault);
        return pairing.fault.empty();
    }

    bool readSource()
    {
        if (arguments.like.empty())
            return true;
        TableArguments like;
        like.table = arguments.like;
        auto const table = readTable(console, like, {});
        if (!table)
            return false;
        source = findSourceTable(chart, *table);
        if (!source->fault.empty())
            console.error(nameOfTable(arguments.like) + ": " + source->fault);
        return source->fault.empty();
    }

    void checkAll()
    {
        std::vector<ReadingOrder> orders = candidateOrders(chart);
        if (source) {
            auto of = ordersOf(chart, *source);
            orders.insert(orders.end(), std::make_move_iterator(of.begin()), std::make_move_iterator(of.end()));
        }
        for (std::size_t i = 0; i < pairing.measurements.size(); ++i) {
            checks.push_back(checkMeasurement(chart, pairing.measurements[i], orders));
            for (Finding& finding : checks.back().findings)
                finding.measurement = i;
        }
    }

    std::vector<MeasurementComparison> comparisons() const
    {
        std::vector<MeasurementComparison> result;
        for (std::size_t i = 1; i < checks.size(); ++i) {
            result.push_back(compareMeasurements(chart, checks[0].corrected, checks[i].corrected));
            result.back().second = i;
        }
        return result;
    }

    bool repair(CheckSummary& summary)
    {
        RepairedMeasurement const repaired =
            repairMeasurement(chart, files, pairing.measurements[0], checks[0], source);
        if (!repaired.fault.empty()) {
            console.error(repaired.fault);
            return false;
        }
        WholeFile file{String(arguments.repair.c_str())};
        bool const isWritten = file.isOpen() && file.write(repaired.text.data(), repaired.text.size());
        if (!isWritten || !file.close()) {
            console.error(arguments.repair + ": cannot be written (" + std::strerror(file.getError()) + ")");
            return false;
        }
        summary.repaired = arguments.repair;
        summary.changes = repaired.changes;
        summary.leftAlone = repaired.left;
        summary.missing = repaired.missing;
        return true;
    }

    bool report() const
    {
        std::string names;
        for (std::string const& path : arguments.measurements)
            names += (names.empty() ? "" : ", ") + nameOfTable(path);
        PageText const page = checkReport({chart, pairing.measurements[0], checks[0], names});
        if (!isMade(page, console))
            return false;
        auto const fault = writePage(std::get<std::string>(page), arguments.report);
        if (fault)
            console.error(arguments.report + ": cannot be written (" + std::strerror(fault->error) + ")");
        return !fault;
    }

    CheckArguments const& arguments;
    Console const& console;
    ChartReference chart;
    std::vector<Measurement> files;
    Pairing pairing;
    std::optional<SourceTable> source;
    std::vector<MeasurementCheck> checks;
};

} // namespace

int runCheck(CheckArguments const& arguments, Console const& console)
{
    return CheckRun(arguments, console).run();
}
