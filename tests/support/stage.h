// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/playersimulator.h"
#include "tests/support/operator.h"

#include <QFont>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace qx {
class MainWindow;
}

namespace qx::test {

/// The application's identity, which selects the settings; call once, before a QSettings exists.
void takeIdentity();

/// The application's font: ten points of the system's general one. Call after the application is
/// made, before a window is; returns that font.
QFont takeFont();

/// Settings as on a fresh installation, but for the language ("en" or "zh_CN").
void freshSettings(const QString &languageCode);

/// The text that is shown in the current language.
QString either(const QString &english, const QString &chinese);

/// The log line of a HELLO, in the current language.
QString helloLine(int attempt);

/// A complete window with a simulated player that it can find: what an operator has at hand.
/// The window starts, as always, in offline demo mode.
class Stage
{
public:
    /// Settings are cleared first; `languageCode` as in freshSettings(). An empty code keeps the
    /// settings as they are.
    explicit Stage(const QString &languageCode = QStringLiteral("en"));
    ~Stage();

    MainWindow &window() { return *mainWindow; }
    Operator &hand() { return *person; }
    PlayerSimulator &player() { return device; }
    QString portPath() const { return linkPath; }

    /// Quits the application and starts it again with the settings as they are.
    void restart();
    void quit(); ///< without starting again

    /// Leaves demo mode, chooses the player's port and clicks Connect. False if the port did not
    /// open.
    bool connectPort();

    /// connectPort() and the whole handshake.
    bool connectPlayer();

    /// The player says a line, whatever it may be. True once the window has dealt with it.
    bool hear(const QByteArray &line);

    void plugIn();
    void unplug();

private:
    void start();

    QTemporaryDir directory;
    QString linkPath;
    PlayerSimulator device;
    std::unique_ptr<MainWindow> mainWindow;
    std::unique_ptr<Operator> person;
};

} // namespace qx::test
