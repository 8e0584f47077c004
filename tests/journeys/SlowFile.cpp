// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SlowFile.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int pipeSize = 4096;

// ms
constexpr int longestPause = 15'000;

} // namespace

SlowFile::SlowFile(QString const& file) : path(file)
{
    mkfifo(QFile::encodeName(path).constData(), 0600);
    descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    fcntl(descriptor, F_SETPIPE_SZ, pipeSize);
}

SlowFile::~SlowFile()
{
    close(descriptor);
}

bool SlowFile::takeAll()
{
    QByteArray contents;
    char buffer[pipeSize];
    pollfd writer{descriptor, POLLIN, 0};
    while (poll(&writer, 1, longestPause) > 0) {
        ssize_t const length = read(descriptor, buffer, sizeof buffer);
        if (length <= 0)
            break;
        contents.append(buffer, length);
    }
    QFile::remove(path);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}
