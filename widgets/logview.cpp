// SPDX-License-Identifier: MIT
#include "widgets/logview.h"

#include "widgets/colours.h"
#include "widgets/framedisplay.h"
#include "widgets/loglayout.h"

#include <QDateTime>
#include <QScrollBar>
#include <QStringBuilder>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextDocument>

#include <utility>

namespace qx {

namespace {

constexpr int keptEntries = 3000;
constexpr int minimumLogHeight = 40;
constexpr qsizetype channelWidth = 5;
constexpr int readableEntries = 16; // between two paintings: a thousand a second

// Line, paragraph, and the two marks at which Qt's text documents break a line as well.
constexpr char16_t otherSeparators[] = {0x2028, 0x2029, 0xfdd0, 0xfdd1};

// An entry stays one line, whatever a device or a file name puts into it.
QString onOneLine(QString message)
{
    for (QChar &c : message) {
        if (c < u' ')
            c = QChar(0x2400 + c.unicode()); // the visible symbol of a control character
        else if (c == QChar(0x7f))
            c = QChar(0x2421);
    }
    for (const char16_t separator : otherSeparators)
        message.replace(QChar(separator), u' ');
    return message;
}

QTextCharFormat formatOf(const QString &channel)
{
    QTextCharFormat format;
    if (channel == QLatin1String("ERR")) {
        format.setForeground(colours::text);
        format.setBackground(colours::alarm);
    } else if (channel == QLatin1String("RETRY") || channel == QLatin1String("WAIT")) {
        format.setForeground(colours::softAccent);
    }
    return format;
}

} // namespace

LogView::LogView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    auto *document = new QTextDocument(this);
    logLayout = new LogLayout(document);
    setDocument(document);
    setReadOnly(true);
    setMaximumBlockCount(keptEntries);
    setMinimumHeight(minimumLogHeight);
    setTabChangesFocus(true);
    QFont unshaped = font();
    unshaped.setStyleStrategy(QFont::PreferNoShaping);
    setFont(unshaped); // its document's; the parts below are made opaque
    prepareFrameDisplay(viewport(), colours::field);
    prepareFrameDisplay(verticalScrollBar(), colours::field);
    stayAtEnd();
}

void LogView::appendEntry(const QString &channel, const QString &message)
{
    ++newEntries;
    const bool first = logLayout->append(u'[' % timeStamp() % u"] " %
                                             channel.leftJustified(channelWidth, u' ', true) %
                                             u' ' % onOneLine(message),
                                         formatOf(channel));
    if (!rushes || newEntries <= readableEntries || !isVisible())
        layOutNewEntries();
    else if (first)
        viewport()->update(); // and prepareToPaint() before that
}

// Local time is looked up once a second: the system reads its time zone again each time.
QString LogView::timeStamp()
{
    constexpr qint64 second = 1000;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now / second != stampedSecond) {
        stampedSecond = now / second;
        stampOfSecond = QDateTime::fromMSecsSinceEpoch(now).toString(QStringLiteral("HH:mm:ss."));
    }
    return stampOfSecond + QString::number(now % second).rightJustified(3, u'0');
}

void LogView::layOutNewEntries()
{
    if (logLayout->catchUp())
        verticalScrollBar()->setValue(endPosition());
}

void LogView::prepareToPaint()
{
    layOutNewEntries();
    rushes = std::exchange(newEntries, 0) > readableEntries;
}

// Also when the view becomes lower or wraps its lines anew.
void LogView::stayAtEnd()
{
    QScrollBar *scrollBar = verticalScrollBar();
    connect(scrollBar, &QScrollBar::valueChanged, this,
            [this](int value) { atEnd = value >= endPosition(); });
    connect(scrollBar, &QScrollBar::rangeChanged, this, [this, scrollBar] {
        if (atEnd)
            scrollBar->setValue(endPosition());
    });
}

// The scroll bar counts lines.
int LogView::endPosition() const
{
    return qMin(verticalScrollBar()->maximum(), document()->lastBlock().firstLineNumber());
}

} // namespace qx
