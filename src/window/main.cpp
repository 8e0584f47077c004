// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUI.h"
#include "Translations.h"

#include "making/ProcessSetUp.h"

#include <QApplication>

int main(int argc, char** argv)
{
    openStandardDescriptors();
    surviveFailedWrites();
    QApplication application(argc, argv);
    Translations translations;
    Controller window;
    return QApplication::exec();
}
