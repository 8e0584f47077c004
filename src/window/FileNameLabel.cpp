// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileNameLabel.h"

#include <QStylePainter>

FileNameLabel::FileNameLabel(QString const& text, QWidget* parent) : QLabel(text, parent)
{
    // A file's name may look like markup.
    setTextFormat(Qt::PlainText);
}

void FileNameLabel::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QRect const line = contentsRect();
    painter.drawItemText(line, static_cast<int>(alignment()) | Qt::TextSingleLine, palette(), isEnabled(),
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, line.width()), foregroundRole());
}
