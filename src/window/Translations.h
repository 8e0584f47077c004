// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTranslator>

/// The texts in the system locale's language, installed as long as the object lives: the toolkit's from its own folder,
/// "qt_" and the locale's name, and the program's from the working directory, "myapp_" and the locale's name. Texts
/// without a translation stay as they are.
class Translations
{
public:
    Translations();

private:
    QTranslator toolkitTexts;
    QTranslator ownTexts;
};
