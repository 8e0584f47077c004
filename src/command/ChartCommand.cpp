// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartCommand.h"

#include "ChartSettings.h"
#include "ChartSummary.h"
#include "ExitStatus.h"
#include "Presets.h"
#include "TableFile.h"
#include "input/InputFile.h"
#include "lib/OvPDFFile.h"
#include "making/ChartFiles.h"
#include "making/Interrupts.h"
#include "making/PendingFolder.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <utility>

namespace
{

namespace fs = std::filesystem;

String stringOf(std::string const& text)
{
    String string;
    string.init(text.data(), text.size());
    return string;
}

std::string textOf(String const& string)
{
    return {string.begin(), string.end()};
}

// The plain text of a table, what is said about its reading, and how many patches it has.
struct PlainText
{
    std::string text;
    std::vector<std::string> notes;
};

// Whether the window's reader takes a text for a table.
bool isTakenByWindow(std::string const& bytes)
{
    InputFile file;
    return file.initFromText(stringOf(bytes));
}

std::optional<PlainText> readPlainText(ChartArguments const& arguments, ImportOptions const& options,
                                       Console const& console)
{
    FileContents contents = readFile(arguments.table.table, mostTableBytes);
    if (!contents.error.empty()) {
        console.error(nameOfTable(arguments.table.table) + ": " + contents.error);
        return std::nullopt;
    }
    if (arguments.lenient && isTakenByWindow(contents.bytes))
        return PlainText{std::move(contents.bytes), {}};
    auto const patches = importPatches(console, arguments.table.table, std::move(contents.bytes), options);
    if (!patches)
        return std::nullopt;
    PlainText plain{plainTableOf(*patches), patches->notes};
    if (patches->source().kind != TableKind::plain)
        plain.notes.insert(plain.notes.begin(), "scale: " + patches->scale.reason);
    return plain;
}

// One run of the command.
class ChartRun
{
public:
    ChartRun(ChartArguments const& chartArguments, ChartSettings chartSettings, Console const& where)
        : arguments(chartArguments), settings(std::move(chartSettings)), console(where),
          folder(textOf(chartFolder(stringOf(settings.parentFolder), stringOf(settings.name))))
    {
    }

    int run(PlainText const& table)
    {
        if (!mayUseFolder())
            return notMade;
        if (!input.initFromText(stringOf(table.text)) || input.getEntries()->getCount() == 0) {
            console.error(nameOfTable(arguments.table.table) + ": has no patches");
            return notMade;
        }
        setUp();
        made = makeChart(chart, settings.gaps, gap());
        progress.clear();
        if (!chart.hasSomethingToOutpot()) {
            console.error(noRoomText());
            return notMade;
        }
        if (!canHoldSheets())
            return notMade;
        warnOfMissingMarks();
        if (settings.gaps == GapRule::never && needsGaps(chart, made.smallestDeltaE))
            console.warn("patches along the scan differ by less than 18 delta E, and the chart has no gaps");
        if (!write())
            return notMade;
        return tell(table.notes);
    }

private:
    // A device of one's own names the gap that it needs; otherwise it is 1 mm.
    float gap() const
    {
        double const own = settings.device.values.gap.height;
        return own > 0 ? static_cast<float>(own) : gapBetweenPatches;
    }

    void setUp()
    {
        MeasurementLayout instrument;
        instrument.init(settings.device.values);
        chart.setDirection(mirrored);
        chart.setMeasurementLayout(instrument);
        chart.setPageLayout(settings.sheet);
        chart.setPatchSize(settings.patch);
        chart.setName(stringOf(settings.name));
        chart.setClipToContent(settings.clipsToContent);
        chart.setColorSpace(input.getColorSpace());
        chart.setOriginalEntries(input.getEntries());
        chart.setOrderMethod({settings.order.kind, settings.order.effort, [this](float smallest, float bound) {
                                  progress.show(orderProgressText(smallest, bound));
                              }});
    }

    static std::string orderProgressText(float smallest, float bound)
    {
        String const text =
            String::format("ordering: %.2f dE, no order exceeds %.2f", std::sqrt(static_cast<double>(smallest)),
                           std::sqrt(static_cast<double>(bound)));
        return {text.begin(), text.end()};
    }

    std::string noRoomText() const
    {
        RealSize const room = chart.getRoomForPatches();
        RealSize const gapSize = chart.getMeasurementLayout().getGap();
        double const width = settings.patch.width + gapSize.width;
        double const height = settings.patch.height + gapSize.height;
        if (room.width >= width && room.height >= height)
            return "the chart would need more cells or sheets than anyone prints; take larger patches or fewer patches";
        return "no room for a single patch: " + settings.paperName + " leaves " + lengthText(room.width) + " x " +
               lengthText(room.height) + " mm for " + settings.device.name + ", one patch needs " + millimetres(width) +
               " x " + millimetres(height) + " mm; take a larger paper, smaller margins or smaller patches";
    }

