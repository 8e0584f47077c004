// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvFile.h"

#include "OvSystemCall.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

File::File(String const& path, int flags, int mode) : name(path)
{
    char const* const text = path.getNullTerminatedString();
    // A path with a NUL in it would open another file.
    if (std::strlen(text) == path.getCount())
        descriptor = retryInterrupted([=] { return open(text, flags | O_CLOEXEC | O_NOCTTY, mode); });
    else
        errno = EINVAL;
}

long long File::getFileSize() const
{
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void File::Close()
{
    closeDescriptor();
}

bool File::closeDescriptor()
{
    // A network folder can report a full disk as late as this. A signal is no failure: the descriptor is closed anyway.
    bool const isClosed = descriptor <= STDERR_FILENO || close(descriptor) == 0 || errno == EINTR;
    descriptor = -1;
    return isClosed;
}

// Defined here because OvString knows nothing of files.
void String::print(WFile* file) const
{
    file->writeString(*this);
}

String getWorkingDirectory()
{
    char* const text = getcwd(nullptr, 0);
    if (!text)
        return {};
    String folder(static_cast<char const*>(text));
    std::free(text);
    return folder.getCount() >= 2 ? folder.getStringWithoutEndingSlash() : folder;
}
