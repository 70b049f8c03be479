// SPDX-License-Identifier: MIT
// MainWindow, style sheet: the dark look, and what overrides it in places.
#include "mainwindow/mainwindow.h"
#include "widgets/colours.h"

#include <QFrame>
#include <QGroupBox>
#include <QMenuBar>
#include <QPalette>
#include <QStatusBar>

namespace qx {

namespace {

const char applicationSheet[] = R"(
QMainWindow, QWidget { background: #121416; color: #f1f3f5; }
QFrame#navigation { background: #0d0f10; border-right: 1px solid #3b4045; }
QLabel#brandLabel { font-size: 24px; font-weight: 800; color: #74808a; background: transparent;
    border: none; min-height: 72px; max-height: 72px; padding: 0; }
QLabel#navVersion { color: #747a7e; font-weight: 700; }
QLabel#windowTitle { font-size: 24px; font-weight: 800; color: #f1f3f5; }
QLabel#windowSubtitle { color: #a8adb0; font-size: 12px; }
QLabel#hintLabel { color: #a8adb0; padding: 8px 4px; }
QToolButton { color: #a8adb0; border: 1px solid transparent; border-radius: 10px; padding: 5px;
    background: transparent; }
QToolButton:hover { background: #202428; border-color: #3b4045; }
QToolButton:checked { background: #163b63; border-color: #1479e8; color: #f1f3f5; }
QGroupBox { border: 1px solid #3b4045; border-radius: 8px; margin-top: 14px;
    padding: 12px 10px 10px 10px; background: #191c1f; }
QGroupBox::title { subcontrol-origin: margin; left: 12px; padding: 0 6px; color: #a8adb0;
    font-weight: 700; }
QLabel#captionLabel, QLabel[captionRole="true"] { color: #747a7e; }
QLabel#valueLabel { color: #f1f3f5; font-weight: 600; }
QComboBox, QLineEdit, QPlainTextEdit, QSpinBox { background: #101214; color: #f1f3f5;
    border: 1px solid #3b4045; border-radius: 6px; padding: 5px;
    selection-background-color: #1479e8; }
QComboBox:disabled, QLineEdit:disabled, QSpinBox:disabled { color: #747a7e;
    background: #191c1f; }
QPushButton { background: #2a2e32; color: #f1f3f5; border: 1px solid #3b4045; border-radius: 6px;
    padding: 7px 12px; }
QPushButton:hover { background: #34393e; border-color: #2994ff; }
QPushButton:pressed { background: #202428; }
QPushButton#primaryButton, QPushButton#sendFrameButton { background: #1479e8; color: #f1f3f5;
    border-color: #2994ff; font-weight: 700; }
QPushButton#primaryButton:hover, QPushButton#sendFrameButton:hover { background: #2994ff; }
QPushButton#dangerButton, QPushButton#stopZeroButton { background: #202428;
    border-color: #3b4045; }
QPushButton#dangerButton:hover, QPushButton#stopZeroButton:hover { background: #2a2e32;
    border-color: #9b4d55; }
QCheckBox { spacing: 7px; color: #a8adb0; }
QCheckBox::indicator { width: 15px; height: 15px; background: #101214; border: 1px solid #3b4045;
    border-radius: 3px; }
QCheckBox::indicator:hover { border-color: #2994ff; }
QCheckBox::indicator:checked { background: #1479e8; border-color: #2994ff; }
QStatusBar { background: #0d0f10; color: #747a7e; border-top: 1px solid #3b4045; }
QSplitter::handle { background: #202428; }
QScrollBar:vertical { background: #101214; width: 12px; margin: 0; }
QScrollBar::handle:vertical { background: #3b4045; min-height: 28px; border-radius: 6px; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
)";

// What lies in a group shows the group's surface, tells when it is disabled, and where the
// keyboard is, unless the mouse is over it. The spin boxes and combo boxes paint their arrows
// themselves.
const char groupSheet[] = R"(
QLabel, QCheckBox { background: transparent; }
QLabel#valueLabel { selection-background-color: #1479e8; selection-color: #f1f3f5; }
QPushButton, QCheckBox { outline: none; }
QSpinBox::up-button { subcontrol-origin: border; subcontrol-position: top right; width: 20px;
    border: none; background: transparent; }
QSpinBox::down-button { subcontrol-origin: border; subcontrol-position: bottom right; width: 20px;
    border: none; background: transparent; }
QSpinBox::up-button:hover, QSpinBox::down-button:hover { background: #202428; }
QComboBox { combobox-popup: 0; }
QComboBox::drop-down { border: none; width: 20px; }
QComboBox QAbstractItemView { border: 1px solid #3b4045; selection-background-color: #163b63;
    outline: none; }
QPushButton:disabled { color: #747a7e; background: #191c1f; border-color: #3b4045; }
QPushButton:focus:!hover, QComboBox:focus, QLineEdit:focus, QSpinBox:focus, QPlainTextEdit:focus,
QCheckBox::indicator:focus:!hover { border-color: #2994ff; }
QPushButton#primaryButton:focus:!hover, QPushButton#sendFrameButton:focus:!hover,
QCheckBox::indicator:checked:focus:!hover { border-color: #f1f3f5; }
QCheckBox:focus { color: #f1f3f5; }
QMenu { background: #191c1f; border: 1px solid #3b4045; }
QMenu::item:selected { background: #163b63; }
QMenu::item:disabled { color: #747a7e; background: transparent; }
QMenu::separator { height: 1px; background: #3b4045; margin: 4px 8px; }
QToolTip { background: #202428; color: #f1f3f5; border: 1px solid #3b4045; }
)";

const char navigationSheet[] = "QLabel { background: transparent; }"
                               "QToolButton:focus:!hover { border-color: #2994ff; }"
                               "QToolButton:checked:focus:!hover { border-color: #f1f3f5; }";

const char menuSheet[] = "QMenuBar::item:selected, QMenuBar::item:pressed { background: #202428; }"
                         "QMenu { background: #191c1f; border: 1px solid #3b4045; }"
                         "QMenu::item:selected { background: #163b63; }";

const char statusBarSheet[] = "QSizeGrip { background: transparent; }";

QPalette darkPalette()
{
    QPalette palette(colours::button, colours::page);
    palette.setColor(QPalette::WindowText, colours::text);
    palette.setColor(QPalette::Text, colours::text);
    palette.setColor(QPalette::ButtonText, colours::text);
    palette.setColor(QPalette::Base, colours::field);
    palette.setColor(QPalette::AlternateBase, colours::surface);
    palette.setColor(QPalette::PlaceholderText, colours::dimText);
    palette.setColor(QPalette::Highlight, colours::accent);
    palette.setColor(QPalette::HighlightedText, colours::text);
    palette.setColor(QPalette::ToolTipBase, colours::raised);
    palette.setColor(QPalette::ToolTipText, colours::text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colours::faintText);
    return palette;
}

} // namespace

void MainWindow::applyApplicationStyle(QWidget *widget)
{
    widget->setStyleSheet(QLatin1String(applicationSheet));
}

void MainWindow::overrideStyle()
{
    setPalette(darkPalette());
    menuBar()->setStyleSheet(QLatin1String(menuSheet));
    statusBar()->setStyleSheet(QLatin1String(statusBarSheet));
    findChild<QFrame *>(QStringLiteral("navigation"))
        ->setStyleSheet(QLatin1String(navigationSheet));
    for (const QString &name : {QStringLiteral("connectionGroup"), QStringLiteral("frameGroup"),
                                QStringLiteral("deviceStatusGroup"), QStringLiteral("logGroup")})
        findChild<QGroupBox *>(name)->setStyleSheet(QLatin1String(groupSheet));
}

} // namespace qx
