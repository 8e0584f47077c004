// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Catalogue.h"

#include <QFile>
#include <QXmlStreamReader>

QMap<SourceText, QString> readCatalogue(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QMap<SourceText, QString> texts;
    SourceText source;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            source.context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            source.text.clear();
            source.comment.clear();
        } else if (xml.name() == QLatin1String("source")) {
            source.text = xml.readElementText();
        } else if (xml.name() == QLatin1String("comment")) {
            source.comment = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            // Of the type "unfinished", or no longer in the sources.
            bool const isInUse = !xml.attributes().hasAttribute("type");
            QString const translation = xml.readElementText();
            texts[source] = isInUse ? translation : QString();
        }
    }
    return xml.hasError() ? QMap<SourceText, QString>() : texts;
}
