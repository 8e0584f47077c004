// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>

// A person's eyes and hands on the windows of other programs: all goes through the display.

/// How long a window, or what it is to do, may let itself be waited for, ms.
constexpr int longestAnswer = 15'000;

/// Starts a window manager and waits until it manages.
/// \return whether it does
bool startWindowManager(QProcess& manager);

/// Waits for a program's window with a title to become the active one, for so many ms.
/// \return its id; empty where none comes
QString windowOf(QProcess const& program, QString const& title, int patience = longestAnswer);

/// Waits until another window than those given is active.
/// \return its id; empty where none comes
QString windowOtherThan(QStringList const& windows);

/// Waits until a window is active, for so many ms.
bool isBackAt(QString const& window, int patience = longestAnswer);

QString titleOf(QString const& window);

/// Without its frame, in pixels of the screen.
QSize sizeOf(QString const& window);

/// The mouse, at a place in a window, in its pixels from the top left.
void click(QString const& window, QPoint place);
void drag(QString const& window, QPoint from, QPoint to);
void moveTo(QString const& window, QPoint place);
void pressButton();
void releaseButton();

/// Keys go to the active window.
void press(QStringList const& keys);
void hold(QString const& key);
void release(QString const& key);
void type(QString const& text);

/// What is on the screen, as soon as it stands still.
QImage stillScreen();

/// What is on the screen of a window, without its frame.
QImage pictureOf(QString const& window);

/// The part of a screen that windows take up.
QImage withoutBackground(QImage const& screen);

/// Waits until the screen differs from what it was.
bool hasChangedSince(QImage const& before);
