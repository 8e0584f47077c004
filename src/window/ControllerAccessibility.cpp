// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Controller.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

void Controller::orderForKeyboard()
{
    // In two places the order on the screen differs from the order of creation.
    setTabOrder(deviceCombo, pageWidthEdit);
    setTabOrder(pageWidthEdit, pageHeightEdit);
    setTabOrder(pageHeightEdit, pagePresetCombo);
    setTabOrder(pagePresetCombo, marginTopEdit);
    setTabOrder(warnCancelButton, warnOkButton);
}

void Controller::nameForScreenReaders()
{
    nameLabel->setBuddy(nameEdit);
    deviceLabel->setBuddy(deviceCombo);
    pageSizeLabel->setBuddy(pagePresetCombo);
    pageWidthEdit->setAccessibleName(tr("Page width in mm", "page width, for screen readers"));
    pageHeightEdit->setAccessibleName(tr("Page height in mm", "page height, for screen readers"));
    marginTopEdit->setAccessibleName(tr("Top boundary in mm", "top margin, for screen readers"));
    marginRightEdit->setAccessibleName(tr("Right boundary in mm", "right margin, for screen readers"));
    marginBottomEdit->setAccessibleName(tr("Bottom boundary in mm", "bottom margin, for screen readers"));
    marginLeftEdit->setAccessibleName(tr("Left boundary in mm", "left margin, for screen readers"));
    patchSizeSlider->setAccessibleName(tr("Patch size in mm", "patch size slider, for screen readers"));
    warnSignLabel->setAccessibleName(tr("The chart contains gaps", "warning sign, for screen readers"));
    findChild<QWidget*>("preview")->setAccessibleName(tr("Chart preview", "preview, for screen readers"));
}
