// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUI.h"
#include "Hand.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

// Makes a chart with the window's own controls, as a user would, and writes its files and a picture of the window.

namespace
{

constexpr int longestRun = 120'000; // ms

char const chartName[] = "New Chart";

/// Answers the dialogs of "Create Files...": the gap warning, if it opens, and the folder dialog.
void chooseFolder(QString const& folder)
{
    whenDialogOpens([folder](QDialog& dialog) {
        if (auto* const ok = dialog.findChild<QPushButton*>("warnOkButton")) {
            chooseFolder(folder);
            click(ok);
        } else {
            takePath(dialog, folder);
        }
    });
}

bool makeChart(QString const& table, QDir const& folder)
{
    Controller window;
    if (!attend(&window))
        return false;

    whenDialogOpens([&table](QDialog& dialog) { takePath(dialog, table); });
    click(window.findChild<QPushButton*>("openButton"));
    choose(window.findChild<QComboBox*>("deviceCombo"), "VT-30 Long Ruler");
    choose(window.findChild<QComboBox*>("pagePresetCombo"), "A3 Portrait");

    QTest::keyPress(&window, Qt::Key_Alt);
    // The display shows the painted picture a moment later.
    QTest::qWait(100);
    bool const isPictureTaken = window.screen()->grabWindow(window.winId()).save(folder.filePath("window.png"));
    QTest::keyRelease(&window, Qt::Key_Alt);

    chooseFolder(folder.path());
    click(window.findChild<QPushButton*>("createButton"));
    return isPictureTaken;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s TABLE FOLDER\n", argv[0]);
        return 2;
    }
    QString const table = QDir::current().absoluteFilePath(QString::fromLocal8Bit(argv[1]));
    QDir const folder(QDir::current().absoluteFilePath(QString::fromLocal8Bit(argv[2])));
    QDir chart(folder.filePath(chartName));
    chart.removeRecursively();
    QTimer::singleShot(longestRun, [] {
        std::fprintf(stderr, "The window does not answer.\n");
        std::_Exit(1);
    });

    bool const isMade = makeChart(table, folder);
    chart.refresh();
    int const sheets = static_cast<int>(chart.entryList({"*.eps"}).size());
    if (!isMade || !chart.exists(QString(chartName) + ".xml") || sheets == 0) {
        std::fprintf(stderr, "No chart came out.\n");
        return 1;
    }
    std::printf("The chart:               %s (sheets: %d)\n", qPrintable(chart.path()), sheets);
    std::printf("A picture of the window: %s\n", qPrintable(folder.filePath("window.png")));
    return 0;
}
