// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Samples.h"
#include "input/InputFile.h"
#include "making/ChartFiles.h"
#include "making/ChartMaking.h"
#include "making/ProcessSetUp.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

// The command as a whole process, against the work that the window's core does for the same chart: the colour
// conversions are prepared, the table is read, the chart made, its files written.

namespace
{

// The process loads 29 libraries: finding their symbols takes most of this.
constexpr double mostLoading = 0.02;

void stopUnless(bool isDone, char const* what)
{
    if (isDone)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

void runCommand(std::string const& table, std::string const& parent)
{
    std::vector<std::string> words = {PATCHLOOM_COMMAND_PROGRAM,
                                      "chart",
                                      table,
                                      "-q",
                                      "-d",
                                      "long-ruler",
                                      "-p",
                                      "a3-portrait",
                                      "-s",
                                      "7x8",
                                      "-n",
                                      "Chart",
                                      "-o",
                                      parent};
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t const process = fork();
    if (process == 0) {
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    waitpid(process, &status, 0);
    stopUnless(status == 0, "The command makes no chart.");
}

// As the window does it.
void doCoreWork(String const& table, String const& folder)
{
    ColorEntry::endColorConversions();
    useResourcesBeside(String(PATCHLOOM_PROGRAM_FOLDER));
    InputFile input;
    stopUnless(input.init(table), "The table cannot be read.");
    MeasurementLayout instrument;
    instrument.initWithPreset(longRuler);
    PageLayout sheet;
    sheet.initWithPreset(a3Portrait);
    ChartLayout chart;
    chart.setMeasurementLayout(instrument);
    chart.setPageLayout(sheet);
    chart.setPatchSize({7, 8});
    chart.setName(String("Chart"));
    chart.setColorSpace(input.getColorSpace());
    chart.setOriginalEntries(input.getEntries());
    makeChart(chart);
    stopUnless(!writeChartFiles(chart, folder, targetDescriptionName(folder), {&epsImages}),
               "The files cannot be written.");
}

void measure(TemporaryFolder const& folder, String const& table, std::string const& size)
{
    String const core = folder.pathOf("core/Chart");
    std::filesystem::path const parent = folder.path() / "command";
    Side const baseline{[&] { doCoreWork(table, core); },
                        [&] { std::filesystem::create_directories(folder.path() / "core/Chart"); }};
    Side const ours{[&] { runCommand(table.getNullTerminatedString(), parent); },
                    [&] {
                        std::filesystem::remove_all(parent);
                        std::filesystem::create_directories(parent);
                    }};
    printRow("command as a process, against core's work", size, compare(baseline, ours, Clock::wall),
             {Promise::secondsLonger, mostLoading});
}

} // namespace

int main()
{
    // In memory where there is such a folder: the command's start is measured, not how it waits for the disk.
    if (std::filesystem::is_directory("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 1);
    TemporaryFolder const folder;
    measure(folder, writeRandomTable(folder, RGB, 24), "24 RGB");
    measure(folder, examplePath(), "1,617 CMYK");
    return exitStatus();
}
