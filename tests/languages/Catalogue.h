// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QString>

#include <tuple>

/// A text of the program, as its sources name it.
struct SourceText
{
    QString context;
    QString text;
    QString comment;

    bool operator<(SourceText const& other) const
    {
        return std::tie(context, text, comment) < std::tie(other.context, other.text, other.comment);
    }
};

/// The texts of a translation file (.ts) with their translations. A missing or unfinished translation is empty. There
/// are no texts if the file cannot be read.
QMap<SourceText, QString> readCatalogue(QString const& path);
