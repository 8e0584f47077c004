// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>

// What a person does with the windows of other programs. Everything goes through the display.

/// The longest time to wait for a window or an action, ms.
constexpr int longestAnswer = 15'000;

/// Starts a window manager and waits until it is ready.
/// \return false if it is not
bool startWindowManager(QProcess& manager);

/// Waits until a program's window with a title is active, at most the given ms.
/// \return its id; empty if there is none in time
QString windowOf(QProcess const& program, QString const& title, int patience = longestAnswer);

/// Waits until a window other than the given ones is active.
/// \return its id; empty if there is none in time
QString windowOtherThan(QStringList const& windows);

/// Waits until a window is active, at most the given ms.
bool isBackAt(QString const& window, int patience = longestAnswer);

QString titleOf(QString const& window);

/// Without its frame, in pixels of the screen.
QSize sizeOf(QString const& window);

/// The mouse at a place in a window, in pixels from its top left.
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

/// The picture on the screen, once it no longer changes.
QImage stillScreen();

/// The picture of a window on the screen, without its frame.
QImage pictureOf(QString const& window);

/// The part of a screen that windows take up.
QImage withoutBackground(QImage const& screen);

/// Waits until the screen differs from what it was.
bool hasChangedSince(QImage const& before);
