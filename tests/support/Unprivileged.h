// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

/// While the object lives, file permissions apply to the process. The administrator, who has every permission, acts as
/// the user nobody. Any other user stays the same.
class Unprivileged
{
public:
    Unprivileged() : user(geteuid()), group(getegid())
    {
        constexpr uid_t nobody = 65534;
        if (user == 0 && (setegid(nobody) != 0 || seteuid(nobody) != 0))
            _exit(1);
    }
    ~Unprivileged()
    {
        if (user == 0 && (seteuid(user) != 0 || setegid(group) != 0))
            _exit(1);
    }
    Unprivileged(Unprivileged const&) = delete;
    Unprivileged& operator=(Unprivileged const&) = delete;

private:
    uid_t const user;
    gid_t const group;
};
