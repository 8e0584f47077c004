// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

/// One line of plain text. If it is too long for the label, it is painted with its middle left out.
class FileNameLabel : public QLabel
{
    Q_OBJECT

public:
    FileNameLabel(QString const& text, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
