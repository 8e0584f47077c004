// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Hand.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>

namespace
{

// ms between two searches for a dialog
constexpr int patience = 10;

QPoint handleOf(QSlider const* slider, int value)
{
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = value;
    option.sliderValue = value;
    return slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider).center();
}

} // namespace

bool attend(QWidget* window)
{
    if (!QTest::qWaitForWindowExposed(window))
        return false;
    window->activateWindow();
    if (!QTest::qWaitFor([window] { return QGuiApplication::focusWindow() == window->windowHandle(); }))
        return false;
    // If a hidden window had the focus, Qt does not notice by itself that it is shown again.
    QApplication::setActiveWindow(window);
    return true;
}

void click(QWidget* widget)
{
    QTest::mouseClick(widget, Qt::LeftButton);
}

void choose(QComboBox* combo, QString const& item)
{
    click(combo);
    QAbstractItemView* const list = combo->view();
    QTest::keyClick(list, Qt::Key_Home);
    for (int row = combo->findText(item); row > 0; --row)
        QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
}

void typeOver(QLineEdit* edit, QString const& text)
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    for (QChar const character : text) {
        if (character.unicode() < 128) {
            QTest::keyClick(edit, character.toLatin1());
        } else {
            // Sent like the text of an input method, because a keyboard may have no key for it.
            QInputMethodEvent event;
            event.setCommitString(character);
            QApplication::sendEvent(edit, &event);
        }
    }
}

void enter(QLineEdit* edit, QString const& text)
{
    typeOver(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

void drag(QSlider* slider, int value)
{
    QTest::mousePress(slider, Qt::LeftButton, {}, handleOf(slider, slider->value()));
    QTest::mouseMove(slider, handleOf(slider, value));
    QTest::mouseRelease(slider, Qt::LeftButton, {}, handleOf(slider, value));
}

void whenDialogOpens(std::function<void(QDialog&)> const& answer)
{
    QTimer::singleShot(patience, qApp, [answer] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog && attend(dialog))
            answer(*dialog);
        else
            whenDialogOpens(answer);
    });
}

void takePath(QDialog& dialog, QString const& path)
{
    typeOver(dialog.findChild<QLineEdit*>("fileNameEdit"), path);
    click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open));
}

void giveUp(QDialog& dialog)
{
    QTest::keyClick(&dialog, Qt::Key_Escape);
}