    static std::string lengthText(double length) { return millimetres(std::max(length, 0.0)); }

    bool hasKind(ImageKind const& kind) const
    {
        return std::find(settings.kinds.begin(), settings.kinds.end(), &kind) != settings.kinds.end();
    }

    // Whether each kind's files can hold the chart's sheets.
    bool canHoldSheets() const
    {
        if (std::string const font = textOf(PDFFile::fontPath()); hasKind(pdfImages) && !fs::exists(font)) {
            console.error(font + ": the font for labels in PDF is missing; install the program again");
            return false;
        }
        for (NumberedSheet const& sheet : sheetsOf(chart))
            for (ImageKind const* kind : settings.kinds) {
                SheetFrame const frame = frameOf(sheet, chart, settings.sheets);
                if (kind->canHold(frame, chart.getColorSpace(), settings.sheets))
                    continue;
                console.error("a sheet of " + millimetres(frame.size.width) + " x " + millimetres(frame.size.height) +
                              " mm " + tooLargeText(*kind));
                return false;
            }
        return true;
    }

    std::string tooLargeText(ImageKind const& kind) const
    {
        if (&kind == &pdfImages)
            return "is too large for PDF, whose pages have at most 5080 mm a side; take a smaller paper or another "
                   "--format";
        return "has too many pixels for TIFF at " + millimetres(settings.sheets.tiff.resolution) +
               " dots per inch; take a lower --resolution" +
               (settings.sheets.tiff.compression == TIFFCompression::none ? ", --compression lzw" : "") +
               " or another --format";
    }

    // Warns of the marks of 100 mm that have no room, with the numbers of the sheets.
    void warnOfMissingMarks() const
    {
        if (!settings.sheets.hasScaleMark)
            return;
        std::vector<int> across;
        std::vector<int> up;
        for (NumberedSheet const& sheet : sheetsOf(chart)) {
            ScaleMark const mark = frameOf(sheet, chart, settings.sheets).scaleMark;
            if (!mark.across)
                across.push_back(sheet.number);
            if (!mark.up)
                up.push_back(sheet.number);
        }
        warnOfMissingMark("across", std::move(across));
        warnOfMissingMark("up", std::move(up));
    }

    void warnOfMissingMark(std::string const& direction, std::vector<int> sheets) const
    {
        if (sheets.empty())
            return;
        std::sort(sheets.begin(), sheets.end());
        std::string where = " on any sheet";
        if (sheets.size() < static_cast<std::size_t>(chart.countOutputPages())) {
            where = sheets.size() == 1 ? " on sheet " : " on sheets ";
            for (int const number : sheets)
                where += (number == sheets.front() ? "" : ", ") + std::to_string(number);
        }
        console.warn("no room for the mark of 100 mm " + direction + where + "; take a larger paper or fewer patches");
    }

    bool isOwnFile(std::string const& name) const
    {
        if (name == settings.name + ".xml")
            return true;
        for (ImageKind const* kind : imageKinds) {
            if (kind->isDocument) {
                if (name == settings.name + kind->suffix)
                    return true;
                continue;
            }
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

    bool write()
    {
        Interrupts const interrupts;
        PendingFolder pending(folder);
        if (pending.getError() != 0) {
            console.error(settings.parentFolder + ": cannot be written to" + reasonText(pending.getError()) +
                          "; give another folder with --output");
            return false;
        }
        int sheet = 0;
        int const sheets = chart.countOutputPages() * static_cast<int>(settings.kinds.size());
        auto const before = [&] {
            progress.show("writing sheet " + std::to_string(++sheet) + " of " + std::to_string(sheets));
            return Interrupts::signal() == 0;
        };
        auto fault = writeChartFiles(chart, stringOf(pending.path().string()), targetDescriptionName(stringOf(folder)),
                                     settings.kinds, before, settings.sheets);
        progress.clear();
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
        ChartSummary summary = summaryOf(chart, settings, made, input.getEntries()->getCount());
        summary.notes = notes;
        summary.files = files;
        return console.print(arguments.json ? jsonOf(summary) : ::textOf(summary)) ? done : notMade;
    }

    ChartArguments const& arguments;
    ChartSettings settings;
    Console const& console;
    std::string folder;
    InputFile input;
    ChartLayout chart;
    MadeChart made;
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
    auto const table = readPlainText(arguments, std::get<ImportOptions>(options), console);
    if (!table)
        return notMade;
    return ChartRun(arguments, std::get<ChartSettings>(std::move(settings)), console).run(*table);
}
