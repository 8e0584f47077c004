// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <string>

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "patchloom-XXXXXX").string();
    folder = mkdtemp(name.data());
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

String TemporaryFolder::pathWithSlash() const
{
    return String((folder.string() + "/").c_str());
}

String TemporaryFolder::pathOf(std::string_view name) const
{
    return String((folder / name).c_str());
}

String TemporaryFolder::write(std::string_view name, std::string_view contents) const
{
    std::ofstream(folder / name, std::ios::binary)
        .write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return pathOf(name);
}
