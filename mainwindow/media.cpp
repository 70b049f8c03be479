// SPDX-License-Identifier: MIT
// MainWindow, media: choosing and loading an audio or video file, its preview, its errors.
// Owns the media objects, selectedMediaPath and the flags of the loaded file.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "media/mediatransport.h"
#include "widgets/plaintooltip.h"

#include <QAudioOutput>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMediaPlayer>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>
#include <QVideoWidget>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace qx {

namespace {

constexpr std::chrono::milliseconds answerOfADisk{5};
constexpr std::chrono::milliseconds answerOfAShare{1000};

QString lastDirectoryKey()
{
    return QStringLiteral("media/lastDirectory");
}

// Whether a directory is there. It may lie on a share that has gone away, which answers after
// seconds or never: it is asked by a thread that is left to itself, and frames go on meanwhile.
bool answersSoon(const QString &directory)
{
    auto answer = std::make_shared<std::promise<bool>>();
    std::future<bool> isThere = answer->get_future();
    std::thread([answer, directory] { answer->set_value(QFileInfo(directory).isDir()); }).detach();
    const auto hasAnswered = [&isThere](std::chrono::milliseconds patience) {
        return isThere.wait_for(patience) == std::future_status::ready;
    };
    if (!hasAnswered(answerOfADisk)) {
        QEventLoop frames;
        const QDeadlineTimer deadline(answerOfAShare);
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &frames, [&] {
            if (hasAnswered({}) || deadline.hasExpired())
                frames.quit();
        });
        look.start(answerOfADisk);
        frames.exec(QEventLoop::ExcludeUserInputEvents);
    }
    return hasAnswered({}) && isThere.get();
}

QString startDirectory()
{
    const QString last = QSettings().value(lastDirectoryKey()).toString();
    if (!last.isEmpty() && answersSoon(last))
        return last;
    const QString home = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    for (const auto location : {QStandardPaths::MoviesLocation, QStandardPaths::MusicLocation}) {
        const QString directory = QStandardPaths::writableLocation(location);
        if (!directory.isEmpty()) // one that is missing would stand there as the file's name
            return QFileInfo(directory).isDir() ? directory : home;
    }
    return home;
}

bool isVideoFile(const QFileInfo &file)
{
    static const QLatin1String videoSuffixes[] = {
        QLatin1String("mp4"), QLatin1String("mov"),  QLatin1String("mkv"), QLatin1String("avi"),
        QLatin1String("wmv"), QLatin1String("webm"), QLatin1String("m4v")};
    const QString suffix = file.suffix().toLower();
    if (std::find(std::cbegin(videoSuffixes), std::cend(videoSuffixes), suffix) !=
        std::cend(videoSuffixes))
        return true;
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(file.absoluteFilePath(), QMimeDatabase::MatchExtension);
    return type.name().startsWith(QLatin1String("video/"), Qt::CaseInsensitive);
}

} // namespace

void MainWindow::setupMediaPlayback()
{
    mediaPlayer = new QMediaPlayer(this);
    mediaPlayer->setObjectName(QStringLiteral("mediaPlayer"));
    mediaAudioOutput = new QAudioOutput(this);
    mediaAudioOutput->setObjectName(QStringLiteral("mediaAudioOutput"));
    mediaAudioOutput->setVolume(1.0F);
    mediaVideoWidget = new QVideoWidget(this);
    mediaVideoWidget->setObjectName(QStringLiteral("mediaVideoWidget"));
    mediaVideoWidget->setWindowFlag(Qt::Window, true);
    mediaVideoWidget->setAttribute(Qt::WA_QuitOnClose, false);
    mediaVideoWidget->setMinimumSize(480, 270);
    mediaVideoWidget->resize(960, 540);
    mediaVideoWidget->setAspectRatioMode(Qt::KeepAspectRatio);
    mediaVideoWidget->setStyleSheet(QStringLiteral("background:#0d0f10;"));
    mediaVideoWidget->hide();
    mediaPlayer->setAudioOutput(mediaAudioOutput);
    mediaPlayer->setVideoOutput(mediaVideoWidget);
    mediaPlayer->setLoops(QMediaPlayer::Once);
    mediaTransport = new MediaTransport(mediaPlayer, mediaVideoWidget->videoSink(), this);
    connect(mediaTransport, &MediaTransport::videoChanged, this, &MainWindow::handleHasVideo);
    connect(mediaTransport, &MediaTransport::ready, this, &MainWindow::handleDuration);
    connect(mediaTransport, &MediaTransport::failed, this, &MainWindow::handleMediaError);
    connect(mediaTransport, &MediaTransport::ended, this, &MainWindow::repeatMedia);
    updateMediaNavigation();
}

