// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableFile.h"

#include "input/PatchImport.h"
#include "lib/OvSystemCall.h"
#include "lib/OvWholeFile.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr char standardInput[] = "-";

// "TABLE:LINE:COLUMN: text", without the parts of the place that are not known.
std::string located(std::string const& table, TableMessage const& message)
{
    std::string line = nameOfTable(table) + ":";
    if (message.place.line > 0)
        line += std::to_string(message.place.line) + ":";
    if (message.place.line > 0 && message.place.column > 0)
        line += std::to_string(message.place.column) + ":";
    return line + " " + message.text;
}

std::string restOf(std::string const& table, TableMessages const& messages, char const* what)
{
    std::size_t const more = messages.total() - messages.kept().size();
    return nameOfTable(table) + ": and " + std::to_string(more) + " more " + what + (more > 1 ? "s" : "");
}

} // namespace

FileContents readFile(std::string const& path, std::size_t mostBytes)
{
    auto const reason = [] { return "cannot be read: " + std::string(std::strerror(errno)); };
    bool const isInput = path == standardInput;
    int const file =
        isInput ? STDIN_FILENO : retryInterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY); });
    if (file < 0)
        return {"", reason()};
    FileContents contents;
    std::array<char, 65536> buffer;
    ssize_t got = 0;
    while (contents.error.empty() &&
           (got = retryInterrupted([&] { return read(file, buffer.data(), buffer.size()); })) > 0) {
        contents.bytes.append(buffer.data(), static_cast<std::size_t>(got));
        if (contents.bytes.size() > mostBytes)
            contents.error = "is larger than " + std::to_string(mostBytes >> 20) + " MiB";
    }
    if (got < 0)
        contents.error = reason();
    if (!isInput)
        close(file);
    if (!contents.error.empty())
        contents.bytes.clear();
    return contents;
}

bool isThere(std::string const& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool writeFile(std::string const& path, std::string const& text, bool replaces, Console const& console)
{
    if (!replaces && isThere(path)) {
        console.error(path + ": is there already; give --force to replace it");
        return false;
    }
    WholeFile file{String(path.c_str())};
    bool const isWritten = file.isOpen() && file.write(text.data(), text.size());
    if (isWritten && file.close())
        return true;
    console.error(path + ": cannot be written (" + std::strerror(file.getError()) + ")");
    return false;
}

std::string nameOfTable(std::string const& path)
{
    return path == standardInput ? "standard input" : path;
}

void printFaults(Console const& console, std::string const& table, TableMessages const& faults)
{
    for (TableMessage const& fault : faults.kept())
        console.error(located(table, fault));
    if (faults.total() > faults.kept().size())
        console.error(restOf(table, faults, "fault"));
}

void printWarnings(Console const& console, std::string const& table, TableMessages const& warnings)
{
    for (TableMessage const& warning : warnings.kept())
        console.warn(located(table, warning));
    if (warnings.total() > warnings.kept().size())
        console.warn(restOf(table, warnings, "warning"));
}

std::variant<ImportOptions, WrongUse> importOptions(TableArguments const& arguments)
{
    constexpr std::pair<char const*, DeviceScale> scales[] = {{"1", DeviceScale::one},
                                                              {"100", DeviceScale::percent},
                                                              {"255", DeviceScale::eightBit},
                                                              {"65535", DeviceScale::sixteenBit}};
    constexpr std::pair<char const*, ColorSpace> spaces[] = {{"cmyk", CMYK}, {"rgb", RGB}};
    ImportOptions options;
    bool isScale = arguments.scale.empty();
    for (auto const& [text, scale] : scales)
        if (arguments.scale == text) {
            options.scale = scale;
            isScale = true;
        }
    if (!isScale)
        return WrongUse{"--scale: \"" + arguments.scale + "\" is not 1, 100, 255 or 65535"};
    bool isSpace = arguments.space.empty();
    for (auto const& [text, space] : spaces)
        if (arguments.space == text) {
            options.space = space;
            isSpace = true;
        }
    if (!isSpace)
        return WrongUse{"--space: \"" + arguments.space + "\" is not cmyk or rgb"};
    if (!arguments.number.empty()) {
        char const* const end = arguments.number.data() + arguments.number.size();
        auto const [rest, error] = std::from_chars(arguments.number.data(), end, options.tableNumber);
        if (error != std::errc() || rest != end || options.tableNumber == 0)
            return WrongUse{"--table: \"" + arguments.number + "\" is no number from 1 on"};
    }
    return options;
}

std::optional<PatchTable> readTable(Console const& console, TableArguments const& arguments,
                                    ImportOptions const& options)
{
    FileContents contents = readFile(arguments.table, mostTableBytes);
    if (!contents.error.empty()) {
        console.error(nameOfTable(arguments.table) + ": " + contents.error);
        return std::nullopt;
    }
    return importPatches(console, arguments.table, std::move(contents.bytes), options);
}

std::optional<PatchTable> importPatches(Console const& console, std::string const& table, std::string bytes,
                                        ImportOptions const& options)
{
    TableImport import = importTable(std::move(bytes), options);
    printFaults(console, table, import.faults);
    if (!import.isGood())
        return std::nullopt;
    printWarnings(console, table, import.warnings);
    return std::move(import.patches);
}
