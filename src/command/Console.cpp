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

// How many bytes the UTF-8 character at the start of the text has; 0 for bytes that are none, or a control character.
std::size_t printableLength(std::string_view text)
{
    auto const byteAt = [&](std::size_t i) -> unsigned {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    unsigned const first = byteAt(0);
    if (first < 0x80)
        return first >= 0x20 && first != 0x7f ? 1 : 0;
    std::size_t const length = first >= 0xf0 && first < 0xf5 ? 4 : first >= 0xe0 ? 3 : first >= 0xc2 ? 2 : 0;
    if (length == 0 || first >= 0xf5)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(i) & 0xc0) != 0x80)
            return 0;
    unsigned const second = byteAt(1);
    // Overlong forms, surrogates, what lies beyond Unicode, and the control characters from 0x80 on.
    bool const isWrong = (first == 0xe0 && second < 0xa0) || (first == 0xed && second >= 0xa0) ||
                         (first == 0xf0 && second < 0x90) || (first == 0xf4 && second >= 0x90) ||
                         (first == 0xc2 && second < 0xa0);
    return isWrong ? 0 : length;
}

bool isOnTerminal()
{
    char const* const terminal = std::getenv("TERM");
    bool const isDumb = terminal && std::strcmp(terminal, "dumb") == 0;
    return isatty(STDERR_FILENO) == 1 && !isDumb;
}

} // namespace

std::string printable(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        std::size_t const length = printableLength(text);
        result += length > 0 ? text.substr(0, length) : "?";
        text.remove_prefix(length > 0 ? length : 1);
    }
    return result;
}

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
