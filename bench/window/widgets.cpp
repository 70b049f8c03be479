// SPDX-License-Identifier: MIT
// What single operations of the complete window cost.
#include "mainwindow/mainwindow.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

qx::MainWindow *window;

void logAppend(benchmark::State &state)
{
    const QString tag = QStringLiteral("TX");
    const QString message = QStringLiteral("HY: 1  Frame: 300  R: 255  G: 0  B: 0  W: 0");
    for (auto _ : state)
        window->appendLog(tag, message);
}

void languageSwitch(benchmark::State &state)
{
    bool english = true;
    for (auto _ : state) {
        window->setLanguage(english ? qx::UiLanguage::English : qx::UiLanguage::Chinese);
        english = !english;
    }
}

void framePreview(benchmark::State &state)
{
    for (auto _ : state)
        window->updateFramePreview();
}

} // namespace

BENCHMARK(logAppend);
BENCHMARK(languageSwitch);
BENCHMARK(framePreview);

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
    benchmark::Initialize(&argc, argv);
    qx::MainWindow mainWindow;
    window = &mainWindow;
    mainWindow.show();
    QCoreApplication::processEvents();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
