// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cerrno>
#include <cstddef>

#include <unistd.h>

/// Makes a call of the system that answers below 0 for a failure, again as long as signals interrupt it.
template <typename Call>
auto retryInterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Waits until the system has put what was written to a descriptor on its disk. What has no disk, such as a pipe, needs
/// no wait.
///
/// \return false where that failed
inline bool syncToDisk(int descriptor)
{
    bool const isOnDisk = retryInterrupted([=] { return fsync(descriptor); }) == 0;
    return isOnDisk || errno == EINVAL || errno == EROFS;
}

/// Writes all of `size` bytes to a descriptor, in as many pieces as it takes.
///
/// \return false where it takes no more
inline bool writeAll(int descriptor, void const* bytes, std::size_t size)
{
    auto const* next = static_cast<char const*>(bytes);
    while (size > 0) {
        auto const written = retryInterrupted([&] { return write(descriptor, next, size); });
        if (written <= 0)
            return false;
        next += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}
