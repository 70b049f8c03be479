// SPDX-License-Identifier: MIT
// What one frame costs on its way: encoded, checked, shown, answered; and what one text costs.
#include "i18n/language.h"
#include "protocol/protocol.h"

#include <benchmark/benchmark.h>

namespace {

using namespace qx;

ControlFrame nextFrame()
{
    static quint16 number = 0;
    return {3, ++number, 10, 20, 30, 40, {1, 2, 3, 4, 5, 6}};
}

void encode(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::encodeControlFrame(nextFrame()));
}
BENCHMARK(encode);

void validate(benchmark::State &state)
{
    const QByteArray frame = Protocol::encodeControlFrame(nextFrame());
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::isValidControlFrame(frame));
}
BENCHMARK(validate);

void summary(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::frameSummary(nextFrame()));
}
BENCHMARK(summary);

void summaryOfBytes(benchmark::State &state)
{
    const QByteArray frame = Protocol::encodeControlFrame(nextFrame());
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::frameSummary(frame));
}
BENCHMARK(summaryOfBytes);

void hex(benchmark::State &state)
{
    const QByteArray frame = Protocol::encodeControlFrame(nextFrame());
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::bytesToHex(frame));
}
BENCHMARK(hex);

void parseReply(benchmark::State &state, const QByteArray &line)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Protocol::parseReply(line));
}
BENCHMARK_CAPTURE(parseReply, rxOk, QByteArrayLiteral("QXUSB RX OK"));
BENCHMARK_CAPTURE(parseReply, lastKeyword, QByteArrayLiteral("QXUSB AC39 FAIL"));
BENCHMARK_CAPTURE(parseReply, bootMessage,
                  QByteArrayLiteral("I (312) cpu_start: Pro cpu start user code"));
BENCHMARK_CAPTURE(parseReply, longestLine, QByteArray(4095, 'x'));

void text(benchmark::State &state, UiLanguage language, UiText key)
{
    Language::setCurrent(language);
    for (auto _ : state)
        benchmark::DoNotOptimize(Language::text(key));
}
BENCHMARK_CAPTURE(text, shortChinese, UiLanguage::Chinese, UiText::Stop);
BENCHMARK_CAPTURE(text, shortEnglish, UiLanguage::English, UiText::Stop);
BENCHMARK_CAPTURE(text, longestChinese, UiLanguage::Chinese, UiText::MediaSyncHint);
BENCHMARK_CAPTURE(text, longestEnglish, UiLanguage::English, UiText::MediaSyncHint);

} // namespace
