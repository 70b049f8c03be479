// SPDX-License-Identifier: MIT
// Any bytes as a media file, loaded and played for a moment.
#include "fuzz/fuzzwindow.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QMediaPlayer>
#include <QMessageBox>

#include <chrono>

using namespace std::chrono_literals;

namespace {

qx::MainWindow *window;
QTemporaryDir *directory;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qx::fuzz::startApplication(argc, argv);
    directory = new QTemporaryDir;
    window = new qx::MainWindow;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString path = directory->filePath(QStringLiteral("media.mp4"));
    QFile file(path);
    qx::fuzz::require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    file.close();

    qx::fuzz::require(window->loadMediaFile(path));
    auto *player = window->findChild<QMediaPlayer *>(QStringLiteral("mediaPlayer"));
    const QDeadlineTimer patience(1s);
    while (player->mediaStatus() == QMediaPlayer::LoadingMedia && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    window->startPlayback();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    window->stopPlayback(true);
    const auto boxes = window->findChildren<QMessageBox *>();
    qx::fuzz::require(boxes.size() <= 1);
    qDeleteAll(boxes);
    return 0;
}
