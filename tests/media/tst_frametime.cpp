// SPDX-License-Identifier: MIT
#include "media/frametime.h"

#include <QTest>

#include <limits>

class TestFrameTime : public QObject
{
    Q_OBJECT

private slots:
    void position_data();
    void position();
};

void TestFrameTime::position_data()
{
    QTest::addColumn<int>("frame");
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<qint64>("durationMs");
    QTest::addColumn<qint64>("positionMs");
    constexpr int most = std::numeric_limits<int>::max();

    QTest::newRow("frame times interval") << 100 << 50 << qint64{60000} << qint64{5000};
    QTest::newRow("the first frame") << 0 << 50 << qint64{60000} << qint64{0};
    QTest::newRow("a negative frame is the first") << -4 << 50 << qint64{60000} << qint64{0};
    QTest::newRow("the end of the media bounds it") << 100 << 50 << qint64{3000} << qint64{3000};
    QTest::newRow("exactly the end") << 60 << 50 << qint64{3000} << qint64{3000};
    QTest::newRow("media of 1 ms bounds it") << 100 << 50 << qint64{1} << qint64{1};
    QTest::newRow("unknown duration") << 100 << 50 << qint64{0} << qint64{5000};
    QTest::newRow("negative duration") << 100 << 50 << qint64{-1} << qint64{5000};
    QTest::newRow("shortest interval") << 65535 << 30 << qint64{0} << qint64{1966050};
    QTest::newRow("longest interval") << 65535 << 150 << qint64{0} << qint64{9830250};
    QTest::newRow("interval of 2 ms") << 7 << 2 << qint64{0} << qint64{14};
    QTest::newRow("interval of 1 ms") << 7 << 1 << qint64{0} << qint64{7};
    QTest::newRow("no interval counts as 1 ms") << 7 << 0 << qint64{0} << qint64{7};
    QTest::newRow("negative interval counts as 1 ms") << 7 << -50 << qint64{0} << qint64{7};
    QTest::newRow("more than 32 bits") << most << 150 << qint64{0} << qint64{most} * 150;
    QTest::newRow("lowest frame") << std::numeric_limits<int>::min() << 150 << qint64{0}
                                  << qint64{0};
}

void TestFrameTime::position()
{
    QFETCH(int, frame);
    QFETCH(int, intervalMs);
    QFETCH(qint64, durationMs);
    QTEST(qx::framePosition(frame, intervalMs, durationMs), "positionMs");
}

QTEST_GUILESS_MAIN(TestFrameTime)

#include "tst_frametime.moc"
