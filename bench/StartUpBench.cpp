// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "GUI.h"
#include "Translations.h"

#include <QApplication>
#include <QOpenGLWidget>
#include <QProcess>

#include <cstdio>
#include <cstdlib>
#include <cstring>

// From the start of the program to its first picture, against a window that shows nothing by OpenGL.

namespace
{

// Says so when the display has the view's first picture, and ends the program.
int runUntilShown(QOpenGLWidget const* view)
{
    QObject::connect(view, &QOpenGLWidget::frameSwapped, qApp, [] {
        std::puts("shown");
        std::fflush(stdout);
        QCoreApplication::quit();
    });
    return QApplication::exec();
}

int showEmptyWindow()
{
    QMainWindow window;
    window.setFixedSize(540, 600);
    QOpenGLWidget view(&window);
    view.setGeometry(20, 300, 500, 280);
    window.show();
    return runUntilShown(&view);
}

int showProgram()
{
    Translations const translations;
    Controller const window;
    return runUntilShown(window.findChild<OpenGLView*>("preview"));
}

/// A run of this program that shows one of the windows.
class Showing
{
public:
    explicit Showing(char const* windowName) : name(windowName) {}
    ~Showing() { process.waitForFinished(); }
    Showing(Showing const&) = delete;
    Showing& operator=(Showing const&) = delete;

    Side side()
    {
        return {[this] { start(); }, [this] { process.waitForFinished(); }};
    }

private:
    void start()
    {
        process.start(QCoreApplication::applicationFilePath(), {name});
        if (!process.waitForReadyRead()) {
            std::fprintf(stderr, "The window is not shown.\n");
            std::exit(1);
        }
    }

    QString name;
    QProcess process;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2) {
        QApplication application(argc, argv);
        return std::strcmp(argv[1], "empty") == 0 ? showEmptyWindow() : showProgram();
    }
    QCoreApplication application(argc, argv);
    Showing empty("empty");
    Showing program("program");
    printRow("start to first picture, against empty window", "no chart",
             compare(empty.side(), program.side(), Clock::wall), {Promise::timesAsLong, 2});
    return exitStatus();
}
