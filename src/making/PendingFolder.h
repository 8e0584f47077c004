// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "output/FileFault.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// A folder that appears whole or not at all. Its files are written into a temporary folder beside its place. Finishing
/// puts them on the disk and renames the folder. A folder that is not finished is removed.
class PendingFolder
{
public:
    /// Makes the temporary folder.
    ///
    /// \param place  where the folder is to appear; its parent exists
    explicit PendingFolder(std::filesystem::path place);
    ~PendingFolder() { remove(); }
    PendingFolder(PendingFolder const&) = delete;
    PendingFolder& operator=(PendingFolder const&) = delete;

    /// The error number of making the temporary folder; 0 if there is one.
    int getError() const { return error; }

    /// The temporary folder.
    std::filesystem::path const& path() const { return temporary; }

    /// Puts the files on the disk and gives the folder its name.
    ///
    /// \param replaces  whether a folder of that name may be replaced. It stays until the new one is there. Without it,
    ///                  a folder of that name is the fault EEXIST, and it is left alone.
    std::optional<FileFault> finish(bool replaces);

    /// Removes the temporary folder.
    void remove();

private:
    int rename(bool replaces) const;

    std::filesystem::path target;
    std::filesystem::path temporary;
    int error = 0;
};

/// The first name, in alphabetical order, of something in a folder that is no regular file or fails the test; empty if
/// there is none.
std::string firstForeignFile(std::filesystem::path const& folder,
                             std::function<bool(std::string const&)> const& isOurs);
