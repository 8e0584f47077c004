// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "GUI.h"
#include "Hand.h"
#include "QtText.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStringList>

/// The window with the focus, and its controls by their names.
class TestWindow : public Controller
{
public:
    TestWindow() { attend(this); }

    QLabel* label(char const* name) const { return findChild<QLabel*>(name); }
    QLineEdit* edit(char const* name) const { return findChild<QLineEdit*>(name); }
    QComboBox* combo(char const* name) const { return findChild<QComboBox*>(name); }
    QPushButton* button(char const* name) const { return findChild<QPushButton*>(name); }
    QRadioButton* radio(char const* name) const { return findChild<QRadioButton*>(name); }
    QSlider* slider() const { return findChild<QSlider*>("patchSizeSlider"); }
    QDialog* warnDialog() const { return findChild<QDialog*>("warnDialog"); }
    QWidget* preview() const { return findChild<QWidget*>("preview"); }

    QString text(char const* labelName) const { return label(labelName)->text(); }
    void read(String const& path) { setInputFilename(path); }
    void chooseDevice(QString const& device) { choose(combo("deviceCombo"), device); }
    void choosePaper(QString const& paper) { choose(combo("pagePresetCombo"), paper); }

    /// The six page edits' texts with blanks between them: width, height, top, right, bottom, left.
    QString sheet() const
    {
        QStringList texts;
        for (char const* name : {"pageWidthEdit", "pageHeightEdit", "marginTopEdit", "marginRightEdit",
                                 "marginBottomEdit", "marginLeftEdit"})
            texts.append(edit(name)->text());
        return texts.join(' ');
    }
};
