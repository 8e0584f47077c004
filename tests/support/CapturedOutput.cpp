// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/CapturedOutput.h"

#include <unistd.h>

CapturedOutput::CapturedOutput(int descriptor) : captured(descriptor), original(dup(descriptor)), file(std::tmpfile())
{
    std::fflush(nullptr);
    dup2(fileno(file), captured);
}

CapturedOutput::~CapturedOutput()
{
    std::fflush(nullptr);
    dup2(original, captured);
    close(original);
    std::fclose(file);
}

std::string CapturedOutput::text() const
{
    std::fflush(nullptr);
    std::string text;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = pread(fileno(file), buffer, sizeof buffer, static_cast<off_t>(text.size()))) > 0)
        text.append(buffer, static_cast<std::size_t>(count));
    return text;
}
