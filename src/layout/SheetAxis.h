// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// A sheet and its printable area along one axis, mm: across (x) or up (y). Each change returns whether it was made. A
/// value that is no length changes nothing, and neither does the present value.
struct SheetAxis
{
    double sheet;
    double start;
    double extent;

    double farMargin() const { return sheet - (extent + start); }

    /// Changes the sheet's size and keeps both margins. If the margins leave less than nothing, both become 0.
    bool setSheet(double value)
    {
        if (!(value > 0) || value == sheet)
            return false;
        extent -= sheet - value;
        sheet = value;
        if (extent < 0)
            spreadOut();
        return true;
    }

    /// Changes the margin at the axis' end. If the margins leave nothing, both become 0.
    bool setFarMargin(double value)
    {
        if (!(value >= 0) || value == farMargin())
            return false;
        extent = sheet - start - value;
        if (extent <= 0)
            spreadOut();
        return true;
    }

    /// Changes the margin at the axis' start. If the margins leave nothing, both become 0.
    bool setNearMargin(double value)
    {
        if (!(value >= 0) || value == start)
            return false;
        extent -= value - start;
        start = value;
        if (extent <= 0)
            spreadOut();
        return true;
    }

private:
    void spreadOut()
    {
        extent = sheet;
        start = 0;
    }
};
