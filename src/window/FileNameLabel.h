// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

/// One line of plain text, shortened in its middle while it is painted where it is too long for the label.
class FileNameLabel : public QLabel
{
    Q_OBJECT

public:
    FileNameLabel(QString const& text, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
