// SPDX-License-Identifier: MIT
// MainWindow, style sheet: the dark look, and what is mended beside it.
#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPalette>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
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
// keyboard is. The spin boxes and combo boxes paint their arrows themselves.
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
QPushButton:focus, QComboBox:focus, QLineEdit:focus, QSpinBox:focus, QPlainTextEdit:focus,
QCheckBox::indicator:focus { border-color: #2994ff; }
QPushButton#primaryButton:focus, QPushButton#sendFrameButton:focus,
QCheckBox::indicator:checked:focus { border-color: #f1f3f5; }
QCheckBox:focus { color: #f1f3f5; }
)";

const char navigationSheet[] = "QLabel { background: transparent; }"
                               "QToolButton:focus { border-color: #2994ff; }"
                               "QToolButton:checked:focus { border-color: #f1f3f5; }";

const char menuSheet[] = "QMenuBar::item:selected, QMenuBar::item:pressed { background: #202428; }"
                         "QMenu { background: #191c1f; border: 1px solid #3b4045; }"
                         "QMenu::item:selected { background: #163b63; }";

const char statusBarSheet[] = "QSizeGrip { background: transparent; }";

// Polishing makes widgets see-through, and what changes with every frame would have its parents
// painted again as well, borders and all.
void makeOpaque(QWidget *widget, const QColor &surface)
{
    widget->ensurePolished();
    QPalette palette = widget->palette();
    palette.setColor(widget->backgroundRole(), surface);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

QPalette darkPalette()
{
    const QColor text(0xf1f3f5);
    const QColor faint(0x747a7e);
    QPalette palette(QColor(0x2a2e32), QColor(0x121416));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, QColor(0x101214));
    palette.setColor(QPalette::AlternateBase, QColor(0x191c1f));
    palette.setColor(QPalette::PlaceholderText, QColor(0xa8adb0));
    palette.setColor(QPalette::Highlight, QColor(0x1479e8));
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::ToolTipBase, QColor(0x202428));
    palette.setColor(QPalette::ToolTipText, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

} // namespace

void MainWindow::applyApplicationStyle(QWidget *widget)
{
    widget->setStyleSheet(QLatin1String(applicationSheet));
}

void MainWindow::mendStyle()
{
    setPalette(darkPalette());
    menuBar()->setStyleSheet(QLatin1String(menuSheet));
    statusBar()->setStyleSheet(QLatin1String(statusBarSheet));
    findChild<QFrame *>(QStringLiteral("navigation"))
        ->setStyleSheet(QLatin1String(navigationSheet));
    for (const QString &name : {QStringLiteral("connectionGroup"), QStringLiteral("frameGroup"),
                                QStringLiteral("deviceStatusGroup"), QStringLiteral("logGroup")})
        findChild<QGroupBox *>(name)->setStyleSheet(QLatin1String(groupSheet));

    makeFrameDisplaysOpaque();
}

void MainWindow::makeFrameDisplaysOpaque()
{
    const QColor surface(0x191c1f); // of the groups and the panel
    const QColor field(0x101214);
    QWidgetList onSurface{frameSpin, completeFrameEdit};
    onSurface += playerPanel->frameDisplays();
    for (QLabel *value : statusValueLabels)
        onSurface.append(value);
    for (QWidget *widget : onSurface)
        makeOpaque(widget, surface);
    logView->ensurePolished();
    for (QWidget *widget :
         {static_cast<QWidget *>(frameSpin->findChild<QLineEdit *>()), logView->viewport(),
          static_cast<QWidget *>(logView->verticalScrollBar())})
        makeOpaque(widget, field);
    makeOpaque(statusBar(), QColor(0x0d0f10));
}

} // namespace qx