void MainWindow::updateMediaNavigation()
{
    if (!mediaBrowseButton)
        return;
    const QString hint = Language::text(UiText::ChooseMediaHint);
    const QString toolTip =
        selectedMediaPath.isEmpty() ? hint : QStringLiteral("%1\n%2").arg(hint, selectedMediaPath);
    mediaBrowseButton->setText(Language::text(UiText::NavBrowse));
    mediaBrowseButton->setToolTip(plainToolTip(toolTip));
    mediaBrowseButton->setAccessibleName(Language::text(UiText::NavBrowse));
    mediaBrowseButton->setAccessibleDescription(toolTip);
}

void MainWindow::browseMediaFile()
{
    const QString path =
        QFileDialog::getOpenFileName(this, Language::text(UiText::ChooseMediaTitle),
                                     startDirectory(), Language::text(UiText::MediaFileFilter));
    if (!path.isEmpty())
        loadMediaFile(path);
}

bool MainWindow::loadMediaFile(const QString &path)
{
    mediaErrorReported = false;
    const QFileInfo file(path);
    QString refusal;
    if (!file.exists() || !file.isFile() || !file.isReadable())
        refusal = Language::text(UiText::MediaNotReadable).arg(path);
    else if (!mediaPlayer || !mediaPlayer->isAvailable())
        refusal = Language::text(UiText::MediaPlaybackFailed)
                      .arg(QStringLiteral("Qt Multimedia backend unavailable"));
    if (!refusal.isEmpty()) {
        reportMediaError(refusal);
        mediaErrorReported = false; // it was not the loaded file's error
        return false;
    }

    stopSelectedMedia();
    mediaIsVideo = isVideoFile(file);
    mediaReadyLogged = false;
    selectedMediaPath = file.absoluteFilePath();
    updateVideoTitle();
    mediaTransport->load(selectedMediaPath);
    if (mediaIsVideo)
        showVideoPreview();
    else
        mediaVideoWidget->hide();
    QSettings settings;
    settings.setValue(lastDirectoryKey(), file.absolutePath());
    settings.sync();
    updateMediaNavigation();
    const QString notice = Language::text(UiText::MediaSelected).arg(mediaFileName());
    appendLog(QStringLiteral("MEDIA"), notice);
    showStatus(notice, lifetimes::notice);
    return true;
}

void MainWindow::showVideoPreview()
{
    mediaVideoWidget->setWindowState(mediaVideoWidget->windowState() & ~Qt::WindowMinimized);
    mediaVideoWidget->show();
    mediaVideoWidget->raise();
}

void MainWindow::updateVideoTitle()
{
    if (!mediaVideoWidget)
        return;
    const QString title = Language::text(UiText::VideoPreviewTitle);
    mediaVideoWidget->setWindowTitle(selectedMediaPath.isEmpty()
                                         ? title
                                         : QStringLiteral("%1 — %2").arg(title, mediaFileName()));
}

QString MainWindow::mediaFileName() const
{
    return QFileInfo(selectedMediaPath).fileName();
}

void MainWindow::handleHasVideo(bool hasVideo)
{
    if (!hasVideo) {
        if (!mediaIsVideo)
            mediaVideoWidget->hide();
        return;
    }
    mediaIsVideo = true;
    if (mediaVideoWidget->isHidden())
        showVideoPreview();
}

void MainWindow::handleDuration(qint64 durationMs)
{
    if (mediaReadyLogged)
        return;
    mediaReadyLogged = true;
    appendLog(QStringLiteral("MEDIA"),
              Language::text(UiText::MediaReady).arg(mediaFileName(), QString::number(durationMs)));
}

void MainWindow::handleMediaError(const QString &reason)
{
    if (mediaPlayer->mediaStatus() == QMediaPlayer::InvalidMedia) {
        mediaIsVideo = false;
        mediaVideoWidget->hide();
    }
    const QString trimmed = reason.trimmed();
    reportMediaError(Language::text(UiText::MediaPlaybackFailed)
                         .arg(trimmed.isEmpty() ? mediaFileName() : trimmed));
}

void MainWindow::reportMediaError(const QString &message)
{
    if (mediaErrorReported)
        return;
    mediaErrorReported = true;
    QString text = message.trimmed();
    if (text.isEmpty())
        text = Language::text(UiText::MediaPlaybackFailed).arg(mediaFileName());
    appendLog(QStringLiteral("ERR"), text);
    showStatus(text, lifetimes::mediaError);

    // Not modal: Stop must stay within reach while the box is up.
    auto *box = new QMessageBox(QMessageBox::Warning, Language::text(UiText::MediaErrorTitle), text,
                                QMessageBox::Ok, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

} // namespace qx
