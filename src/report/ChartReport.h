// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ReportPage.h"
#include "ReportSubject.h"

/// Makes the page about a chart that has something to output.
PageText chartReport(ReportSubject const& subject);
