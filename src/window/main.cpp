// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUI.h"
#include "Translations.h"

#include <QApplication>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace
{

// If a standard descriptor is closed, the next file that is opened gets its number, and messages go into that file.
void openStandardDescriptors()
{
    for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
}

// Writing to a file at its size limit, or to a pipe without a reader, then only fails. It does not end the process.
void surviveFailedWrites()
{
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace

int main(int argc, char** argv)
{
    openStandardDescriptors();
    surviveFailedWrites();
    QApplication application(argc, argv);
    Translations translations;
    Controller window;
    return QApplication::exec();
}
