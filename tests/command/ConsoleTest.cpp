// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "command/Console.h"

#include "support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace
{

// What a terminal on standard error is sent.
template <typename Function>
std::string sentToTerminal(Function const& function)
{
    int const terminal = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    int const end = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    int const before = dup(STDERR_FILENO);
    dup2(end, STDERR_FILENO);
    function();
    dup2(before, STDERR_FILENO);
    close(before);
    fcntl(terminal, F_SETFL, O_NONBLOCK);
    std::string text(1000, '\0');
    ssize_t const count = read(terminal, text.data(), text.size());
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    close(end);
    close(terminal);
    return text;
}

} // namespace

TEST(Console, WritesErrorsAndWarningsAsLines)
{
    EXPECT_EQ(errorsOf([] { Console().error("a\nb"); }), "patchloom-cli: a?b\n");
    EXPECT_EQ(errorsOf([] { Console().warn("c"); }), "patchloom-cli: warning: c\n");
    CapturedOutput const output(STDOUT_FILENO);
    EXPECT_TRUE(Console().print("as\nit is\x1B"));
    EXPECT_EQ(output.text(), "as\nit is\x1B");
}

TEST(Progress, IsShownOnATerminalAfterASecondAndRemoved)
{
    setenv("TERM", "xterm", 1);
    EXPECT_EQ(sentToTerminal([] {
                  Progress progress;
                  progress.show("too early");
                  usleep(1010000);
                  progress.show("sheet 1 of 2");
                  progress.show("too soon after that");
              }),
              "\rsheet 1 of 2\rsheet 1 of 2\r            \r");
}

TEST(Progress, IsShownNowhereElse)
{
    auto const work = [] {
        Progress progress;
        usleep(1010000);
        progress.show("sheet 1 of 2");
    };
    setenv("TERM", "xterm", 1);
    EXPECT_EQ(errorsOf(work), "");
    setenv("TERM", "dumb", 1);
    EXPECT_EQ(sentToTerminal(work), "");
}
