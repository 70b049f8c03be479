// SPDX-License-Identifier: MIT
#include "simulator/textflood.h"

#include <chrono>
#include <utility>

namespace qx {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds period = 10ms;

} // namespace

TextFlood::TextFlood(QObject *parent)
    : QObject(parent)
{
    connect(&timer, &QTimer::timeout, this, &TextFlood::announceLines);
}

void TextFlood::restart(int linesPerSecond)
{
    stop();
    rate = linesPerSecond;
    announced = 0;
    clock.start();
    if (rate > 0)
        timer.start(period);
}

void TextFlood::stop()
{
    timer.stop();
}

void TextFlood::announceLines()
{
    const qint64 due = clock.elapsed() * rate / 1000;
    const qint64 before = std::exchange(announced, due);
    if (due > before)
        emit linesDue(before + 1, due);
}

} // namespace qx
