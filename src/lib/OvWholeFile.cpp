// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvWholeFile.h"

#include "OvSystemCall.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <utility>

WholeFile::WholeFile(String name) : path(std::move(name))
{
    // A path with a NUL in it would open another file.
    if (std::strlen(path.getNullTerminatedString()) != path.getCount()) {
        errno = EINVAL;
        error.remember();
        return;
    }
    // Non-blocking: opening a pipe without a reader fails at once instead of waiting.
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    descriptor = retryInterrupted([this] { return open(path, flags, 0644); });
    struct stat status = {};
    if (isOpen() && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        descriptor = -1;
        errno = EINVAL;
    }
    if (!isOpen())
        error.remember();
    device = status.st_dev;
    inode = status.st_ino;
}

bool WholeFile::write(void const* data, std::size_t size)
{
    bool const isWritten = writeAll(descriptor, data, size);
    if (!isWritten)
        error.remember();
    return isWritten;
}

off_t WholeFile::seek(off_t offset, int whence)
{
    return lseek(descriptor, offset, whence);
}

off_t WholeFile::getSize() const
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

bool WholeFile::sync()
{
    if (!isOpen())
        return false;
    if (!syncToDisk(descriptor))
        error.remember();
    return !hasFailed();
}

bool WholeFile::close()
{
    if (!isOpen())
        return !hasFailed();
    // The file behind a link is not removed, so it is emptied at least.
    if (hasFailed())
        std::ignore = ftruncate(descriptor, 0);
    // A failed close closes the descriptor too. A network folder can report a full disk as late as this.
    if (::close(descriptor) != 0 && errno != EINTR)
        error.remember();
    descriptor = -1;
    if (hasFailed())
        remove();
    return !hasFailed();
}

void WholeFile::remove() const
{
    struct stat status = {};
    if (lstat(path, &status) == 0 && status.st_dev == device && status.st_ino == inode)
        unlink(path);
}
