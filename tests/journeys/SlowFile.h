// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/// A file that blocks its writer after a few kilobytes, until it is told to accept the rest. At the end it is a plain
/// file with everything that was written.
class SlowFile
{
public:
    explicit SlowFile(QString const& path);
    ~SlowFile();
    SlowFile(SlowFile const&) = delete;
    SlowFile& operator=(SlowFile const&) = delete;

    /// Lets the writer write the rest, and waits until it is done.
    /// \return whether the plain file exists
    bool takeAll();

private:
    QString const path;
    int descriptor;
};
