// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Interrupts.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace
{

// How a child process ends that runs a function.
template <typename Function>
int statusOf(Function const& function)
{
    pid_t const child = fork();
    if (child == 0) {
        // A shell starts what runs in the background with signals ignored.
        for (int const signal : {SIGINT, SIGTERM, SIGHUP})
            std::signal(signal, SIG_DFL);
        function();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

class InterruptsTest : public testing::TestWithParam<int>
{
};

using HandlerOf = void (*)(int);

HandlerOf handlerOf(int signal)
{
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

} // namespace

TEST_P(InterruptsTest, AreRememberedAndEndNothing)
{
    int const status = statusOf([] {
        Interrupts const interrupts;
        if (Interrupts::signal() != 0)
            _exit(2);
        std::raise(GetParam());
        if (Interrupts::signal() != GetParam())
            _exit(3);
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

TEST_P(InterruptsTest, EndTheProcessAsIfNobodyHadHandledThem)
{
    int const status = statusOf([] {
        Interrupts const interrupts;
        Interrupts::endProcess(GetParam());
    });
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), GetParam());
}

TEST_P(InterruptsTest, AreHandledAsBeforeWhenTheObjectDies)
{
    HandlerOf const before = SIG_DFL;
    std::signal(GetParam(), before);
    {
        Interrupts const interrupts;
        EXPECT_NE(handlerOf(GetParam()), before);
    }
    EXPECT_EQ(handlerOf(GetParam()), before);
}

TEST_P(InterruptsTest, StayIgnoredWhereTheyWere)
{
    // As under nohup, and for commands in the background of a script.
    int const status = statusOf([] {
        std::signal(GetParam(), SIG_IGN);
        Interrupts const interrupts;
        std::raise(GetParam());
        _exit(Interrupts::signal());
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

INSTANTIATE_TEST_SUITE_P(, InterruptsTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(Interrupts, KeepTheFirstSignalOnly)
{
    int const status = statusOf([] {
        {
            Interrupts const interrupts;
            std::raise(SIGTERM);
            std::raise(SIGINT);
            if (Interrupts::signal() != SIGTERM)
                _exit(2);
        }
        Interrupts const again;
        _exit(Interrupts::signal());
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
