// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdio>
#include <string>

/// Captures what the process writes to a descriptor while the object lives. The default is standard error.
class CapturedOutput
{
public:
    explicit CapturedOutput(int descriptor = 2);
    ~CapturedOutput();
    CapturedOutput(CapturedOutput const&) = delete;
    CapturedOutput& operator=(CapturedOutput const&) = delete;

    /// Everything written so far, byte for byte.
    std::string text() const;

private:
    int const captured;
    int const original;
    std::FILE* const file;
};

/// What a function writes to standard error.
template <typename Function>
std::string errorsOf(Function const& function)
{
    CapturedOutput const errors;
    function();
    return errors.text();
}
