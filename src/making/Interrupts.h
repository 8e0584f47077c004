// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// While it lives, SIGINT, SIGTERM and SIGHUP do not end the process. They are remembered, so that unfinished files can
/// be removed. Only one object may live at a time. A signal that was ignored before stays ignored.
class Interrupts
{
public:
    Interrupts();
    ~Interrupts();
    Interrupts(Interrupts const&) = delete;
    Interrupts& operator=(Interrupts const&) = delete;

    /// The signal that came first; 0 for none.
    static int signal();

    /// Ends the process like an unhandled signal. Call it when everything is removed.
    [[noreturn]] static void endProcess(int signal);
};
