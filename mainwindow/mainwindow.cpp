// SPDX-License-Identifier: MIT
// MainWindow, construction: the order of start-up reads here from top to bottom.
#include "mainwindow/mainwindow.h"

#include "media/mediatransport.h"
#include "serial/serialcontroller.h"
#include "widgets/playerpanel.h"

#include <QCheckBox>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>

namespace qx {

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , serialController(new SerialController(this))
    , handshakeTimer(new QTimer(this))
    , ackTimer(new QTimer(this))
    , playbackTimer(new QTimer(this))
{
    readLanguage();
    setUpWindow();
    createLanguageMenu();
    createWidgets();
    overrideStyle();
    throttlePainting();
    connectEditors();
    setupMediaPlayback();
    loadConfiguredRgbw();
    setUpTimers();
    connectSession();
    retranslateUi();
    refreshPorts(true);

    playerPanel->setFileCount(256);
    playerPanel->setTotalFrames(totalSpin->value());
    playerPanel->setFileIndex(headerSpin->value(), QString());
    playerPanel->setWhiteLevel(whiteSpin->value());
    playbackTimer->setInterval(playerPanel->intervalMs());
    updateFramePreview();
    updateLocalStatus();
    demoModeCheck->setChecked(true);
}

// What is destroyed may signal once more (an open port says that it closes, an editor that it has
// lost the focus), and by then half of this window is gone.
MainWindow::~MainWindow()
{
    QObjectList sources{serialController, playerPanel, mediaTransport};
    for (QSpinBox *box :
         {headerSpin, frameSpin, totalSpin, redSpin, greenSpin, blueSpin, whiteSpin})
        sources.append(box);
    for (QObject *source : std::as_const(sources))
        source->disconnect(this);
}

void MainWindow::releasePort()
{
    const QSignalBlocker quiet(serialController);
    serialController->close();
}

} // namespace qx
