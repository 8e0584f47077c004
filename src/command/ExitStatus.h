// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// What the command's exit status says.
enum ExitStatus : int { done = 0, notMade = 1, wrongUse = 2 };
