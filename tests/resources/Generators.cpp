// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"

#include "support/ChartCase.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

std::filesystem::path sourceFile(std::string const& name)
{
    return std::filesystem::path(PATCHLOOM_SOURCE) / name;
}

int run(std::vector<std::string> const& command)
{
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    pid_t const child = fork();
    if (child == 0) {
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    bool const ended = child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status);
    return ended ? WEXITSTATUS(status) : -1;
}

void expectSameBytes(std::filesystem::path const& made, std::string const& committed)
{
    std::string const bytes = bytesOf(made);
    EXPECT_FALSE(bytes.empty());
    EXPECT_TRUE(bytes == bytesOf(sourceFile(committed))) << committed;
}
