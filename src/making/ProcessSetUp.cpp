// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProcessSetUp.h"

#include "color/ColorEntry.h"
#include "lib/Folders.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

void openStandardDescriptors()
{
    for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
}

void surviveFailedWrites()
{
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void useResourcesBeside(String const& programFolder)
{
    exepath = programFolder;
    respath = programFolder + "/../Resources/";
    ColorEntry::prepareColorConversions();
}
