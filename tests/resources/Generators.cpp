// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

std::filesystem::path sourceFile(std::string const& name)
{
    return std::filesystem::path(PATCHLOOM_SOURCE) / name;
}

std::string readBytes(std::filesystem::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "patchloom-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr)
        m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryFolder::operator/(std::string const& name) const
{
    return m_path / name;
}

std::filesystem::path const& TemporaryFolder::path() const
{
    return m_path;
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
