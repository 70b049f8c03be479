// SPDX-License-Identifier: MIT
#include "tests/support/stagetest.h"

#include <QTest>

namespace qx::test {

void StageTest::initTestCase_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << QStringLiteral("en");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN");
}

void StageTest::init()
{
    QFETCH_GLOBAL(QString, language);
    stage = std::make_unique<Stage>(language);
}

void StageTest::cleanup()
{
    if (stage && !QTest::currentTestFailed())
        QVERIFY(hand().everyLogLineIsStamped());
    stage.reset();
}

} // namespace qx::test
