// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvString.h"
#include "OvSystemCall.h"

#include <cstddef>
#include <sys/types.h>

/// A file that ends up complete or not at all. Once a write fails or the writer gives up, nothing is left that looks
/// like the finished file.
class WholeFile
{
public:
    /// Opens the file `name` for writing, and creates it with permission bits 0644 or empties it. Only regular files
    /// are opened: data in a pipe or a device could not be removed again.
    explicit WholeFile(String name);
    ~WholeFile() { close(); }
    WholeFile(WholeFile const&) = delete;
    WholeFile& operator=(WholeFile const&) = delete;

    bool isOpen() const { return descriptor >= 0; }

    /// Writes all of `size` bytes at the current position. Returns false on failure.
    bool write(void const* data, std::size_t size);

    /// Moves the position as lseek does; -1 on failure.
    off_t seek(off_t offset, int whence);
    /// The file's size in bytes; -1 if it is not known.
    off_t getSize() const;

    /// Closing will empty and remove the file.
    void giveUp() { isGivenUp = true; }

    /// Waits until the system has put everything written so far on its disk. A failure counts as a failed write.
    ///
    /// \return whether all that was written so far is there; false without an open file
    bool sync();

    /// Closes the file. If anything has failed since it was opened, the file is emptied. It is then also removed from
    /// its folder, unless the name is a link or belongs to another file by now.
    ///
    /// \return whether the file was opened and is complete
    bool close();

    /// Whether the file could not be opened, was given up, or failed since. The answer is final after `close`.
    bool hasFailed() const { return isGivenUp || error.get() != 0; }

    /// The system's error number of the first failure; 0 without one.
    int getError() const { return error.get(); }

private:
    void remove() const;

    String const path;
    int descriptor = -1;
    dev_t device = 0;
    ino_t inode = 0;
    bool isGivenUp = false;
    FirstError error;
};
