// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "input/InputFile.h"
#include "layout/ChartLayout.h"
#include "layout/SheetAxis.h"
#include "lib/OvString.h"

#include <QMainWindow>

class OpenGLView;
class PaintedView;
class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;

/// The program's window: every setting of the chart, its preview, and the command that writes its files. Only one may
/// exist at a time: it sets up and ends the folders and the colour conversions of the whole process.
class Controller : public QMainWindow
{
    Q_OBJECT

public:
    /// Sets exepath and respath, limits Qt's plug-ins to those beside the program, prepares the colour conversions, and
    /// shows the window.
    Controller();
    ~Controller() override;

    /// Reads a file's patches into the chart and recomputes. The chart is empty if reading fails.
    void setInputFilename(String name);

    /// Recomputes the chart and shows it with all its settings.
    void update();

public slots:
    void handleOpenFileButton();
    void handleWarnOkButton();
    void handleWarnCancelButton();
    void namechanged();
    void devicechanged(int newindex);
    void pagepresetchanged(int newindex);
    void pagewidthchanged();
    void pageheightchanged();
    void pagetopchanged();
    void pagerightchanged();
    void pagebottomchanged();
    void pageleftchanged();
    void patchsizechanged(int newvalue);
    void radioepsclicked();
    void radiotiffclicked();
    void cliptocontentclicked();
    void handleButton();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createInputControls();
    void createPageControls();
    void createPatchControls();
    void createWarnDialog();
    void createPreview(bool hasOpenGL);
    void orderForKeyboard();
    void nameForScreenReaders();

    SheetAxis across() const;
    SheetAxis up() const;
    void setSheet(SheetAxis const& newAcross, SheetAxis const& newUp);
    bool changeAcross(QLineEdit const* edit, bool (SheetAxis::*change)(double));
    bool changeUp(QLineEdit const* edit, bool (SheetAxis::*change)(double));

    void showSheet();
    void showPatchSize();
    void computeChart();
    void showPreview();

    QLabel* inputLabel = nullptr;
    QLabel* fileNameLabel = nullptr;
    QPushButton* openButton = nullptr;
    QLabel* nameLabel = nullptr;
    QLineEdit* nameEdit = nullptr;
    QLabel* deviceLabel = nullptr;
    QComboBox* deviceCombo = nullptr;
    QLabel* pageSizeLabel = nullptr;
    QComboBox* pagePresetCombo = nullptr;
    QLineEdit* pageWidthEdit = nullptr;
    QLineEdit* pageHeightEdit = nullptr;
    QLabel* marginsLabel = nullptr;
    QLineEdit* marginTopEdit = nullptr;
    QLineEdit* marginRightEdit = nullptr;
    QLineEdit* marginBottomEdit = nullptr;
    QLineEdit* marginLeftEdit = nullptr;
    QSlider* patchSizeSlider = nullptr;
    QLabel* patchSizeLabel = nullptr;
    // One of the two is null: the painted preview exists only without usable OpenGL.
    OpenGLView* preview = nullptr;
    PaintedView* paintedPreview = nullptr;
    QRadioButton* epsRadio = nullptr;
    QRadioButton* tiffRadio = nullptr;
    QLabel* warnSignLabel = nullptr;
    QLabel* gapsLabel = nullptr;
    QDialog* warnDialog = nullptr;
    QLabel* warnLabel = nullptr;
    QPushButton* warnOkButton = nullptr;
    QPushButton* warnCancelButton = nullptr;
    QPushButton* createButton = nullptr;
    QCheckBox* clipCheckBox = nullptr;
    // The smallest delta E between neighbours along the scan, from the last layout without gaps.
    float minDeltaE = 0;
    InputFile inputFile;
    ChartLayout chartLayout;
};
