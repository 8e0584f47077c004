// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Outside.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <utility>

namespace
{

// ms
constexpr int betweenLooks = 40;
constexpr int betweenKeys = 4;

struct Answer
{
    bool isGood;
    QString text;
};

Answer xdotool(QStringList const& arguments)
{
    QProcess tool;
    tool.start("xdotool", arguments);
    bool const isDone = tool.waitForFinished();
    return {isDone && tool.exitCode() == 0, QString::fromUtf8(tool.readAllStandardOutput()).trimmed()};
}

/// The window that gets the keys. There is none while a window manager changes it.
QString activeWindow()
{
    Answer const active = xdotool({"getactivewindow"});
    return active.isGood && xdotool({"getwindowfocus"}).text == active.text ? active.text : QString();
}

QImage screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

QStringList at(QString const& window, QPoint place)
{
    return {"mousemove", "--window", window, QString::number(place.x()), QString::number(place.y())};
}

} // namespace

bool startWindowManager(QProcess& manager)
{
    manager.start("openbox", QStringList());
    return QTest::qWaitFor([] { return xdotool({"get_desktop"}).isGood; }, longestAnswer);
}

QString windowOf(QProcess const& program, QString const& title, int patience)
{
    QString window;
    bool const isFound = QTest::qWaitFor(
        [&] {
            if (program.state() == QProcess::NotRunning)
                return false;
            window = xdotool({"search", "--all", "--onlyvisible", "--pid", QString::number(program.processId()),
                              "--name", "^" + title + "$"})
                         .text;
            return !window.isEmpty() && activeWindow() == window;
        },
        patience);
    return isFound ? window : QString();
}

QString windowOtherThan(QStringList const& windows)
{
    QString active;
    bool const isFound = QTest::qWaitFor(
        [&] {
            active = activeWindow();
            return !active.isEmpty() && !windows.contains(active);
        },
        longestAnswer);
    return isFound ? active : QString();
}

bool isBackAt(QString const& window, int patience)
{
    return QTest::qWaitFor([&] { return activeWindow() == window; }, patience);
}

QString titleOf(QString const& window)
{
    return xdotool({"getwindowname", window}).text;
}

QSize sizeOf(QString const& window)
{
    // The last line is like "  Geometry: 540x600".
    QStringList const sides = xdotool({"getwindowgeometry", window}).text.section(' ', -1).split('x');
    return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

void click(QString const& window, QPoint place)
{
    xdotool(at(window, place) + QStringList{"click", "1"});
}

void drag(QString const& window, QPoint from, QPoint to)
{
    xdotool(at(window, from) + QStringList{"mousedown", "1"});
    xdotool(at(window, (from + to) / 2));
    xdotool(at(window, to) + QStringList{"mouseup", "1"});
}

void moveTo(QString const& window, QPoint place)
{
    xdotool(at(window, place));
}

void pressButton()
{
    xdotool({"mousedown", "1"});
}

void releaseButton()
{
    xdotool({"mouseup", "1"});
}

void press(QStringList const& keys)
{
    xdotool(QStringList{"key", "--delay", QString::number(betweenKeys)} + keys);
}

void hold(QString const& key)
{
    xdotool({"keydown", key});
}

void release(QString const& key)
{
    xdotool({"keyup", key});
}

void type(QString const& text)
{
    xdotool({"type", "--delay", QString::number(betweenKeys), text});
}

QImage stillScreen()
{
    QImage last;
    // A cursor in an edit blinks more slowly than this.
    std::ignore = QTest::qWaitFor(
        [&] {
            QTest::qWait(betweenLooks);
            QImage const previous = std::exchange(last, screen());
            return last == previous;
        },
        longestAnswer);
    return last;
}

QImage pictureOf(QString const& window)
{
    return QGuiApplication::primaryScreen()->grabWindow(window.toULongLong()).toImage();
}

QImage withoutBackground(QImage const& screen)
{
    QRgb const background = screen.pixel(0, 0);
    QRect used;
    for (int y = 0; y < screen.height(); ++y) {
        for (int x = 0; x < screen.width(); ++x) {
            if (screen.pixel(x, y) != background)
                used |= QRect(x, y, 1, 1);
        }
    }
    return screen.copy(used);
}

bool hasChangedSince(QImage const& before)
{
    return QTest::qWaitFor([&] { return screen() != before; }, longestAnswer);
}
