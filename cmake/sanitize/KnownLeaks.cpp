// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What sanitized programs with a window are to pass over: memory that the desktop's libraries keep until the process
// ends. Leaks of our own are none of these.

extern "C" {

// A library that is gone when leaks are looked for has no name to be passed over by.
int dlclose(void*)
{
    return 0;
}

char const* __lsan_default_suppressions()
{
    return "leak:libdbus-1.so\n"
           "leak:libfontconfig.so\n"
           "leak:libGLX_mesa.so\n"
           "leak:libGLX.so\n"
           "leak:libEGL_mesa.so\n"
           "leak:swrast_dri.so\n"
           "leak:libLLVM\n";
}

char const* __lsan_default_options()
{
    return "print_suppressions=0";
}
}
