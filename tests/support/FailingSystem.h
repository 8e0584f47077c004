// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

// The calls below take the place of the C library's. Only one source of a program may include this header.

/// What the system does to the next calls on descriptors above 2.
struct SystemFaults
{
    int interruptions = 0;                         ///< how many writes a signal interrupts
    std::size_t mostBytesAtOnce = ~std::size_t{0}; ///< most that one write takes
    std::size_t freeBytes = ~std::size_t{0};       ///< room on the disk
    int closingError = 0;                          ///< errno of the next close; 0 for none
    int syncError = 0;                             ///< errno of every fsync; 0 for none
    int syncCount = 0;                             ///< how many times fsync was called
};

inline SystemFaults systemFaults;

extern "C" ssize_t write(int descriptor, void const* data, size_t size)
{
    if (descriptor > STDERR_FILENO) {
        if (systemFaults.interruptions > 0) {
            --systemFaults.interruptions;
            errno = EINTR;
            return -1;
        }
        if (size > 0 && systemFaults.freeBytes == 0) {
            errno = ENOSPC;
            return -1;
        }
        size = std::min({size, systemFaults.mostBytesAtOnce, systemFaults.freeBytes});
        systemFaults.freeBytes -= size;
    }
    return syscall(SYS_write, descriptor, data, size);
}

extern "C" int close(int descriptor)
{
    auto const result = static_cast<int>(syscall(SYS_close, descriptor));
    if (descriptor > STDERR_FILENO && systemFaults.closingError != 0) {
        errno = systemFaults.closingError;
        systemFaults.closingError = 0;
        return -1;
    }
    return result;
}

extern "C" int fsync(int descriptor)
{
    ++systemFaults.syncCount;
    if (systemFaults.syncError != 0) {
        errno = systemFaults.syncError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}
