// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Run.h"
#include "lib/OvError.h"
#include "making/ProcessSetUp.h"

#include <filesystem>

int main(int argc, char** argv)
{
    openStandardDescriptors();
    surviveFailedWrites();
    // The command tells faults in lines of its own.
    showOvErrors(false);
    std::error_code failure;
    auto const program = std::filesystem::read_symlink("/proc/self/exe", failure);
    useResourcesBeside(String(program.parent_path().c_str()));
    return run({argv + 1, argv + argc});
}
