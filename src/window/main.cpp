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

// A standard descriptor that is closed would become the next file's, and messages would be written into that.
void openStandardDescriptors()
{
    for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
}

// A file at its size limit and a pipe that nobody reads any more fail what is written to them, and no more.
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
