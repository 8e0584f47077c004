// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/PrintableText.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// Where the command's words go: results to standard output, all else to standard error.
class Console
{
public:
    /// Writes a text as it is to standard output.
    ///
    /// \return false, with an error reported, where it takes no more
    bool print(std::string_view text) const;

    /// Writes a text as it is to standard error, where standard output has another result.
    void tell(std::string_view text) const;

    /// Writes a line "patchloom-cli: text" to standard error. Characters that a terminal would obey become "?".
    void error(std::string_view text) const;

    /// The same as "patchloom-cli: warning: text".
    void warn(std::string_view text) const;
};

/// A line on standard error that tells how far long work has come. Only on a terminal, and only after a second.
class Progress
{
public:
    Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Removes the line.
    ~Progress();

    /// Shows a text, at most ten times a second.
    void show(std::string_view text);

    /// Removes the line. Call it before anything else is written to the terminal.
    void clear() { replaceLine(""); }

private:
    using Clock = std::chrono::steady_clock;

    void replaceLine(std::string const& line);

    bool isTerminal;
    Clock::time_point next;
    std::size_t lineLength = 0;
};
