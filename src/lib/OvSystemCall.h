// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cerrno>
#include <cstddef>

#include <unistd.h>

/// Makes a system call that returns a negative number on failure, and repeats it while signals interrupt it.
template <typename Call>
auto retryInterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Waits until the system has put everything written to a descriptor on its disk. Files without a disk, such as pipes,
/// succeed at once.
///
/// \return false if that failed
inline bool syncToDisk(int descriptor)
{
    bool const isOnDisk = retryInterrupted([=] { return fsync(descriptor); }) == 0;
    return isOnDisk || errno == EINVAL || errno == EROFS;
}

/// The first failure of several system calls, as the system's error number.
class FirstError
{
public:
    /// Remembers errno where it is the first failure; an unknown one counts as EIO.
    void remember()
    {
        if (number == 0)
            number = errno != 0 ? errno : EIO;
    }

    /// 0 without a failure.
    int get() const { return number; }

private:
    int number = 0;
};

/// Writes all of `size` bytes to a descriptor, in as many pieces as needed.
///
/// \return false if some bytes could not be written
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
