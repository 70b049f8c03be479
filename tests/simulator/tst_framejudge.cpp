// SPDX-License-Identifier: MIT
#include "simulator/framejudge.h"

#include <QList>
#include <QTest>

using qx::FrameJudge;
using qx::FrameVerdict;
using qx::SimulatorBehaviour;
using Judgement = FrameJudge::Judgement;

namespace {

constexpr Judgement accepted{FrameVerdict::Accepted, true};
constexpr Judgement dropped{FrameVerdict::Accepted, false};
constexpr Judgement needHello{FrameVerdict::NeedHello, true};
constexpr Judgement badChecksum{FrameVerdict::BadChecksum, true};
constexpr Judgement ac39Fail{FrameVerdict::Ac39Fail, true};

// What becomes of good frames in a session, whatever the verdicts.
QList<Judgement> judgementsOf(const SimulatorBehaviour &behaviour, int frames)
{
    FrameJudge judge(behaviour);
    QList<Judgement> judgements;
    for (int i = 0; i < frames; ++i)
        judgements += judge.judge(false, true);
    return judgements;
}

QList<qsizetype> placesOf(const Judgement &wanted, const QList<Judgement> &judgements)
{
    QList<qsizetype> places;
    for (qsizetype i = 0; i < judgements.size(); ++i) {
        if (judgements[i] == wanted)
            places += i;
    }
    return places;
}

} // namespace

class TestFrameJudge : public QObject
{
    Q_OBJECT

private slots:
    void goodPlayerAcceptsEachFrameOfASession();
    void frameWithoutASessionNeedsHello();
    void damageComesBeforeTheMissingSession();
    void everyNthIsTreated_data();
    void everyNthIsTreated();
    void onlyValidFramesOfASessionCount();
    void firstOfSeveralWins_data();
    void firstOfSeveralWins();
    void sameSeedGivesTheSameJudgements();
    void certaintyStrikesEachFrame();
    void oneProbabilityLeavesTheOthersSequenceAlone();
};

void TestFrameJudge::goodPlayerAcceptsEachFrameOfASession()
{
    QCOMPARE(judgementsOf({}, 5), QList<Judgement>(5, accepted));
}

void TestFrameJudge::frameWithoutASessionNeedsHello()
{
    FrameJudge judge({.dropEvery = 1});
    QVERIFY(judge.judge(false, false) == needHello);
    QVERIFY(judge.judge(false, true) == dropped);
}

void TestFrameJudge::damageComesBeforeTheMissingSession()
{
    FrameJudge judge({.needHelloEvery = 1});
    QVERIFY(judge.judge(true, false) == badChecksum);
    QVERIFY(judge.judge(true, true) == badChecksum);
}

void TestFrameJudge::everyNthIsTreated_data()
{
    QTest::addColumn<SimulatorBehaviour>("behaviour");
    QTest::addColumn<Judgement>("judgement");
    QTest::newRow("no reply") << SimulatorBehaviour{.dropEvery = 3} << dropped;
    QTest::newRow("need hello") << SimulatorBehaviour{.needHelloEvery = 3} << needHello;
    QTest::newRow("bad checksum") << SimulatorBehaviour{.badChecksumEvery = 3} << badChecksum;
    QTest::newRow("AC39 fail") << SimulatorBehaviour{.ac39FailEvery = 3} << ac39Fail;
}

void TestFrameJudge::everyNthIsTreated()
{
    QFETCH(SimulatorBehaviour, behaviour);
    QFETCH(Judgement, judgement);
    QCOMPARE(judgementsOf(behaviour, 7), (QList<Judgement>{accepted, accepted, judgement, accepted,
                                                           accepted, judgement, accepted}));
}

void TestFrameJudge::onlyValidFramesOfASessionCount()
{
    FrameJudge judge({.ac39FailEvery = 2});
    QVERIFY(judge.judge(false, true) == accepted);
    QVERIFY(judge.judge(true, true) == badChecksum);
    QVERIFY(judge.judge(false, false) == needHello);
    QVERIFY(judge.judge(false, true) == ac39Fail);
}

void TestFrameJudge::firstOfSeveralWins_data()
{
    QTest::addColumn<SimulatorBehaviour>("behaviour");
    QTest::addColumn<Judgement>("judgement");
    QTest::newRow("no reply before all") << SimulatorBehaviour{.dropEvery = 1,
                                                               .badChecksumEvery = 1,
                                                               .ac39FailEvery = 1,
                                                               .needHelloEvery = 1}
                                         << dropped;
    QTest::newRow("need hello before complaints")
        << SimulatorBehaviour{.badChecksumEvery = 1, .ac39FailEvery = 1, .needHelloEvery = 1}
        << needHello;
    QTest::newRow("bad checksum before AC39 fail")
        << SimulatorBehaviour{.badChecksumEvery = 1, .ac39FailEvery = 1} << badChecksum;
}

void TestFrameJudge::firstOfSeveralWins()
{
    QFETCH(SimulatorBehaviour, behaviour);
    QFETCH(Judgement, judgement);
    QCOMPARE(judgementsOf(behaviour, 2), QList<Judgement>(2, judgement));
}

void TestFrameJudge::sameSeedGivesTheSameJudgements()
{
    SimulatorBehaviour behaviour{
        .dropProbability = 0.2, .badChecksumProbability = 0.3, .ac39FailProbability = 0.3};
    const QList<Judgement> first = judgementsOf(behaviour, 100);
    QCOMPARE(judgementsOf(behaviour, 100), first);
    behaviour.seed = 2;
    QVERIFY(judgementsOf(behaviour, 100) != first);
}

void TestFrameJudge::certaintyStrikesEachFrame()
{
    QCOMPARE(judgementsOf({.ac39FailProbability = 1}, 100), QList<Judgement>(100, ac39Fail));
}

void TestFrameJudge::oneProbabilityLeavesTheOthersSequenceAlone()
{
    const auto alone = placesOf(ac39Fail, judgementsOf({.ac39FailProbability = 0.3}, 200));
    const auto mixed = judgementsOf({.badChecksumEvery = 5, .ac39FailProbability = 0.3}, 200);
    QVERIFY(alone.size() > 20);
    // Each fifth frame is complained about for another reason; the rest fails as before.
    QList<qsizetype> expected = alone;
    expected.removeIf([](qsizetype place) { return place % 5 == 4; });
    QCOMPARE(placesOf(ac39Fail, mixed), expected);
}

QTEST_APPLESS_MAIN(TestFrameJudge)
#include "tst_framejudge.moc"
