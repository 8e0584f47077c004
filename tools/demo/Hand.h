// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class QComboBox;
class QDialog;
class QDialogButtonBox;
class QFileDialog;
class QLineEdit;
class QSlider;
class QString;
class QWidget;

// What a person does with the mouse and the keys.

/// Waits until a window is shown and gives it the focus. Without a window manager nobody else does.
/// \return whether it has the focus
bool attend(QWidget* window);

/// Clicks the middle of a widget.
void click(QWidget* widget);

/// Opens a combo box and takes an item from its list with the keys.
void choose(QComboBox* combo, QString const& item);

/// Replaces an edit's text by typing, without leaving the edit.
void typeOver(QLineEdit* edit, QString const& text);

/// Replaces an edit's text and presses the return key.
void enter(QLineEdit* edit, QString const& text);

/// Drags the handle of a horizontal slider to a value in one move.
void drag(QSlider* slider, int value);

/// Calls `answer` once with the next modal dialog that opens, as soon as it is shown. The dialog stays open unless the
/// answer closes it.
void whenDialogOpens(std::function<void(QDialog&)> const& answer);

/// Types a path into a file or folder dialog and accepts it.
void takePath(QDialog& dialog, QString const& path);

/// Cancels a dialog with the escape key.
void giveUp(QDialog& dialog);
