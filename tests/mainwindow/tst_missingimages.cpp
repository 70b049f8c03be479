// SPDX-License-Identifier: MIT
// This program does not contain the window's images.
#include "tests/support/stage.h"

#include <QFile>
#include <QTest>
#include <QToolButton>

using qx::test::Stage;

class TestMissingImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void brandLabelShowsLetters();
    void navigationWorksWithoutIcons();
};

void TestMissingImages::initTestCase()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/assets/logo1_dark.png")));
}

void TestMissingImages::brandLabelShowsLetters()
{
    Stage stage;
    const auto *brand = stage.window().findChild<QLabel *>(QStringLiteral("brandLabel"));
    QCOMPARE(brand->text(), QStringLiteral("QX"));
    QCOMPARE(brand->size(), QSize(92, 72));
    QCOMPARE(brand->alignment(), Qt::AlignCenter);
    QCOMPARE(brand->accessibleName(), QStringLiteral("Corvessa product logo"));
}

void TestMissingImages::navigationWorksWithoutIcons()
{
    Stage stage;
    const auto *button = stage.window().findChild<QToolButton *>(QStringLiteral("navTime"));
    QCOMPARE(button->size(), QSize(92, 80));
    QCOMPARE(button->text(), QStringLiteral("Time"));
    stage.hand().click(stage.hand().navigation("navTime"));
    QVERIFY(stage.hand().navigation("navPlayer")->isChecked());
}

QTEST_MAIN(TestMissingImages)
#include "tst_missingimages.moc"
