// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// How a run of the program ended, and what it said.
struct Outcome
{
    int exitStatus = -1; ///< -1 where a signal ended it
    int signal = 0;      ///< which one; 0 for none
    std::string output;
    std::string errors;
};

/// What surrounds a run of the program.
struct Surroundings
{
    std::filesystem::path folder;         ///< where it runs
    std::vector<std::string> environment; ///< "NAME=value"
    std::string input;                    ///< path of its standard input; empty: nothing to read
    std::string output;                   ///< path of its standard output; empty: captured
    bool readsNobody = false;             ///< standard output is a pipe that nobody reads
    std::optional<rlim_t> mostFileBytes;
};

/// The program, started. Its output is read when it is waited for.
class StartedCommand
{
public:
    StartedCommand(std::vector<std::string> const& arguments, Surroundings const& around)
    {
        int outputs[2] = {-1, -1};
        int errors[2] = {-1, -1};
        EXPECT_EQ(pipe2(outputs, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(errors, O_CLOEXEC), 0);
        if (around.readsNobody)
            close(std::exchange(outputs[0], -1));
        process = fork();
        if (process == 0)
            become(arguments, around, outputs[1], errors[1]);
        close(outputs[1]);
        close(errors[1]);
        ends[0] = outputs[0];
        ends[1] = errors[0];
    }

    ~StartedCommand()
    {
        if (process > 0) {
            kill(SIGKILL);
            wait();
        }
    }
    StartedCommand(StartedCommand const&) = delete;
    StartedCommand& operator=(StartedCommand const&) = delete;

    void kill(int signal) const { ::kill(process, signal); }

    Outcome wait()
    {
        Outcome outcome;
        std::string* const texts[] = {&outcome.output, &outcome.errors};
        pollfd polled[] = {{ends[0], POLLIN, 0}, {ends[1], POLLIN, 0}};
        while ((polled[0].fd >= 0 || polled[1].fd >= 0) && poll(polled, 2, -1) > 0)
            for (int i = 0; i < 2; ++i) {
                if (polled[i].revents == 0)
                    continue;
                char bytes[4096];
                ssize_t const got = read(polled[i].fd, bytes, sizeof bytes);
                if (got > 0)
                    texts[i]->append(bytes, static_cast<std::size_t>(got));
                else
                    close(std::exchange(polled[i].fd, -1));
            }
        int status = 0;
        waitpid(std::exchange(process, -1), &status, 0);
        if (WIFEXITED(status))
            outcome.exitStatus = WEXITSTATUS(status);
        else
            outcome.signal = WTERMSIG(status);
        return outcome;
    }

private:
    [[noreturn]] static void become(std::vector<std::string> const& arguments, Surroundings const& around, int output,
                                    int errors)
    {
        int const input = open(around.input.empty() ? "/dev/null" : around.input.c_str(), O_RDONLY);
        if (!around.output.empty())
            output = open(around.output.c_str(), O_WRONLY | O_CREAT, 0600);
        if (chdir(around.folder.c_str()) != 0 || dup2(input, 0) < 0 || dup2(output, 1) < 0 || dup2(errors, 2) < 0)
            _exit(126);
        // A shell starts what runs in the background with signals ignored.
        for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
            std::signal(signal, SIG_DFL);
        if (around.mostFileBytes) {
            rlimit const limit = {*around.mostFileBytes, *around.mostFileBytes};
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        std::vector<char*> words{const_cast<char*>(PATCHLOOM_COMMAND_PROGRAM)};
        for (std::string const& argument : arguments)
            words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        std::vector<char*> variables;
        for (std::string const& variable : around.environment)
            variables.push_back(const_cast<char*>(variable.c_str()));
        variables.push_back(nullptr);
        execve(PATCHLOOM_COMMAND_PROGRAM, words.data(), variables.data());
        _exit(127);
    }

    pid_t process = -1;
    int ends[2] = {-1, -1};
};

/// A test that runs the program in a folder of its own, which is its home too. PDF documents have a fixed date.
class CommandTest : public testing::Test
{
protected:
    Outcome run(std::vector<std::string> const& arguments) const { return runIn(around, arguments); }

    static Outcome runIn(Surroundings const& surroundings, std::vector<std::string> const& arguments)
    {
        return StartedCommand(arguments, surroundings).wait();
    }

    /// A file or folder in the working folder.
    std::filesystem::path pathOf(std::string const& name) const { return work.path() / name; }

    TemporaryFolder const work;
    Surroundings const around{work.path(), {"HOME=" + work.path().string(), "SOURCE_DATE_EPOCH=0"}, "", "", false,
                              std::nullopt};
};

/// A plain table of RGB patches of which no two are alike, up to 216.
inline std::string rgbTable(int count)
{
    std::string text = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < count; ++i)
        text += std::to_string(i % 6 * 51) + " " + std::to_string(i / 6 % 6 * 51) + " " +
                std::to_string(i / 36 % 6 * 51) + "\n";
    return text;
}

/// The same for CMYK.
inline std::string cmykTable(int count)
{
    std::string text = "CMYK_C CMYK_M CMYK_Y CMYK_K\n";
    for (int i = 0; i < count; ++i)
        text += std::to_string(i % 6 * 20) + " " + std::to_string(i / 6 % 6 * 20) + " " +
                std::to_string(i / 36 % 6 * 20) + " " + std::to_string(i % 2 * 30) + "\n";
    return text;
}
