// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Folders.h"
#include "Samples.h"
#include "output/SheetFiles.h"
#include "support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

// PDF against EPS, and packed TIFF against plain TIFF: time, size and memory.

namespace
{

[[noreturn]] void fail(char const* message)
{
    std::fprintf(stderr, "%s\n", message);
    std::exit(1);
}

void write(ImageKind const& kind, ChartLayout const& chart, TemporaryFolder const& folder,
           SheetOptions const& options = {})
{
    if (writeSheets(kind, chart, folder.pathWithSlash(), {}, options))
        fail("The sheets could not be written.");
}

double bytesIn(TemporaryFolder const& folder)
{
    double bytes = 0;
    for (auto const& file : std::filesystem::directory_iterator(folder.path()))
        bytes += static_cast<double>(file.file_size());
    return bytes;
}

void benchDocument(ColorSpace colorSpace, int count, double mostKilobytes)
{
    TemporaryFolder const tables;
    InputFile table;
    table.init(writeRandomTable(tables, colorSpace, count));
    ChartLayout chart = rulerChart(table);
    chart.setName(String("Chart"));
    TemporaryFolder const eps;
    TemporaryFolder const pdf;
    Times const times = compare({[&] { write(epsImages, chart, eps); }}, {[&] { write(pdfImages, chart, pdf); }});
    printRow("PDF against EPS sheets", sizeText(table), times, {Promise::timesAsLong, 5});
    printRow("PDF", sizeText(table), bytesIn(pdf) / 1000, "kB", mostKilobytes);
}

// A line of /proc/self/status, kB.
double statusOf(std::string const& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double value = 0; word == name + ":" && status >> value)
            return value;
    fail("The system does not tell the process's memory.");
}

// What a work adds to the memory of a process at its peak, MB. It runs in a process of its own.
template <typename Work>
double addedMemory(Work const& work)
{
    int ends[2];
    if (pipe(ends) != 0)
        fail("There is no pipe.");
    pid_t const process = fork();
    if (process == 0) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << "5"; // The peak starts anew.
        double const before = statusOf("VmRSS");
        work();
        double const added = (statusOf("VmHWM") - before) * 1024 / 1e6;
        if (::write(ends[1], &added, sizeof added) != static_cast<ssize_t>(sizeof added))
            _exit(1);
        _exit(0);
    }
    double added = 0;
    int status = 0;
    if (waitpid(process, &status, 0) != process || status != 0 ||
        read(ends[0], &added, sizeof added) != static_cast<ssize_t>(sizeof added))
        fail("A process that writes sheets failed.");
    close(ends[0]);
    close(ends[1]);
    return added;
}

void benchCompression(char const* name, TIFFCompression compression, double mostPercent)
{
    InputFile table;
    table.init(examplePath());
    ChartLayout chart = rulerChart(table);
    chart.setName(String("Chart"));
    if (chart.countOutputPages() != 1)
        fail("The example does not fill one sheet.");
    TemporaryFolder const plain;
    TemporaryFolder const packed;
    SheetOptions const options{{300, compression}, false};
    Times const times =
        compare({[&] { write(tiffImages, chart, plain); }}, {[&] { write(tiffImages, chart, packed, options); }});
    std::string const work = std::string("TIFF sheet, A3 at 300 dpi, ") + name;
    printRow(work + ", against plain", sizeText(table), times, {Promise::timesAsLong, 10});
    printRow(work, sizeText(table), bytesIn(packed) / bytesIn(plain) * 100, "% of the plain file", mostPercent);
    printRow(work, sizeText(table), addedMemory([&] { write(tiffImages, chart, packed, options); }), "MB added", 8);
}

// 28,063 x 39,685 pixels of four bytes: 4.5 GB.
void benchFineSheet()
{
    InputFile table;
    table.init(examplePath());
    ChartLayout chart = rulerChart(table);
    chart.setName(String("Chart"));
    TemporaryFolder const folder;
    printRow("TIFF sheet, A3 at 2400 dpi, deflate", sizeText(table), addedMemory([&] {
                 write(tiffImages, chart, folder, {{2400, TIFFCompression::deflate}, false});
             }),
             "MB added", 16);
}

} // namespace

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    benchDocument(CMYK, 5000, 300);
    benchDocument(RGB, 5000, 300);
    benchDocument(CMYK, 100'000, 3000);
    benchCompression("LZW", TIFFCompression::lzw, 1.25);
    benchCompression("deflate", TIFFCompression::deflate, 1);
    benchFineSheet();
    ColorEntry::endColorConversions();
    return exitStatus();
}
