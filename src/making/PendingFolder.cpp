// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PendingFolder.h"

#include "ChartFiles.h"
#include "lib/OvSystemCall.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

constexpr int mostAttempts = 10;

// Puts a file or folder on the disk. Returns 0 or the error.
int syncPath(fs::path const& path)
{
    int const descriptor = retryInterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); });
    if (descriptor < 0)
        return errno;
    int const error = syncToDisk(descriptor) ? 0 : errno;
    close(descriptor);
    return error;
}

std::optional<FileFault> faultOf(fs::path const& path, int error)
{
    return error != 0 ? std::optional(FileFault{String(path.c_str()), error}) : std::nullopt;
}

fs::path parentOf(fs::path const& path)
{
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

int renameWith(fs::path const& from, fs::path const& to, unsigned flags)
{
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0 ? 0 : errno;
}

bool isUnsupported(int error)
{
    return error == EINVAL || error == ENOSYS;
}

} // namespace

PendingFolder::PendingFolder(fs::path place) : target(std::move(place))
{
    // A chart's name can be as long as the system allows: the temporary name does not contain it.
    std::string pattern = (parentOf(target) / ".patchloom-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        error = errno;
        return;
    }
    temporary = pattern;
    // The permissions that mkdir would give, not those of a private folder.
    mode_t const mask = umask(0);
    umask(mask);
    if (chmod(temporary.c_str(), chartFolderPermissions & ~mask) != 0)
        error = errno;
}

std::optional<FileFault> PendingFolder::finish(bool replaces)
{
    std::error_code failure;
    std::vector<fs::path> files;
    for (fs::directory_iterator next(temporary, failure), end; !failure && next != end; next.increment(failure))
        files.push_back(next->path());
    if (failure)
        return faultOf(temporary, failure.value());
    files.push_back(temporary);
    for (fs::path const& path : files)
        if (auto fault = faultOf(path, syncPath(path)))
            return fault;
    int result = rename(replaces);
    // A folder of that name can come and go between looking and renaming.
    for (int again = 0; replaces && (result == EEXIST || result == ENOENT) && again < mostAttempts; ++again)
        result = rename(replaces);
    if (auto fault = faultOf(target, result))
        return fault;
    // The temporary name now holds the old folder, or nothing.
    remove();
    return faultOf(target, syncPath(parentOf(target)));
}

// Returns 0 or the error. Some file systems cannot swap two names in one step: there, the old folder is moved aside for
// a moment.
int PendingFolder::rename(bool replaces) const
{
    struct stat status;
    bool const isThere = lstat(target.c_str(), &status) == 0;
    if (isThere && !replaces)
        return EEXIST;
    if (isThere && !S_ISDIR(status.st_mode))
        return ENOTDIR;
    int const result = renameWith(temporary, target, isThere ? RENAME_EXCHANGE : RENAME_NOREPLACE);
    if (!isUnsupported(result))
        return result;
    if (!isThere)
        return ::rename(temporary.c_str(), target.c_str()) == 0 ? 0 : errno;
    fs::path const old = temporary.string() + "-old";
    if (::rename(target.c_str(), old.c_str()) != 0)
        return errno;
    if (::rename(temporary.c_str(), target.c_str()) != 0) {
        int const reason = errno;
        ::rename(old.c_str(), target.c_str());
        return reason;
    }
    return ::rename(old.c_str(), temporary.c_str()) == 0 ? 0 : errno;
}

void PendingFolder::remove()
{
    std::error_code ignored;
    if (!temporary.empty())
        fs::remove_all(temporary, ignored);
}

std::string firstForeignFile(fs::path const& folder, std::function<bool(std::string const&)> const& isOurs)
{
    std::error_code failure;
    std::vector<std::string> foreign;
    for (fs::directory_iterator next(folder, failure), end; !failure && next != end; next.increment(failure)) {
        std::string const name = next->path().filename().string();
        bool const isFile = next->symlink_status(failure).type() == fs::file_type::regular;
        if (!isFile || !isOurs(name))
            foreign.push_back(name);
    }
    return foreign.empty() ? "" : *std::min_element(foreign.begin(), foreign.end());
}
