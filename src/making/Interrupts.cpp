// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Interrupts.h"

#include <csignal>
#include <cstdlib>
#include <iterator>

namespace
{

constexpr int handled[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t first = 0;
struct sigaction before[std::size(handled)];

void remember(int number)
{
    if (first == 0)
        first = number;
}

} // namespace

Interrupts::Interrupts()
{
    first = 0;
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < std::size(handled); ++i) {
        sigaction(handled[i], nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN)
            sigaction(handled[i], &action, nullptr);
    }
}

Interrupts::~Interrupts()
{
    for (std::size_t i = 0; i < std::size(handled); ++i)
        sigaction(handled[i], &before[i], nullptr);
}

int Interrupts::signal()
{
    return first;
}

void Interrupts::endProcess(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    constexpr int signalBase = 128;
    std::_Exit(signalBase + signal);
}
