// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Controller.h"

#include "QtText.h"
#include "making/ChartFiles.h"
#include "making/ChartMaking.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileDialog>
#include <QLabel>
#include <QRadioButton>
#include <QThread>
#include <QWindow>

#include <sys/stat.h>

namespace
{

// How long to wait for a display that shows nothing, ms.
constexpr int longestWait = 200;

// A window is painted when the display exposes it.
void waitUntilPainted(QWidget const& window)
{
    QDeadlineTimer const deadline(longestWait);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    while (!window.windowHandle()->isExposed() && !deadline.hasExpired()) {
        QThread::msleep(1);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

} // namespace

void Controller::handleOpenFileButton()
{
    QFileDialog dialog(this, QString(), QString(), QString());
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (dialog.exec() == QDialog::Rejected)
        return;
    QStringList const files = dialog.selectedFiles();
    if (!files.isEmpty())
        setInputFilename(toString(files.first()));
}

void Controller::handleWarnOkButton()
{
    warnDialog->accept();
}

void Controller::handleWarnCancelButton()
{
    warnDialog->reject();
}

void Controller::handleButton()
{
    if (needsGaps(chartLayout, minDeltaE) && warnDialog->exec() == QDialog::Rejected)
        return;
    QString const chosen = QFileDialog::getExistingDirectory(this, tr("Please select a directory.", "Save dialog text"),
                                                             QString(), QFileDialog::ShowDirsOnly);
    if (chosen.isEmpty())
        return;
    String const folder = chartFolder(toString(chosen), chartLayout.getName());

    QDialog progress(this);
    progress.setWindowTitle("Creating files...");
    progress.setFixedSize(300, 100);
    progress.setFont(font());
    QLabel message(tr("Creating files...", "creating files message"), &progress);
    message.setGeometry(20, 60, 260, 50);
    message.setAlignment(Qt::AlignHCenter);
    progress.show();
    progress.setWindowModality(Qt::WindowModal);
    waitUntilPainted(progress);

    // The result is not needed: a folder may exist already, and without one writing the files reports errors.
    mkdir(folder, chartFolderPermissions);
    std::vector<ImageKind const*> kinds;
    if (epsRadio->isChecked())
        kinds.push_back(&epsImages);
    if (tiffRadio->isChecked())
        kinds.push_back(&tiffImages);
    writeChartFiles(chartLayout, folder, targetDescriptionName(folder), kinds);
}
