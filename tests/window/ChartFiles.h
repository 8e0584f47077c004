// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Hand.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QList>
#include <QMap>
#include <QPushButton>
#include <QString>

/// Answers the folder dialog that comes next.
inline void answerWithFolder(QString const& folder)
{
    whenDialogOpens([folder](QDialog& dialog) { takePath(dialog, folder); });
}

/// A file without the line that says when it was made.
inline QByteArray withoutDate(QByteArray const& contents)
{
    QList<QByteArray> lines = contents.split('\n');
    lines.removeIf([](QByteArray const& line) { return line.startsWith("CREATED\t"); });
    return lines.join('\n');
}

/// The files in a folder by their names, and what is in them, but for the date.
inline QMap<QString, QByteArray> filesIn(QString const& folder)
{
    QMap<QString, QByteArray> files;
    for (QString const& name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        QFile file(QDir(folder).filePath(name));
        files[name] = file.open(QIODevice::ReadOnly) ? withoutDate(file.readAll()) : QByteArray("unreadable");
    }
    return files;
}
