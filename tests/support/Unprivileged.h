// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

/// Lets permissions hold for the whole process as long as the object lives: the administrator, whom they do not stop,
/// acts as a user who owns nothing. Anyone else stays who they are.
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
