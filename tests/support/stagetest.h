// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/stage.h"

#include <QObject>

#include <memory>

namespace qx::test {

/// A test whose functions run in both languages, each with a stage of its own.
class StageTest : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase_data();
    void init();
    void cleanup();

protected:
    Operator &hand() { return stage->hand(); }
    PlayerSimulator &player() { return stage->player(); }
    void clearLog() { hand().click(hand().clearLog()); }

    std::unique_ptr<Stage> stage; ///< a test may end it
};

} // namespace qx::test
