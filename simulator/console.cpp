// SPDX-License-Identifier: MIT
#include "simulator/console.h"

#include <unistd.h>

namespace qx {

namespace {

bool showsColours(std::FILE *stream)
{
    const QByteArray support = qgetenv("COLORTERM");
    return ::isatty(::fileno(stream)) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR") &&
           (support == "truecolor" || support == "24bit");
}

QString block(int width, quint8 red, quint8 green, quint8 blue)
{
    return QStringLiteral("\x1b[48;2;%1;%2;%3m%4\x1b[0m")
        .arg(QString::number(red), QString::number(green), QString::number(blue),
             QString(width, QLatin1Char(' ')));
}

// A wide block for red, green and blue, a narrow one for white.
QString bar(const SimulatedFrame &frame)
{
    return QStringLiteral("  ") + block(12, frame.red, frame.green, frame.blue) + QLatin1Char(' ') +
           block(4, frame.white, frame.white, frame.white);
}

// Only what is not as it should be is said.
QString outcome(const SimulatedFrame &frame)
{
    QString text;
    switch (frame.verdict) {
    case FrameVerdict::Accepted:
        break;
    case FrameVerdict::NeedHello:
        text = QStringLiteral("  NEED HELLO");
        break;
    case FrameVerdict::BadChecksum:
        text = QStringLiteral("  BAD CHECKSUM");
        break;
    case FrameVerdict::Ac39Fail:
        text = QStringLiteral("  AC39 FAIL");
        break;
    }
    return frame.answered ? text : text + QStringLiteral("  (no reply)");
}

} // namespace

Console::Console(std::FILE *stream)
    : stream(stream)
    , colours(showsColours(stream))
{}

void Console::line(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

void Console::frame(const SimulatedFrame &frame, qint64 count)
{
    line(QStringLiteral("%1. frame %2  HY %3  R %4  G %5  B %6  W %7%8%9")
             .arg(QString::number(count), QString::number(frame.number).rightJustified(5),
                  QString::number(frame.hy).rightJustified(3),
                  QString::number(frame.red).rightJustified(3),
                  QString::number(frame.green).rightJustified(3),
                  QString::number(frame.blue).rightJustified(3),
                  QString::number(frame.white).rightJustified(3), colours ? bar(frame) : QString(),
                  outcome(frame)));
}

} // namespace qx
