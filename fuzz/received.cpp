// SPDX-License-Identifier: MIT
// Any bytes from the player, through the line cutter and the reply handling of a window that
// is connected and has a frame in flight.
#include "fuzz/fuzzwindow.h"
#include "simulator/playersimulator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QGroupBox>
#include <QPushButton>

#include <chrono>

using namespace std::chrono_literals;

namespace {

qx::MainWindow *window;
qx::PlayerSimulator *player;
QPushButton *connectButton;

bool waitUntil(const auto &condition)
{
    const QDeadlineTimer patience(5s);
    while (!condition() && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qx::fuzz::startApplication(argc, argv);
    player = new qx::PlayerSimulator;
    player->setKeepRecords(0);
    qx::fuzz::require(player->plugIn());
    qputenv("TESSALY_SERIAL_PORTS", player->portPath().toUtf8());
    window = new qx::MainWindow;
    auto *group = window->findChild<QGroupBox *>(QStringLiteral("connectionGroup"));
    group->findChild<QCheckBox *>()->setChecked(false);
    connectButton = window->findChild<QPushButton *>(QStringLiteral("primaryButton"));
    connectButton->click();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    qx::fuzz::require(waitUntil([] { return window->isUsbTransmissionReady(); }));
    qx::SimulatorBehaviour deaf;
    deaf.silent = true;
    player->setBehaviour(deaf);
    window->sendCurrentFrame();
    const qint64 arrived = player->counts().framesArrived;
    player->say(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    player->say("\nover\n");
    waitUntil([] { return player->unsentBytes() == 0; });
    waitUntil([arrived] { return player->counts().framesArrived >= arrived; });
    QCoreApplication::processEvents();
    // Whatever was said, the session can be taken up again.
    player->setBehaviour({});
    window->beginHandshake();
    return 0;
}
