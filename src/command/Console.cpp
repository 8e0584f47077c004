// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Console.h"

#include "lib/OvSystemCall.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include <unistd.h>

namespace
{

bool write(int descriptor, std::string const& text)
{
    return writeAll(descriptor, text.data(), text.size());
}

bool isOnTerminal()
{
    char const* const terminal = std::getenv("TERM");
    bool const isDumb = terminal && std::strcmp(terminal, "dumb") == 0;
    return isatty(STDERR_FILENO) == 1 && !isDumb;
}

} // namespace

bool Console::print(std::string_view text) const
{
    if (write(STDOUT_FILENO, std::string(text)))
        return true;
    error("standard output takes no more: " + std::string(std::strerror(errno)));
    return false;
}

void Console::tell(std::string_view text) const
{
    std::ignore = write(STDERR_FILENO, std::string(text));
}

void Console::error(std::string_view text) const
{
    std::ignore = write(STDERR_FILENO, "patchloom-cli: " + printable(text) + "\n");
}

void Console::warn(std::string_view text) const
{
    error("warning: " + std::string(text));
}

Progress::Progress() : isTerminal(isOnTerminal()), next(Clock::now() + std::chrono::seconds(1)) {}

Progress::~Progress()
{
    replaceLine("");
}

void Progress::show(std::string_view text)
{
    if (!isTerminal || Clock::now() < next)
        return;
    next = Clock::now() + std::chrono::milliseconds(100);
    replaceLine(printable(text));
}

// Blanks cover what is longer in the old line: that needs no control sequence.
void Progress::replaceLine(std::string const& line)
{
    if (line.empty() && lineLength == 0)
        return;
    std::string const blanks(lineLength > line.size() ? lineLength - line.size() : 0, ' ');
    std::ignore = write(STDERR_FILENO, "\r" + line + blanks + "\r" + line);
    lineLength = line.size();
}
