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

/// Answers the next folder dialog.
inline void answerWithFolder(QString const& folder)
{
    whenDialogOpens([folder](QDialog& dialog) { takePath(dialog, folder); });
}

/// The contents of a file without the line with its date.
inline QByteArray withoutDate(QByteArray const& contents)
{
    QList<QByteArray> lines = contents.split('\n');
    lines.removeIf([](QByteArray const& line) { return line.startsWith("CREATED\t"); });
    return lines.join('\n');
}

/// The contents of the files in a folder, without their dates, by their names.
inline QMap<QString, QByteArray> filesIn(QString const& folder)
{
    QMap<QString, QByteArray> files;
    for (QString const& name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        QFile file(QDir(folder).filePath(name));
        files[name] = file.open(QIODevice::ReadOnly) ? withoutDate(file.readAll()) : QByteArray("unreadable");
    }
    return files;
}
