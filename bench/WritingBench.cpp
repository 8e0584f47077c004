// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Folders.h"
#include "PlainWriting.h"
#include "Samples.h"
#include "support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <vector>

// Writing a chart's files against the plainest way to write the same bytes.

namespace
{

using std::filesystem::path;

[[noreturn]] void fail(char const* message)
{
    std::fprintf(stderr, "%s\n", message);
    std::exit(1);
}

std::string contentsOf(path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<path> filesIn(TemporaryFolder const& folder)
{
    std::vector<path> files;
    for (auto const& file : std::filesystem::directory_iterator(folder.path()))
        files.push_back(file.path());
    return files;
}

// Emptying a file costs as much as writing it, so each run starts without.
void removeFilesIn(TemporaryFolder const& folder)
{
    for (path const& file : filesIn(folder))
        std::filesystem::remove(file);
}

void benchTexts(ColorSpace colorSpace)
{
    TemporaryFolder const tables;
    InputFile table;
    table.init(writeRandomTable(tables, colorSpace, 20'000));
    ChartLayout const chart = rulerChart(table);
    TemporaryFolder const ours;
    auto const write = [&] {
        chart.writeOutputFile(ours.pathOf("chart.xml"));
        chart.writeOutputImagesEPS(ours.pathWithSlash());
    };

    write();
    struct File
    {
        path name;
        std::string contents;
        PlainWriting writing;
    };
    std::vector<File> files;
    for (path const& file : filesIn(ours)) {
        std::string const contents = contentsOf(file);
        files.push_back({file.filename(), contents, PlainWriting(contents)});
    }
    TemporaryFolder const plain;
    auto const writePlainly = [&] {
        for (File const& file : files)
            file.writing.write(plain.path() / file.name);
    };

    Times const times = compare({writePlainly, [&] { removeFilesIn(plain); }}, {write, [&] { removeFilesIn(ours); }});
    for (File const& file : files)
        if (contentsOf(plain.path() / file.name) != file.contents)
            fail("The plainly written files are not the chart's.");
    printRow("target file and EPS sheets against snprintf", sizeText(table), times, {Promise::timesAsFast, 2});
}

void writeBytes(path const& file, std::string const& bytes)
{
    int const descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    for (std::size_t written = 0; written < bytes.size();) {
        ssize_t const count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count <= 0)
            fail("A picture's bytes could not be written.");
        written += static_cast<std::size_t>(count);
    }
    close(descriptor);
}

void benchPicture()
{
    InputFile table;
    table.init(examplePath());
    ChartLayout const chart = rulerChart(table);
    if (chart.countOutputPages() != 1)
        fail("The example does not fill one sheet.");
    TemporaryFolder const ours;
    auto const write = [&] { chart.writeOutputImagesTIFF(ours.pathWithSlash()); };

    write();
    std::string const bytes = contentsOf(filesIn(ours).front());
    TemporaryFolder const plain;
    Times const times = compare({[&] { writeBytes(plain.path() / "bytes", bytes); }, [&] { removeFilesIn(plain); }},
                                {write, [&] { removeFilesIn(ours); }}, Clock::wall);
    printRow("TIFF sheet, A3 at 300 dpi, against write()", sizeText(table), times, {Promise::timesAsLong, 4});
}

} // namespace

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    benchTexts(CMYK);
    benchTexts(RGB);
    benchPicture();
    ColorEntry::endColorConversions();
    return exitStatus();
}
