// SPDX-License-Identifier: MIT
#pragma once

#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

namespace qx::fuzz {

/// An application without a screen and with settings of its own, for a whole run.
inline void startApplication(int *argc, char ***argv)
{
    static QTemporaryDir home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    qputenv("HOME", home.path().toUtf8());
    new QApplication(*argc, *argv); // lives until the process ends
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
}

/// Ends the run if something does not hold.
inline void require(bool holds)
{
    if (!holds)
        qFatal("what must hold does not");
}

} // namespace qx::fuzz
