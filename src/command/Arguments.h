// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <variant>
#include <vector>

// What the user typed, as texts. Numbers are read elsewhere, by std::from_chars: the library that splits the arguments
// would take a decimal comma where the locale has one.

/// How a table is read.
struct TableArguments
{
    std::string table;  ///< path, or "-" for standard input
    std::string scale;  ///< "1", "100", "255" or "65535"; empty: as the rules decide
    std::string space;  ///< "cmyk" or "rgb"; empty: as the columns say
    std::string number; ///< which of the file's tables, from "1"; empty: the first with device values
};

/// Where devices and papers of one's own come from.
struct PresetArguments
{
    std::string path; ///< empty: the user's configuration
};

struct ChartArguments
{
    TableArguments table;
    PresetArguments presets;
    std::string device = "gb-spot";
    std::string paper = "a4-portrait";
    std::string margins; ///< "T,R,B,L"; empty: the paper's own
    std::string patch = "8";
    std::string name; ///< empty: the table's file name without its extension
    std::string formats = "eps";
    std::string resolution;  ///< dots per inch; empty: 300
    std::string compression; ///< "none", "lzw" or "deflate"; empty: none
    std::string folder = ".";
    std::string gaps = "auto";
    std::string order = "standard";
    std::string effort = "1";
    bool clip = false;
    bool scaleMark = false;
    bool force = false;
    bool lenient = false;
    bool json = false;
    bool quiet = false;
};

struct ListArguments
{
    PresetArguments presets;
    std::string what; ///< "devices" or "papers"; empty: both
    bool json = false;
};

struct ConvertArguments
{
    TableArguments table;
    std::string output; ///< empty: standard output
    std::string ids;    ///< where the rows' identifiers go; empty: nowhere
    bool force = false;
};

struct DescribeArguments
{
    TableArguments table;
    bool json = false;
};

/// A table to make from nothing.
struct PatchSetArguments
{
    std::string space;    ///< "cmyk" or "rgb"
    std::string patches;  ///< how many; empty with `fit`
    std::string fit;      ///< how many sheets to fill; empty with `patches`
    std::string output;   ///< empty: standard output
    std::string inkLimit; ///< percent; empty: 320
    std::string profile;  ///< path; empty: the program's own profiles
    std::string whites;   ///< empty: 4
    std::string neutrals; ///< empty: by the number of patches
    std::string ramps;    ///< the same
    std::string include;  ///< path of a table, or "-"; empty: none
    std::string rounding; ///< "1", "0.1" or "8bit"; empty: by the colour space
    std::string neutralWeight = "1";
    std::string seed = "0";
    std::string device = "gb-spot";
    std::string paper = "a4-portrait";
    std::string margins; ///< as in ChartArguments
    std::string patch = "8";
    PresetArguments presets;
    bool force = false;
    bool json = false;
};

/// A help text or the version, for standard output.
struct Information
{
    std::string text;
};

/// Arguments that cannot be used, and why.
struct WrongUse
{
    std::string text;
};

using Arguments = std::variant<ChartArguments, ListArguments, ConvertArguments, DescribeArguments, PatchSetArguments,
                               Information, WrongUse>;

/// Reads the arguments that follow the program's name.
Arguments parseArguments(std::vector<std::string> arguments);
