// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// Writes a message and a carriage return to standard error at once and returns. The message is written as it is: it
/// has no placeholders, and further arguments are ignored. A null pointer counts as an empty message.
void OvError(char const* format, ...);

/// Sets whether OvError writes anything; at first it does. A program with messages of its own turns it off.
void showOvErrors(bool areShown);
