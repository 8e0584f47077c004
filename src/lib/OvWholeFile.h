// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvString.h"

#include <cstddef>
#include <sys/types.h>

/// A file being written that ends up whole or not at all: once a write fails, or the writer gives up, nothing stays
/// behind that could be taken for the finished file.
class WholeFile
{
public:
    /// Opens the file `name` for writing, creating it with permission bits 0644 or emptying it. Only regular files are
    /// opened: a pipe or a device could not be taken back.
    explicit WholeFile(String name);
    ~WholeFile() { close(); }
    WholeFile(WholeFile const&) = delete;
    WholeFile& operator=(WholeFile const&) = delete;

    bool isOpen() const { return descriptor >= 0; }

    /// Writes all of `size` bytes at the present position, or fails.
    bool write(void const* data, std::size_t size);

    /// Moves the position as lseek does; -1 where it cannot.
    off_t seek(off_t offset, int whence);
    /// The file's size in bytes; -1 where it cannot be told.
    off_t getSize() const;

    /// Closing will empty and remove the file.
    void giveUp() { failed = true; }

    /// Waits until the system has put on its disk what was written so far. A failure counts as a failed write.
    ///
    /// \return whether all that was written so far is there; false without an open file
    bool sync();

    /// Closes the file. Where anything failed since it was opened, it is emptied, and removed from its folder unless
    /// another file has taken its place there or the name is a link.
    ///
    /// \return whether the file was opened and is whole
    bool close();

    /// Whether the file could not be opened, was given up, or failed since. The answer is final after `close`.
    bool hasFailed() const { return failed; }

private:
    void remove() const;

    String const path;
    int descriptor = -1;
    dev_t device = 0;
    ino_t inode = 0;
    bool failed = false;
};
