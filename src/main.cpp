// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUI.h"
#include "GUITranslations.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Translations translations;
    Controller window;
    return QApplication::exec();
}
