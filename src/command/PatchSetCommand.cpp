// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSetCommand.h"

#include "ExitStatus.h"
#include "PatchSetSettings.h"
#include "PatchSetSummary.h"
#include "Presets.h"
#include "TableFile.h"
#include "color/PrinterProfile.h"
#include "input/InputFile.h"
#include "input/PlainTable.h"
#include "making/ChartMaking.h"
#include "making/SheetFit.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace
{

constexpr std::size_t mostProfileBytes = std::size_t{256} << 20;

// A patch of a table that must be in, and where it comes from.
std::optional<IncludedPatch> includedPatch(PatchTable const& table, std::size_t patch, PatchSetSettings const& settings)
{
    IncludedPatch included{std::string(table.valuesOf(patch)), {}};
    char const* next = included.text.data();
    char const* const end = next + included.text.size();
    double sum = 0;
    for (int c = 0; c < colorspace_nof_channels[settings.space]; ++c) {
        while (next < end && *next == ' ')
            ++next;
        double value = 0;
        next = std::from_chars(next, end, value).ptr;
        sum += value;
        double const percent = settings.space == CMYK ? value : value * 100 / 255;
        included.device[static_cast<std::size_t>(c)] = static_cast<float>(percent);
    }
    bool const isWithin = settings.space != CMYK || sum <= settings.wish.inkLimit + 1e-9;
    return isWithin ? std::optional(std::move(included)) : std::nullopt;
}

std::string plainTextOf(PatchSet const& set, ColorSpace space)
{
    std::string text;
    for (std::string const& name : plainColumnNames(space))
        text += (text.empty() ? "" : " ") + name;
    text += "\n";
    for (SetPatch const& patch : set.patches)
        text += patch.text + "\n";
    return text;
}

// One run of the command.
class PatchSetRun
{
public:
    PatchSetRun(PatchSetArguments const& patchSetArguments, PatchSetSettings patchSetSettings, Console const& where)
        : arguments(patchSetArguments), settings(std::move(patchSetSettings)), console(where),
          printer(ownPrinter(settings.space))
    {
        settings.wish.progress = [this](double share) {
            progress.show("spreading patches: " + std::to_string(static_cast<int>(share * 100)) + " %");
        };
    }

    int run()
    {
        if (!readProfile() || !readIncluded())
            return notMade;
        bool const isMade = settings.sheets > 0 ? fillSheets() : make();
        progress.clear();
        return isMade && write() ? done : notMade;
    }

private:
    bool isPrinted() const { return arguments.output.empty() || arguments.output == "-"; }

    bool readProfile()
    {
        if (arguments.profile.empty())
            return true;
        FileContents const contents = readFile(arguments.profile, mostProfileBytes);
        auto const profile = std::make_shared<PrinterProfile const>(contents.bytes, settings.space);
        std::string const& fault = contents.error.empty() ? profile->getFault() : contents.error;
        if (!fault.empty()) {
            console.error("--profile: " + nameOfTable(arguments.profile) + ": " + fault);
            return false;
        }
        printer = printerOf(settings.space, profile);
        return true;
    }

    bool readIncluded()
    {
        if (arguments.include.empty())
            return true;
        ImportOptions options;
        options.space = settings.space;
        auto const table = readTable(console, {arguments.include, "", "", ""}, options);
        if (!table)
            return false;
        if (table->colorSpace != settings.space) {
            console.error("--include: " + nameOfTable(arguments.include) + ": has " +
                          colorspace_names[table->colorSpace] + " values, not " + colorspace_names[settings.space]);
            return false;
        }
        for (std::size_t i = 0; i < table->count(); ++i) {
            auto included = includedPatch(*table, i, settings);
            if (!included) {
                console.error("--include: " + nameOfTable(arguments.include) + ":" + std::to_string(table->lineOf(i)) +
                              ": the inks add up to more than the limit; raise --ink-limit, or leave the patch out");
                return false;
            }
            settings.wish.included.push_back(std::move(*included));
        }
        return true;
    }

    bool make()
    {
        set = makePatchSet(printer, settings.wish);
        if (!set.fault.empty())
            console.error(set.fault + (settings.sheets > 0 ? "; give more sheets" : "; give more --patches"));
        return set.fault.empty();
    }

    // The gap that the chart gets where it needs one.
    float possibleGap() const
    {
        double const own = settings.chart.device.values.gap.height;
        return own > 0 ? static_cast<float>(own) : gapBetweenPatches;
    }

    FitSettings fitSettings() const
    {
        MeasurementLayout instrument;
        instrument.init(settings.chart.device.values);
        return {instrument, settings.chart.sheet, settings.chart.patch, settings.space};
    }

    // The patches that fill the sheets with a gap; nothing, and a fault told, where none do.
    bool fit(float betweenPatches)
    {
        constexpr std::size_t most = PatchSetWish::mostPatches;
        std::string const sheets = std::to_string(settings.sheets) + (settings.sheets == 1 ? " sheet" : " sheets");
        SheetFit const found = fitSheets(fitSettings(), settings.sheets, betweenPatches, most + 1);
        settings.wish.patches = found.patches;
        if (found.patches > most)
            console.error("--fit: " + sheets + " hold more than " + std::to_string(most) +
                          " patches, which is more than a table may have; give fewer sheets");
        else if (found.patches == 0)
            console.error("--fit: no chart fits on " + sheets +
                          "; take a larger paper, smaller margins or patches, or more sheets");
        else if (found.sheets < settings.sheets)
            console.error("--fit: no chart has exactly " + sheets + ": " + std::to_string(found.patches) +
                          " patches have " + std::to_string(found.sheets) + ", one more needs more than " + sheets +
                          "; give another number of sheets");
        else
            return true;
        return false;
    }

    // Whether the chart of the table gets gaps.
    bool needsGap() const
    {
        std::string const text = plainTextOf(set, settings.space);
        InputFile input;
        String plain;
        plain.init(text.data(), text.size());
        input.initFromText(plain);
        FitSettings const layout = fitSettings();
        ChartLayout chart;
        chart.setDirection(mirrored);
        chart.setMeasurementLayout(layout.instrument);
        chart.setPageLayout(layout.sheet);
        chart.setPatchSize(layout.patch);
        chart.setColorSpace(input.getColorSpace());
        chart.setOriginalEntries(input.getEntries());
        return makeChart(chart, GapRule::automatic, possibleGap()).hasGaps;
    }

    // Gaps leave room for fewer patches, and only the finished table tells whether its chart needs them.
    bool fillSheets()
    {
        if (!fit(0) || !make())
            return false;
        if (!needsGap())
            return true;
        gap = possibleGap();
        return fit(gap) && make();
    }

    bool write()
    {
        std::string const text = plainTextOf(set, settings.space);
        if (!(isPrinted() ? console.print(text) : writeFile(arguments.output, text, arguments.force, console)))
            return false;
        PatchSetSummary summary{settings, arguments.profile, isPrinted() ? "" : arguments.output, set.counts, {}, gap};
        summary.fill = fillDistancesOf(printer, settings.wish.inkLimit, set.colors());
        std::string const words = arguments.json ? jsonOf(summary) : textOf(summary);
        if (!isPrinted())
            return console.print(words);
        console.tell(words);
        return true;
    }

    PatchSetArguments const& arguments;
    PatchSetSettings settings;
    Console const& console;
    Printer printer;
    PatchSet set;
    float gap = 0;
    Progress progress;
};

} // namespace

int runPatchSet(PatchSetArguments const& arguments, Console const& console)
{
    Choices choices = builtInChoices();
    if (!arguments.fit.empty())
        if (auto const fault = addPresetsFile(choices, arguments.presets.path)) {
            console.error(fault->text);
            return notMade;
        }
    auto settings = patchSetSettings(arguments, choices);
    if (WrongUse const* const wrong = std::get_if<WrongUse>(&settings)) {
        console.error(wrong->text);
        return wrongUse;
    }
    if (!isThere(arguments.output) || arguments.output == "-" || arguments.output.empty() || arguments.force)
        return PatchSetRun(arguments, std::get<PatchSetSettings>(std::move(settings)), console).run();
    console.error(arguments.output + ": is there already; give --force to replace it");
    return notMade;
}
