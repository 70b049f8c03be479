// SPDX-License-Identifier: MIT
#include "simulator/framerecords.h"
#include "tests/simulator/wirebytes.h"

#include <QTest>

using qx::FrameRecords;
using qx::numberedFrame;
using qx::SimulatedFrame;

class TestFrameRecords : public QObject
{
    Q_OBJECT

private slots:
    void init() { records = {}; }

    void keepsEverythingAtFirst();
    void keepsTheLatestWithinTheLimit();
    void loweredLimitCutsAtOnce();
    void liftedLimitKeepsWhatIsThere();
    void limitOfZeroKeepsNothing();
    void clearingKeepsTheLimit();

private:
    void receive(quint16 first, quint16 last);
    QList<int> numbers() const;

    FrameRecords records;
};

void TestFrameRecords::receive(quint16 first, quint16 last)
{
    for (quint16 number = first; number <= last; ++number) {
        records.add(numberedFrame(number));
        records.add(SimulatedFrame::fromBytes(numberedFrame(number), {}));
    }
}

QList<int> TestFrameRecords::numbers() const
{
    QList<int> list;
    for (const SimulatedFrame &frame : records.frames())
        list += frame.number;
    return list;
}

void TestFrameRecords::keepsEverythingAtFirst()
{
    receive(1, 4);
    QCOMPARE(numbers(), (QList<int>{1, 2, 3, 4}));
    QCOMPARE(records.received(),
             numberedFrame(1) + numberedFrame(2) + numberedFrame(3) + numberedFrame(4));
}

void TestFrameRecords::keepsTheLatestWithinTheLimit()
{
    records.setLimit(2);
    for (quint16 number = 1; number <= 20; ++number) {
        receive(number, number);
        QVERIFY(records.frames().size() <= 2);
        QVERIFY(records.received().size() <= 40);
    }
    QCOMPARE(numbers(), (QList<int>{19, 20}));
    QCOMPARE(records.received(), numberedFrame(19) + numberedFrame(20));
}

void TestFrameRecords::loweredLimitCutsAtOnce()
{
    receive(1, 5);
    records.setLimit(3);
    QCOMPARE(numbers(), (QList<int>{3, 4, 5}));
    QCOMPARE(records.received(), numberedFrame(3) + numberedFrame(4) + numberedFrame(5));
    records.setLimit(10);
    QCOMPARE(numbers(), (QList<int>{3, 4, 5}));
}

void TestFrameRecords::liftedLimitKeepsWhatIsThere()
{
    records.setLimit(1);
    receive(1, 2);
    records.setLimit(-1);
    receive(3, 4);
    QCOMPARE(numbers(), (QList<int>{2, 3, 4}));
}

void TestFrameRecords::limitOfZeroKeepsNothing()
{
    receive(1, 2);
    records.setLimit(0);
    receive(3, 4);
    QVERIFY(records.frames().isEmpty());
    QVERIFY(records.received().isEmpty());
}

void TestFrameRecords::clearingKeepsTheLimit()
{
    records.setLimit(2);
    receive(1, 3);
    records.clear();
    QVERIFY(records.frames().isEmpty());
    QVERIFY(records.received().isEmpty());
    receive(4, 6);
    QCOMPARE(numbers(), (QList<int>{5, 6}));
}

QTEST_APPLESS_MAIN(TestFrameRecords)
#include "tst_framerecords.moc"
