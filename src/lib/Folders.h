// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvString.h"

/// Folder of the executable, UTF-8, without an ending slash. Set once by the main window; empty until then.
extern String exepath;

/// Folder of the resources, UTF-8, with its ending slash. The path of a resource is respath followed by its file name.
extern String respath;
