// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include <QTest>

using qx::test::Stage;

namespace {

struct Rule
{
    const char *selectors;
    const char *properties; // name and value as a designer writes them, without a colon
};

constexpr Rule rules[] = {
    {"QMainWindow, QWidget", "background #121416; color #f1f3f5"},
    {"QFrame#navigation", "background #0d0f10; border-right 1px solid #3b4045"},
    {"QLabel#brandLabel", "font-size 24px; font-weight 800; color #74808a; background transparent; "
                          "border none; min-height 72px; max-height 72px; padding 0"},
    {"QLabel#navVersion", "color #747a7e; font-weight 700"},
    {"QLabel#windowTitle", "font-size 24px; font-weight 800; color #f1f3f5"},
    {"QLabel#windowSubtitle", "color #a8adb0; font-size 12px"},
    {"QLabel#hintLabel", "color #a8adb0; padding 8px 4px"},
    {"QToolButton", "color #a8adb0; border 1px solid transparent; border-radius 10px; padding 5px; "
                    "background transparent"},
    {"QToolButton:hover", "background #202428; border-color #3b4045"},
    {"QToolButton:checked", "background #163b63; border-color #1479e8; color #f1f3f5"},
    {"QGroupBox", "border 1px solid #3b4045; border-radius 8px; margin-top 14px; padding 12px 10px "
                  "10px 10px; background #191c1f"},
    {"QGroupBox::title",
     "subcontrol-origin margin; left 12px; padding 0 6px; color #a8adb0; font-weight 700"},
    {"QLabel#captionLabel, QLabel[captionRole=\"true\"]", "color #747a7e"},
    {"QLabel#valueLabel", "color #f1f3f5; font-weight 600"},
    {"QComboBox, QLineEdit, QPlainTextEdit, QSpinBox",
     "background #101214; color #f1f3f5; border 1px solid #3b4045; border-radius 6px; padding 5px; "
     "selection-background-color #1479e8"},
    {"QComboBox:disabled, QLineEdit:disabled, QSpinBox:disabled",
     "color #747a7e; background #191c1f"},
    {"QPushButton", "background #2a2e32; color #f1f3f5; border 1px solid #3b4045; border-radius "
                    "6px; padding 7px 12px"},
    {"QPushButton:hover", "background #34393e; border-color #2994ff"},
    {"QPushButton:pressed", "background #202428"},
    {"QPushButton#primaryButton, QPushButton#sendFrameButton",
     "background #1479e8; color #f1f3f5; border-color #2994ff; font-weight 700"},
    {"QPushButton#primaryButton:hover, QPushButton#sendFrameButton:hover", "background #2994ff"},
    {"QPushButton#dangerButton, QPushButton#stopZeroButton",
     "background #202428; border-color #3b4045"},
    {"QPushButton#dangerButton:hover, QPushButton#stopZeroButton:hover",
     "background #2a2e32; border-color #9b4d55"},
    {"QCheckBox", "spacing 7px; color #a8adb0"},
    {"QCheckBox::indicator",
     "width 15px; height 15px; background #101214; border 1px solid #3b4045; border-radius 3px"},
    {"QCheckBox::indicator:hover", "border-color #2994ff"},
    {"QCheckBox::indicator:checked", "background #1479e8; border-color #2994ff"},
    {"QStatusBar", "background #0d0f10; color #747a7e; border-top 1px solid #3b4045"},
    {"QSplitter::handle", "background #202428"},
    {"QScrollBar:vertical", "background #101214; width 12px; margin 0"},
    {"QScrollBar::handle:vertical", "background #3b4045; min-height 28px; border-radius 6px"},
    {"QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical", "height 0"},
};

// "QLabel, QFrame { color: #fff; padding: 0 }" becomes "QLabel, QFrame" and "color #fff; padding
// 0".
QList<std::pair<QString, QString>> rulesOf(const QString &sheet)
{
    QList<std::pair<QString, QString>> found;
    const QStringList parts = sheet.split(u'}');
    for (const QString &part : parts) {
        const QStringList halves = part.split(u'{');
        if (halves.size() != 2)
            continue;
        QStringList properties;
        const QStringList declarations = halves.at(1).split(u';', Qt::SkipEmptyParts);
        for (const QString &declaration : declarations) {
            const qsizetype colon = declaration.indexOf(u':');
            if (colon >= 0)
                properties.append(declaration.left(colon).trimmed() + u' ' +
                                  declaration.mid(colon + 1).trimmed());
        }
        found.append({halves.at(0).simplified(), properties.join(QStringLiteral("; "))});
    }
    return found;
}

} // namespace

class TestStyleSheet : public QObject
{
    Q_OBJECT

private slots:
    void rulesInTheirOrder();
};

void TestStyleSheet::rulesInTheirOrder()
{
    Stage stage;
    const auto found = rulesOf(stage.window().styleSheet());
    QCOMPARE(found.size(), static_cast<qsizetype>(std::size(rules)));
    for (qsizetype i = 0; i < found.size(); ++i) {
        QCOMPARE(found.at(i).first, QString::fromLatin1(rules[i].selectors));
        QCOMPARE(found.at(i).second, QString::fromLatin1(rules[i].properties));
    }
}

QTEST_MAIN(TestStyleSheet)
#include "tst_stylesheet.moc"
