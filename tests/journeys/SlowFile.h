// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// A file that takes no more than a few kilobytes until it is told to: whoever writes more into it waits. At the end it
/// is a plain file with all that was written.
class SlowFile
{
public:
    explicit SlowFile(QString const& path);
    ~SlowFile();
    SlowFile(SlowFile const&) = delete;
    SlowFile& operator=(SlowFile const&) = delete;

    /// Lets the writer write the rest, and waits until it is done.
    /// \return whether the plain file is there
    bool takeAll();

private:
    QString const path;
    int descriptor;
};
