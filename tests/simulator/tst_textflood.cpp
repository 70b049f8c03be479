// SPDX-License-Identifier: MIT
#include "simulator/textflood.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <utility>

using qx::TextFlood;

class TestTextFlood : public QObject
{
    Q_OBJECT

private slots:
    void linesAreNumberedWithoutGap();
    void isNoFasterThanAskedFor();
    void countsAnewAfterARestart();
    void isSilentOnceStopped_data();
    void isSilentOnceStopped();
};

void TestTextFlood::linesAreNumberedWithoutGap()
{
    TextFlood flood;
    QSignalSpy lines(&flood, &TextFlood::linesDue);
    flood.restart(1000);
    QTRY_VERIFY(lines.size() >= 5);
    qint64 next = 1;
    for (const QList<QVariant> &due : std::as_const(lines)) {
        QCOMPARE(due[0].toLongLong(), next);
        QVERIFY(due[1].toLongLong() >= next);
        next = due[1].toLongLong() + 1;
    }
}

void TestTextFlood::isNoFasterThanAskedFor()
{
    TextFlood flood;
    QSignalSpy lines(&flood, &TextFlood::linesDue);
    QElapsedTimer clock;
    clock.start(); // before the flood's own
    flood.restart(500);
    QTRY_VERIFY(lines.size() >= 5);
    const qint64 said = lines.last()[1].toLongLong();
    QVERIFY2(said <= clock.elapsed() * 500 / 1000, QByteArray::number(said));
}

void TestTextFlood::countsAnewAfterARestart()
{
    TextFlood flood;
    QSignalSpy lines(&flood, &TextFlood::linesDue);
    flood.restart(1000);
    QTRY_VERIFY(!lines.isEmpty());
    lines.clear();
    flood.restart(1000);
    QTRY_VERIFY(!lines.isEmpty());
    QCOMPARE(lines[0][0].toLongLong(), 1);
}

void TestTextFlood::isSilentOnceStopped_data()
{
    QTest::addColumn<std::function<void(TextFlood &)>>("stop");
    const auto row = [](const char *name, std::function<void(TextFlood &)> stop) {
        QTest::newRow(name) << std::move(stop);
    };
    row("stopped", &TextFlood::stop);
    row("rate of zero", [](TextFlood &flood) { flood.restart(0); });
}

void TestTextFlood::isSilentOnceStopped()
{
    QFETCH(std::function<void(TextFlood &)>, stop);
    TextFlood flood;
    TextFlood other;
    QSignalSpy lines(&flood, &TextFlood::linesDue);
    QSignalSpy others(&other, &TextFlood::linesDue);
    flood.restart(1000);
    stop(flood);
    other.restart(1000);
    QTRY_VERIFY(others.size() >= 3); // as long as a flood takes to be heard
    QVERIFY(lines.isEmpty());
}

QTEST_GUILESS_MAIN(TestTextFlood)
#include "tst_textflood.moc"
