// SPDX-License-Identifier: MIT
// How long loading, starting, stopping and seeking a video holds up the thread that sends the
// frames:
//
//   bench_media bare FILE          the media objects alone, asked without any care
//   bench_media window PORT FILE   the complete window, which plays at 30 ms
//
// Beats are a timer's or the frames that are written, each 30 ms. Writes one line of JSON: for each
// action the longest time between two beats, in milliseconds.
#include "bench/linkedwindow.h"
#include "serial/serialcontroller.h"
#include "widgets/playerpanel.h"

#include <QApplication>
#include <QAudioOutput>
#include <QElapsedTimer>
#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>
#include <QVideoWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto interval = 30ms;
constexpr auto settling = 700ms; // after an action, until the next one
constexpr auto dragStep = 5ms;
constexpr int rounds = 10;

class Beats
{
public:
    void beat() { longest = std::max(longest, last.nsecsElapsed()), last.start(); }
    double longestMs() const { return static_cast<double>(longest) / 1e6; }
    void forget()
    {
        longest = 0;
        last.start();
    }

private:
    QElapsedTimer last;
    qint64 longest = 0;
};

void wait(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Actions
{
    std::function<void()> load;
    std::function<void()> play;
    std::function<void()> pause;
    std::function<void()> stop;
    std::function<void(int frame)> seek;
};

// As a hand drags the slider over ten frames.
void drag(const Actions &actions)
{
    for (int frame = 10; frame <= 20; ++frame) {
        actions.seek(frame);
        wait(dragStep);
    }
}

void measure(const Actions &actions, Beats &beats)
{
    double worst[5] = {};
    const auto take = [&](const std::function<void()> &action, double &longest) {
        beats.forget();
        action();
        wait(settling);
        longest = std::max(longest, beats.longestMs());
    };
    for (int i = 0; i < rounds; ++i) {
        take(actions.load, worst[0]);
        take(actions.play, worst[1]);
        take(actions.stop, worst[2]);
        for (const auto &action : {actions.play, actions.pause}) {
            action();
            wait(settling);
        }
        take([&] { drag(actions); }, worst[3]);
        actions.play();
        wait(settling);
        take(actions.load, worst[4]);
    }
    std::printf("{\"load\": %.1f, \"play\": %.1f, \"stop\": %.1f, \"seekWhilePaused\": %.1f, "
                "\"loadWhilePlaying\": %.1f}\n",
                worst[0], worst[1], worst[2], worst[3], worst[4]);
}

void bare(const QString &file)
{
    QMediaPlayer player;
    QAudioOutput output;
    QVideoWidget video;
    player.setAudioOutput(&output);
    player.setVideoOutput(&video);
    video.show();
    Beats beats;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&beats] { beats.beat(); });
    timer.start(interval);
    const auto load = [&] {
        player.setSource(QUrl());
        player.setSource(QUrl::fromLocalFile(file));
    };
    measure({load, [&] { player.play(); }, [&] { player.pause(); }, [&] { player.stop(); },
             [&](int frame) { player.setPosition(frame * interval.count()); }},
            beats);
}

void inWindow(const QString &portPath, const QString &file)
{
    qx::MainWindow window;
    window.show();
    qx::bench::link(window, portPath);
    auto *panel = window.findChild<qx::PlayerPanel *>();
    panel->setIntervalMs(static_cast<int>(interval.count()));
    panel->setRepeatEnabled(true);
    Beats beats;
    QObject::connect(window.findChild<qx::SerialController *>(),
                     &qx::SerialController::bytesTransmitted, [&beats] { beats.beat(); });
    window.startPlayback();
    const auto load = [&] { window.loadMediaFile(file); };
    const auto stop = [&] { window.stopPlayback(true); };
    measure({load, [&] { window.startPlayback(); }, [&] { window.pausePlayback(); }, stop,
             [&](int frame) { window.seekSelectedMedia(frame); }},
            beats);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("bare") && arguments.size() == 3) {
        bare(arguments.at(2));
    } else if (arguments.value(1) == QLatin1String("window") && arguments.size() == 4) {
        inWindow(arguments.at(2), arguments.at(3));
    } else {
        std::fprintf(stderr, "usage: bench_media bare FILE | window PORT FILE\n");
        return 2;
    }
    return 0;
}
