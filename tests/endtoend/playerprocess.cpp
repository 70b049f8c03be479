// SPDX-License-Identifier: MIT
#include "tests/endtoend/playerprocess.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

namespace qx::test {

PlayerProcess::PlayerProcess(const QString &linkPath)
    : linkPath(linkPath)
{
    process.setProgram(QStringLiteral(TESSALY_SIMULATOR));
    process.setArguments({QStringLiteral("--link"), linkPath});
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

PlayerProcess::~PlayerProcess()
{
    pullCable();
}

bool PlayerProcess::plugIn()
{
    forget();
    process.start();
    return process.waitForStarted() &&
           QTest::qWaitFor([this] { return QFileInfo::exists(linkPath); });
}

void PlayerProcess::pullCable()
{
    process.terminate();
    process.waitForFinished();
}

const QList<PrintedFrame> &PlayerProcess::frames()
{
    readOutput();
    return received;
}

int PlayerProcess::hellos()
{
    readOutput();
    return helloCount;
}

void PlayerProcess::forget()
{
    readOutput();
    received.clear();
    helloCount = 0;
}

void PlayerProcess::readOutput()
{
    static const QRegularExpression frameLine(QStringLiteral(
        R"(frame\s+(\d+)\s+HY\s+(\d+)\s+R\s+(\d+)\s+G\s+(\d+)\s+B\s+(\d+)\s+W\s+(\d+))"));
    while (process.canReadLine()) {
        const QString line = QString::fromUtf8(process.readLine());
        const QRegularExpressionMatch match = frameLine.match(line);
        const auto number = [&match](int index) { return match.captured(index).toInt(); };
        if (match.hasMatch())
            received.append({number(1), number(2), number(3), number(4), number(5), number(6)});
        else if (line.startsWith(QLatin1String("HELLO")))
            ++helloCount;
    }
}

} // namespace qx::test
