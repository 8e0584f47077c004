// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QObject>
#include <QRegularExpression>
#include <QTest>

/// Base of the window's tests. The dialogs are Qt's own instead of the desktop's, so that a test can answer them. A
/// warning from Qt is a failure.
class WindowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

protected slots:
    void init() { QTest::failOnWarning(QRegularExpression(".*")); }
};
