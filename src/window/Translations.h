// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTranslator>

/// Installs the texts in the system locale's language for as long as the object lives. Qt's own texts come from Qt's
/// folder, from the file "qt_" and the locale's name. The program's texts come from the working directory, from the
/// file "myapp_" and the locale's name. Texts without a translation stay as they are.
class Translations
{
public:
    Translations();

private:
    QTranslator toolkitTexts;
    QTranslator ownTexts;
};
