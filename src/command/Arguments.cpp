// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Arguments.h"

#include "Console.h"

#include <algorithm>

#include <CLI/CLI.hpp>

namespace
{

void addTableOptions(CLI::App& command, TableArguments& table)
{
    command.add_option("TABLE", table.table, "The table of colour values; - for standard input")
        ->type_name("")
        ->required();
    command.add_option("--scale", table.scale, "What the largest value stands for: 1, 100, 255 or 65535")
        ->type_name("N");
    command.add_option("--space", table.space, "What the columns are: cmyk or rgb")->type_name("SPACE");
    command.add_option("--table", table.number, "Which of the file's tables, from 1")->type_name("N");
}

void addPresetOption(CLI::App& command, PresetArguments& presets)
{
    command
        .add_option("--presets", presets.path,
                    "Devices and papers of your own; by default patchloom/presets.toml in your configuration folder")
        ->type_name("FILE");
}

// The options of chart and of table that say what a chart is laid out with.
template <typename SheetArguments>
void addSheetOptions(CLI::App& command, SheetArguments& sheets)
{
    command.add_option("-d,--device", sheets.device, "The instrument; see 'patchloom-cli list devices'")
        ->type_name("DEVICE")
        ->capture_default_str();
    command.add_option("-p,--paper", sheets.paper, "The paper, or WIDTHxHEIGHT in mm; see 'patchloom-cli list papers'")
        ->type_name("PAPER")
        ->capture_default_str();
    command.add_option("-m,--margins", sheets.margins, "Margins in mm; by default the paper's own")
        ->type_name("T,R,B,L");
    command
        .add_option("-s,--patch", sheets.patch,
                    "Patch size in mm: 8 gives each side at least the device's smallest, 7.5x9 exactly that")
        ->type_name("SIZE")
        ->capture_default_str();
}

void addChart(CLI::App& app, ChartArguments& chart)
{
    CLI::App& command = *app.add_subcommand("chart", "Make a chart: folder, target description, sheets");
    addTableOptions(command, chart.table);
    addSheetOptions(command, chart);
    command.add_option("-n,--name", chart.name, "The chart's name; by default the table's, without its extension")
        ->type_name("NAME");
    command.add_option("-f,--format", chart.formats, "The sheets' formats, separated by commas: eps, tiff, pdf")
        ->type_name("FORMATS")
        ->capture_default_str();
    command.add_option("--resolution", chart.resolution, "Dots per inch of TIFF sheets, 72 to 2400; by default 300")
        ->type_name("DPI");
    command.add_option("--compression", chart.compression, "How TIFF sheets are packed: none (default), lzw, deflate")
        ->type_name("METHOD");
    command.add_flag("--scale-mark", chart.scaleMark,
                     "Draw lines of exactly 100 mm where there is room, to see whether a print was scaled");
    command.add_option("-o,--output", chart.folder, "The folder that the chart's folder goes into")
        ->type_name("FOLDER")
        ->capture_default_str();
    command.add_flag("--clip", chart.clip, "Cut the sheets down to the patches");
    command
        .add_option("--gaps", chart.gaps,
                    "Gaps between patches along the scan: auto (where they differ by less than 18 delta E), never, "
                    "always")
        ->type_name("RULE")
        ->capture_default_str();
    command
        .add_option("--order", chart.order,
                    "How patches are ordered along the scan: standard (fast, as the window), best (slower, with a "
                    "proof of how good it is)")
        ->type_name("METHOD")
        ->capture_default_str();
    command.add_option("--effort", chart.effort, "How much work the best order takes, from 1")
        ->type_name("N")
        ->capture_default_str();
    command.add_flag("--force", chart.force, "Replace a chart folder of that name");
    command.add_flag("--lenient", chart.lenient, "Take the values and names that the window takes");
    addPresetOption(command, chart.presets);
    command.add_flag("--json", chart.json, "Print one JSON object instead of the summary");
    command.add_flag("-q,--quiet", chart.quiet, "Print nothing on standard output");
}

void addList(CLI::App& app, ListArguments& list)
{
    CLI::App& command = *app.add_subcommand("list", "List the devices and papers to choose from");
    command.add_option("WHAT", list.what, "devices or papers; by default both")
        ->check(CLI::IsMember({"devices", "papers"}));
    addPresetOption(command, list.presets);
    command.add_flag("--json", list.json, "Print one JSON object instead of the lists");
}

void addConvert(CLI::App& app, ConvertArguments& convert)
{
    CLI::App& command = *app.add_subcommand("convert", "Turn any table into the plain table that the window opens");
    addTableOptions(command, convert.table);
    command.add_option("-o,--output", convert.output, "Where the plain table goes; by default standard output")
        ->type_name("FILE");
    command.add_option("--ids", convert.ids, "Where the rows' identifiers go, as a CSV")->type_name("FILE");
    command.add_flag("--force", convert.force, "Replace files that are there");
}

void addDescribe(CLI::App& app, DescribeArguments& describe)
{
    CLI::App& command = *app.add_subcommand("describe", "Tell what is in a table");
    addTableOptions(command, describe.table);
    command.add_flag("--json", describe.json, "Print one JSON object instead of the description");
}

void addTable(CLI::App& app, PatchSetArguments& table)
{
    CLI::App& command = *app.add_subcommand("table", "Make a table: the patches that tell most about a printer");
    command.add_option("--space", table.space, "What the patches are: cmyk or rgb")->type_name("SPACE")->required();
    command.add_option("--patches", table.patches, "How many patches, up to 20000")->type_name("N");
    command
        .add_option("--fit", table.fit,
                    "Instead of --patches: as many as fill so many sheets, with -d, -p, -m and -s as in chart")
        ->type_name("SHEETS");
    command.add_option("-o,--output", table.output, "Where the table goes; by default standard output")
        ->type_name("FILE");
    command
        .add_option("--ink-limit", table.inkLimit,
                    "Largest sum of inks in percent, from 100 to 400; only for cmyk; by default 320")
        ->type_name("P");
    command
        .add_option("--profile", table.profile,
                    "The ICC profile of the printer at hand; by default the program's own profiles")
        ->type_name("ICC");
    command.add_option("--whites", table.whites, "Repeats of the paper; by default 4")->type_name("N");
    command.add_option("--neutrals", table.neutrals, "Steps of each grey axis; by default by the number of patches")
        ->type_name("N");
    command
        .add_option("--ramps", table.ramps,
                    "Steps of each ink and each overprint of two; by default by the number of patches")
        ->type_name("N");
    command.add_option("--include", table.include, "A table of patches that must be in; - for standard input")
        ->type_name("TABLE");
    command
        .add_option("--round", table.rounding,
                    "Steps of the values: 1, 0.1 or 8bit; by default 0.1 for cmyk and 8bit for rgb")
        ->type_name("STEP");
    command
        .add_option("--neutral-weight", table.neutralWeight,
                    "How much closer patches lie near the neutrals, from 1 to 10")
        ->type_name("W")
        ->capture_default_str();
    command.add_option("--seed", table.seed, "Another number gives another table of the same quality")
        ->type_name("N")
        ->capture_default_str();
    addSheetOptions(command, table);
    addPresetOption(command, table.presets);
    command.add_flag("--force", table.force, "Replace a file that is there");
    command.add_flag("--json", table.json, "Print one JSON object instead of the summary");
}

// Messages are one line; the library breaks some of its own.
std::string oneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// What is wrong, and where to read how it is right.
WrongUse wrongUseOf(CLI::App const& app, CLI::ParseError const& error)
{
    if (!app.get_subcommands().empty()) {
        std::string const command = app.get_subcommands().front()->get_name();
        return {oneLine(error.what()) + "; see 'patchloom-cli " + command + " --help'"};
    }
    bool const hasWord = !app.remaining().empty();
    return {(hasWord ? "\"" + printable(app.remaining().front()) + "\" is no command: write"
                     : std::string("a command is missing:")) +
            " chart, convert, describe, list or table; see 'patchloom-cli --help'"};
}

// An option that is given twice is a mistake in a script more often than a wish.
void refuseRepeatedOptions(CLI::App& app)
{
    for (CLI::App* command : app.get_subcommands({}))
        for (CLI::Option* option : command->get_options())
            option->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

} // namespace

Arguments parseArguments(std::vector<std::string> arguments)
{
    ChartArguments chart;
    ListArguments list;
    ConvertArguments convert;
    DescribeArguments describe;
    PatchSetArguments table;

    CLI::App app("Make colour test charts for handheld spectrophotometers.", "patchloom-cli");
    app.set_version_flag("--version", "patchloom-cli " PATCHLOOM_VERSION);
    app.require_subcommand(1);
    addChart(app, chart);
    addConvert(app, convert);
    addDescribe(app, describe);
    addList(app, list);
    addTable(app, table);
    app.footer("'patchloom-cli COMMAND --help' tells a command's options.");
    refuseRepeatedOptions(app);

    std::reverse(arguments.begin(), arguments.end());
    try {
        app.parse(std::move(arguments));
    } catch (CLI::CallForHelp const&) {
        return Information{app.help()};
    } catch (CLI::CallForVersion const& version) {
        return Information{version.what() + std::string("\n")};
    } catch (CLI::ParseError const& error) {
        return wrongUseOf(app, error);
    }
    if (app.got_subcommand("list"))
        return list;
    if (app.got_subcommand("convert"))
        return convert;
    if (app.got_subcommand("describe"))
        return describe;
    if (app.got_subcommand("table"))
        return table;
    return chart;
}
