// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PageTemplate.h"
#include "layout/ChartLayout.h"

/// Fills the template plane.html: the patches of the table in a* and b*, and the outline of the profile.
void fillPlane(TemplateValues values, ChartLayout const& chart);

/// Fills the template lightness.html: the patches of the table by L* and chroma.
void fillLightness(TemplateValues values, ChartLayout const& chart);
