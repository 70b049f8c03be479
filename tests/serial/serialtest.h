// SPDX-License-Identifier: MIT
#pragma once

#include "tests/serial/controllerhistory.h"
#include "tests/serial/rawpeer.h"
#include "tests/serial/scriptedport.h"

#include <QObject>

#include <memory>

namespace qx {

/// A test whose functions find a controller, closed, its history and the far end of a cable, all
/// new. Any warning fails them, and so do signals that contradict each other.
class SerialTest : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    void openPort(); ///< at this end of the cable; the history begins after it

    std::unique_ptr<RawPeer> peer;
    std::unique_ptr<ScriptedController> controller; // a test may end it
    std::unique_ptr<ControllerHistory> history;     // and this
};

} // namespace qx
