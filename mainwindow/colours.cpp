// SPDX-License-Identifier: MIT
// MainWindow, colours: the operator's colour levels, kept across stops and across runs.
// Owns configuredRgbw and rgbwZeroedByStop.
#include "mainwindow/mainwindow.h"

#include <QSettings>

#include <array>

namespace qx {

namespace {

struct Channel
{
    const char *key;
    qint32 RgbwLevels::*level;
};

constexpr std::array<Channel, 4> channels{{
    {"control/rgbw/red", &RgbwLevels::red},
    {"control/rgbw/green", &RgbwLevels::green},
    {"control/rgbw/blue", &RgbwLevels::blue},
    {"control/rgbw/white", &RgbwLevels::white},
}};

// What is not a number reads as 0. 64 bits, so that a large number is cut to 255, not lost.
qint32 storedLevel(const QVariant &value)
{
    return static_cast<qint32>(qBound(qint64{0}, value.toLongLong(), qint64{255}));
}

} // namespace

void MainWindow::loadConfiguredRgbw()
{
    const QSettings settings;
    for (const Channel &channel : channels)
        configuredRgbw.*channel.level = storedLevel(settings.value(QLatin1String(channel.key), 0));
    rgbwZeroedByStop = false;
    setRgbwEditors(configuredRgbw);
}

void MainWindow::rememberConfiguredRgbw()
{
    if (editorsSyncing || rgbwZeroedByStop)
        return;
    configuredRgbw = rgbwFromEditors();
    persistConfiguredRgbw();
}

void MainWindow::persistConfiguredRgbw() const
{
    QSettings settings;
    for (const Channel &channel : channels)
        settings.setValue(QLatin1String(channel.key), configuredRgbw.*channel.level);
    settings.sync();
}

void MainWindow::restoreConfiguredRgbwForPlayback()
{
    if (!rgbwZeroedByStop)
        return;
    setRgbwEditors(configuredRgbw);
    rgbwZeroedByStop = false;
}

bool MainWindow::zeroRgbwForStop()
{
    const bool first = !rgbwZeroedByStop;
    if (first)
        configuredRgbw = rgbwFromEditors();
    rgbwZeroedByStop = true;
    setRgbwEditors({});
    return first;
}

void MainWindow::rgbwEdited(qint32 RgbwLevels::*channel, int level)
{
    if (editorsSyncing)
        return;
    if (!rgbwZeroedByStop) {
        rememberConfiguredRgbw();
        return;
    }
    configuredRgbw.*channel = qBound(0, level, 255);
    persistConfiguredRgbw();
}

} // namespace qx
