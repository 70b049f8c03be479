// SPDX-License-Identifier: MIT
// The complete window, visible, at work on a port:
//
//   bench_window loop PORT FRAMES              the next frame at each reply, as fast as it goes
//   bench_window play PORT MS SECONDS          plays at an interval
//   bench_window play-hidden PORT MS SECONDS   the same with the window off the screen
//   bench_window start                         until the window is painted for the first time
//   bench_window start-empty                   the same for an empty one with the media objects
//
// Writes one line of JSON about this process; the device's side has the times of the frames.
#include "bench/linkedwindow.h"
#include "serial/serialcontroller.h"
#include "tests/support/eventcounter.h"
#include "tests/support/finding.h"
#include "tests/support/residentmemory.h"
#include "widgets/playerpanel.h"

#include <QApplication>
#include <QAudioOutput>
#include <QElapsedTimer>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTimer>
#include <QVideoWidget>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sys/resource.h>

using qx::test::EventCounter;

namespace {

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long residentKib()
{
    return static_cast<long>(qx::test::residentBytes() / 1024);
}

class Session
{
public:
    Session(qx::MainWindow &window, const QString &portPath)
        : window(window)
        , controller(window.findChild<qx::SerialController *>())
    {
        qx::bench::link(window, portPath);
    }

    void loop(int frames)
    {
        EventCounter paintings(window.findChild<QPlainTextEdit *>()->viewport(), QEvent::Paint);
        auto *spin = qx::test::spokenAs<QSpinBox>(window, QStringLiteral("Frame"));
        window.findChild<qx::PlayerPanel *>()->setPlaybackState(qx::PlaybackState::Playing);
        QElapsedTimer clock;
        int sent = 0;
        long residentEarly = 0;
        double processor = processorSeconds();
        const auto next = [&] {
            if (sent == frames)
                return QCoreApplication::quit();
            if (sent == 10000)
                residentEarly = residentKib();
            spin->setValue(sent++ % 1800);
            window.sendCurrentFrame();
        };
        QObject::connect(controller, &qx::SerialController::lineReceived, &window,
                         [&next](const QByteArray &line) {
                             if (line == "QXUSB RX OK")
                                 next();
                         });
        clock.start();
        next();
        QApplication::exec();
        const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
        processor = processorSeconds() - processor;
        std::printf("{\"frames\": %d, \"seconds\": %.3f, \"framesPerSecond\": %.0f, "
                    "\"processorMicrosecondsPerFrame\": %.1f, \"residentKibAt10000\": %ld, "
                    "\"residentKib\": %ld, \"logPaintingsPerSecond\": %.1f}\n",
                    frames, seconds, frames / seconds, processor / frames * 1e6, residentEarly,
                    residentKib(), paintings.count / seconds);
    }

    void play(int intervalMs, int seconds)
    {
        auto *panel = window.findChild<qx::PlayerPanel *>();
        panel->setIntervalMs(intervalMs);
        panel->setRepeatEnabled(true);
        EventCounter paintings(window.findChild<QPlainTextEdit *>()->viewport(), QEvent::Paint);
        const double processor = processorSeconds();
        window.startPlayback();
        QTimer::singleShot(seconds * 1000, &window, &QCoreApplication::quit);
        QApplication::exec();
        std::printf("{\"intervalMs\": %d, \"seconds\": %d, \"processorPercent\": %.2f, "
                    "\"logPaintings\": %d}\n",
                    intervalMs, seconds, (processorSeconds() - processor) / seconds * 100,
                    paintings.count);
    }

private:
    qx::MainWindow &window;
    qx::SerialController *controller;
};

// Notes the time of the first painting and ends the program.
class FirstPainting : public QObject
{
public:
    explicit FirstPainting(QWidget &window)
    {
        window.installEventFilter(this);
        window.show();
        QApplication::exec();
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint)
            QTimer::singleShot(0, this, [] {
                timespec now{};
                ::clock_gettime(CLOCK_MONOTONIC, &now);
                std::printf("{\"paintedNs\": %lld}\n",
                            static_cast<long long>(now.tv_sec) * 1000000000 + now.tv_nsec);
                std::fflush(stdout);
                std::_Exit(0);
            });
        return false;
    }
};

int startEmpty()
{
    QMainWindow window;
    window.resize(1420, 900);
    QMediaPlayer player;
    QAudioOutput output;
    QVideoWidget video(&window);
    video.setWindowFlag(Qt::Window);
    video.hide();
    player.setAudioOutput(&output);
    player.setVideoOutput(&video);
    const FirstPainting painting(window);
    return 0;
}

int startComplete()
{
    qx::MainWindow window;
    const FirstPainting painting(window);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
    if (arguments.value(1) == QLatin1String("start"))
        return startComplete();
    if (arguments.value(1) == QLatin1String("start-empty"))
        return startEmpty();
    const bool loop = arguments.value(1) == QLatin1String("loop") && arguments.size() == 4;
    const bool hidden = arguments.value(1) == QLatin1String("play-hidden");
    const bool play =
        (hidden || arguments.value(1) == QLatin1String("play")) && arguments.size() == 5;
    if (!loop && !play) {
        std::fprintf(stderr,
                     "usage: bench_window loop PORT FRAMES | play[-hidden] PORT MS SECONDS\n");
        return 2;
    }
    qx::MainWindow window;
    if (!hidden)
        window.show();
    Session session(window, arguments.at(2));
    if (loop)
        session.loop(arguments.at(3).toInt());
    else
        session.play(arguments.at(3).toInt(), arguments.at(4).toInt());
    return 0;
}
