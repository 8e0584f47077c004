// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QFont>

/// Sets another font size of the desktop for as long as the object lives.
class DesktopFont
{
public:
    explicit DesktopFont(double points) : original(QApplication::font())
    {
        QFont font = original;
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
    ~DesktopFont() { QApplication::setFont(original); }
    DesktopFont(DesktopFont const&) = delete;
    DesktopFont& operator=(DesktopFont const&) = delete;

private:
    QFont const original;
};
