// SPDX-License-Identifier: MIT
#include "tests/support/mediafiles.h"
#include "tests/support/residentmemory.h"
#include "tests/support/stage.h"

#include <QAction>
#include <QApplication>
#include <QAudioOutput>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMediaPlayer>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <QVideoWidget>

#include <functional>
#include <memory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;
using namespace qx::test;
using qx::Language;
using qx::UiLanguage;

namespace {

const QString english = u"en"_s;
const QString chinese = u"zh_CN"_s;

QString selectedLine(const QString &name)
{
    return either(u"MEDIA Selected media: %1"_s, u"MEDIA 已选择媒体：%1"_s).arg(name);
}

QString readyLine(const QString &name, qint64 durationMs)
{
    return either(u"MEDIA Media ready: %1, duration %2 ms"_s, u"MEDIA 媒体已就绪：%1，时长 %2 ms"_s)
        .arg(name, QString::number(durationMs));
}

QString notReadable(const QString &path)
{
    return either(u"The media file does not exist or is not readable: %1"_s,
                  u"媒体文件不存在或不可读取：%1"_s)
        .arg(path);
}

QString playbackFailed(const QString &reason)
{
    return either(u"Media playback failed: %1"_s, u"媒体播放失败：%1"_s).arg(reason);
}

QString chooseHint()
{
    return either(u"Choose an audio or video file and synchronize it with frame playback"_s,
                  u"选择音频或视频文件，并与播放帧同步控制"_s);
}

QString savedDirectory()
{
    return QSettings().value(u"media/lastDirectory"_s).toString();
}

QVideoWidget *preview(Stage &stage)
{
    return stage.window().findChild<QVideoWidget *>(u"mediaVideoWidget"_s);
}

QAbstractButton *browseButton(Stage &stage)
{
    return stage.hand().navigation("navMediaBrowse");
}

QList<QMessageBox *> boxes(Stage &stage)
{
    return stage.window().findChildren<QMessageBox *>();
}

bool isReady(Stage &stage)
{
    const QMediaPlayer *media = stage.hand().media();
    return media->mediaStatus() == QMediaPlayer::LoadedMedia && media->duration() > 0 &&
           stage.hand().log("MEDIA").last().contains(QString::number(media->duration()));
}

// What the file dialog offered before `act` answered it.
struct Offer
{
    bool shown = false;
    QString title;
    QString directory;
    QStringList filters;
    QString typedFile;
};

using Answer = void (*)(QFileDialog *dialog, const QString &path);

void cancel(QFileDialog *dialog, const QString &)
{
    dialog->reject();
}

void choose(QFileDialog *dialog, const QString &path)
{
    auto *name = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
}

// Clicks Browse and answers the dialog.
Offer browse(Stage &stage, Answer answer, const QString &path = {})
{
    Offer offer;
    QTimer look; // the click returns when the dialog is answered
    QObject::connect(&look, &QTimer::timeout, [&] {
        // A dialog that has not read the directory yet does not know the file and says so.
        if (auto *complaint = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            complaint->accept();
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        if (!offer.shown)
            offer = {true, dialog->windowTitle(), dialog->directory().absolutePath(),
                     dialog->nameFilters(),
                     dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text()};
        answer(dialog, path);
    });
    look.start(10);
    stage.hand().click(browseButton(stage));
    return offer;
}

// Runs the program until it ends by itself, until `done`, or for five seconds.
constexpr int stillRunning = 7;

int runProgram(const std::function<bool()> &done)
{
    QDeadlineTimer patience(5000);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (done() || patience.hasExpired())
            QApplication::exit(stillRunning);
    });
    look.start(10);
    return QApplication::exec();
}

qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s)
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

} // namespace

class TestMedia : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nothingSelected_data();
    void nothingSelected();
    void playerIsSetUp();
    void load_data();
    void load();
    void loadInChinese();
    void suffixInCapitals();
    void videoUnderAnAudioName();
    void audioUnderAVideoName();
    void soundHasNoPreview();
    void readyIsSaidOnce();
    void oddNames_data();
    void oddNames();
    void loadedNotPlayed();
    void anotherFileReplacesIt();
    void sameFileAgain();
    void renamedAfterLoading();

    void refused_data();
    void refused();
    void refusedWithoutPermission();
    void refusalKeepsTheLoadedFile();
    void broken_data();
    void broken();
    void stopBehindTheBox();
    void oneReportPerFile();
    void refusalClearsTheReport();
    void emptyReasonNamesTheFile();
    void messagesArePlainText();
    void emptyMessage();

    void dialog_data();
    void dialog();
    void chosenInTheDialog();
    void cancelledDialog();
    void missingMoviesDirectoryIsNoFile();
    void lastDirectoryIsOffered();
    void vanishedDirectoryFallsBack();
    void fileIsNoLastDirectory();

    void previewFollowsTheLanguage();
    void closedPreviewKeepsTheProgram();
    void openPreviewDoesNotKeepTheProgram();
    void tenFilesInARow_data();
    void tenFilesInARow();

private:
    std::unique_ptr<MediaFiles> files;
    QString wav;
    QString webm;
};

void TestMedia::initTestCase()
{
    takeIdentity();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    files = std::make_unique<MediaFiles>();
    wav = files->tone(u"tone.wav"_s);
    QVERIFY2(!wav.isEmpty(), qPrintable(files->problem()));
    webm = files->video(u"clip.webm"_s);
    QVERIFY2(!webm.isEmpty(), qPrintable(files->problem()));
}

void TestMedia::nothingSelected_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << english;
    QTest::newRow("Chinese") << chinese;
}

void TestMedia::nothingSelected()
{
    QFETCH(QString, language);
    Stage stage(language);
    const QAbstractButton *button = browseButton(stage);
    QCOMPARE(button->text(), either(u"Browse"_s, u"文件浏览"_s));
    QCOMPARE(button->accessibleName(), either(u"Browse"_s, u"文件浏览"_s));
    QCOMPARE(button->toolTip(), chooseHint());
    QCOMPARE(button->accessibleDescription(), chooseHint());
    QVERIFY(!preview(stage)->isVisible());
    QVERIFY(!stage.window().hasSelectedMedia());
    QCOMPARE(stage.hand().log("MEDIA"), QStringList());
}

void TestMedia::playerIsSetUp()
{
    Stage stage;
    const QMediaPlayer *media = stage.hand().media();
    const auto *sound = stage.window().findChild<QAudioOutput *>(u"mediaAudioOutput"_s);
    const QVideoWidget *picture = preview(stage);
    QCOMPARE(media->audioOutput(), sound);
    QCOMPARE(media->videoOutput(), picture);
    QCOMPARE(media->loops(), 1);
    QCOMPARE(sound->volume(), 1.0F);
    QVERIFY(picture->isWindow());
    QVERIFY(picture->windowFlags().testFlag(Qt::Window));
    QVERIFY(!picture->testAttribute(Qt::WA_QuitOnClose));
    QCOMPARE(picture->minimumSize(), QSize(480, 270));
    QCOMPARE(picture->size(), QSize(960, 540));
    QCOMPARE(picture->aspectRatioMode(), Qt::KeepAspectRatio);
    QCOMPARE(picture->styleSheet(), u"background:#0d0f10;"_s);
}

void TestMedia::load_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isVideo");
    QTest::newRow("wav") << u"a.wav"_s << false;
    QTest::newRow("mp3") << u"a.mp3"_s << false;
    QTest::newRow("flac") << u"a.flac"_s << false;
    QTest::newRow("ogg") << u"a.ogg"_s << false;
    QTest::newRow("m4a") << u"a.m4a"_s << false;
    QTest::newRow("webm") << u"v.webm"_s << true;
    QTest::newRow("mkv") << u"v.mkv"_s << true;
    QTest::newRow("mp4") << u"v.mp4"_s << true;
}

void TestMedia::load()
{
    QFETCH(QString, name);
    QFETCH(bool, isVideo);
    const QString path = isVideo ? files->video(name) : files->tone(name);
    QVERIFY2(!path.isEmpty(), qPrintable(files->problem()));
    Stage stage;
    const Operator &hand = stage.hand();
    const QMediaPlayer *media = hand.media();

    QVERIFY(stage.window().loadMediaFile(path));
    QCOMPARE(hand.lastLog(), selectedLine(name));
    QCOMPARE(hand.statusBar(), u"Selected media: %1"_s.arg(name));
    QCOMPARE(hand.statusLifetimeMs(), 5000);
    QCOMPARE(browseButton(stage)->toolTip(), chooseHint() + u'\n' + path);
    QCOMPARE(browseButton(stage)->accessibleDescription(), chooseHint() + u'\n' + path);
    QCOMPARE(browseButton(stage)->text(), u"Browse"_s);
    QCOMPARE(savedDirectory(), files->directory());
    QCOMPARE(preview(stage)->isVisible(), isVideo);
    QCOMPARE(preview(stage)->windowTitle(), u"Video Preview — %1"_s.arg(name));
    QVERIFY(stage.window().hasSelectedMedia());

    QTRY_VERIFY(isReady(stage));
    QVERIFY(media->isSeekable());
    QVERIFY(qAbs(media->duration() - 1000) < 100);
    QCOMPARE(hand.log("MEDIA").size(), 2);
    QCOMPARE(hand.lastLog(), readyLine(name, media->duration()));
    QCOMPARE(media->position(), 0);
    QCOMPARE(media->playbackState(), QMediaPlayer::StoppedState);
    QCOMPARE(preview(stage)->isVisible(), isVideo);
    QCOMPARE(hand.log("ERR"), QStringList());
}

void TestMedia::loadInChinese()
{
    Stage stage(chinese);
    QVERIFY(stage.window().loadMediaFile(webm));
    QCOMPARE(stage.hand().lastLog(), selectedLine(u"clip.webm"_s));
    QCOMPARE(stage.hand().statusBar(), u"已选择媒体：clip.webm"_s);
    QCOMPARE(preview(stage)->windowTitle(), u"视频预览 — clip.webm"_s);
    QTRY_COMPARE(stage.hand().lastLog(), readyLine(u"clip.webm"_s, 1000));
}

void TestMedia::suffixInCapitals()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(files->copy(webm, u"CLIP.WEBM"_s)));
    QVERIFY(preview(stage)->isVisible());
}

// The suffix says sound, the content says pictures: they are shown as soon as they are found.
void TestMedia::videoUnderAnAudioName()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(files->copy(webm, u"renamed.mp3"_s)));
    QVERIFY(!preview(stage)->isVisible());
    QTRY_VERIFY(preview(stage)->isVisible());
    stage.window().stopSelectedMedia();
    QVERIFY(preview(stage)->isVisible());
}

// A file that is called a video keeps its window.
void TestMedia::audioUnderAVideoName()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(files->copy(wav, u"renamed.mp4"_s)));
    QTRY_VERIFY(isReady(stage));
    QVERIFY(preview(stage)->isVisible());
    QCOMPARE(stage.hand().log("ERR"), QStringList());
    emit stage.hand().media()->hasVideoChanged(false);
    QVERIFY(preview(stage)->isVisible());
}

void TestMedia::soundHasNoPreview()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(wav));
    QTRY_VERIFY(isReady(stage));
    preview(stage)->show();
    emit stage.hand().media()->hasVideoChanged(false);
    QVERIFY(!preview(stage)->isVisible());
}

// The duration of some files changes while they play.
void TestMedia::readyIsSaidOnce()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QVERIFY(stage.window().loadMediaFile(wav));
    emit hand.media()->durationChanged(0);
    emit hand.media()->durationChanged(-1);
    QCOMPARE(hand.log("MEDIA").size(), 1);
    QTRY_VERIFY(isReady(stage));
    hand.click(hand.play());
    QTRY_VERIFY(hand.media()->position() > 300);
    emit hand.media()->durationChanged(1100);
    QCOMPARE(hand.log("MEDIA").size(), 2);
    QVERIFY(hand.media()->position() > 300); // nor is the media moved
}

void TestMedia::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("logged");
    QTest::newRow("placeholder") << u"50%2.mp3"_s << u"50%2.mp3"_s;
    QTest::newRow("all placeholders") << u"%1 %2 %3.wav"_s << u"%1 %2 %3.wav"_s;
    QTest::newRow("markup") << u"<b>loud<br>.wav"_s << u"<b>loud<br>.wav"_s;
    QTest::newRow("line feed") << u"two\nlines.wav"_s << u"two\u240Alines.wav"_s;
    QTest::newRow("carriage return") << u"two\rlines.wav"_s << u"two\u240Dlines.wav"_s;
    QTest::newRow("marks of an address") << u"a#b?c=%20.wav"_s << u"a#b?c=%20.wav"_s;
    QTest::newRow("blanks") << u"  a  b .wav"_s << u"  a  b .wav"_s;
    QTest::newRow("Chinese") << u"音乐.wav"_s << u"音乐.wav"_s;
    QTest::newRow("ampersand") << u"&a && b.wav"_s << u"&a && b.wav"_s;
    QTest::newRow("several dots") << u"a.mp4.wav"_s << u"a.mp4.wav"_s;
}

void TestMedia::oddNames()
{
    QFETCH(QString, name);
    QFETCH(QString, logged);
    Stage stage;
    const Operator &hand = stage.hand();
    const QString path = files->copy(wav, name);
    QVERIFY2(!path.isEmpty(), qPrintable(files->problem()));
    QVERIFY(stage.window().loadMediaFile(path));
    QCOMPARE(hand.lastLog(), selectedLine({}) + logged);
    QCOMPARE(hand.statusBar(), u"Selected media: "_s + name);
    QCOMPARE(browseButton(stage)->toolTip(), chooseHint() + u'\n' + path);
    QCOMPARE(preview(stage)->windowTitle(), u"Video Preview — "_s + name);
    QTRY_COMPARE(hand.lastLog(), u"MEDIA Media ready: "_s + logged + u", duration 1000 ms"_s);
    QVERIFY(!preview(stage)->isVisible());
}

void TestMedia::loadedNotPlayed()
{
    Stage stage;
    QSignalSpy states(stage.hand().media(), &QMediaPlayer::playbackStateChanged);
    QVERIFY(stage.window().loadMediaFile(wav));
    QTRY_VERIFY(isReady(stage));
    QCOMPARE(states.size(), 0);
    QCOMPARE(stage.hand().state(), u"Stopped"_s);
}

void TestMedia::anotherFileReplacesIt()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QVERIFY(stage.window().loadMediaFile(webm));
    QTRY_VERIFY(isReady(stage));
    QVERIFY(stage.window().loadMediaFile(wav));
    QVERIFY(!preview(stage)->isVisible());
    QCOMPARE(preview(stage)->windowTitle(), u"Video Preview — tone.wav"_s);
    QTRY_COMPARE(hand.lastLog(), readyLine(u"tone.wav"_s, 1000));
    QVERIFY(!preview(stage)->isVisible());
    QVERIFY(stage.window().loadMediaFile(webm));
    QVERIFY(preview(stage)->isVisible());
    QTRY_COMPARE(hand.logCount(readyLine(u"clip.webm"_s, 1000)), 2);
    QCOMPARE(hand.log("MEDIA").size(), 6);
}

void TestMedia::sameFileAgain()
{
    Stage stage;
    const Operator &hand = stage.hand();
    for (int times = 1; times <= 3; ++times) {
        QVERIFY(stage.window().loadMediaFile(wav));
        QCOMPARE(hand.logCount(selectedLine(u"tone.wav"_s)), times);
        QTRY_COMPARE(hand.logCount(readyLine(u"tone.wav"_s, 1000)), times);
    }
}

void TestMedia::renamedAfterLoading()
{
    Stage stage;
    const QString path = files->copy(wav, u"before.wav"_s);
    QVERIFY(stage.window().loadMediaFile(path));
    QTRY_VERIFY(isReady(stage));
    QVERIFY(QFile::rename(path, files->path(u"after.wav"_s)));

    stage.hand().click(stage.hand().play()); // it is open already
    QTRY_COMPARE(stage.hand().media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QCOMPARE(stage.hand().log("ERR"), QStringList());
    QVERIFY(!stage.window().loadMediaFile(path));
    QCOMPARE(stage.hand().log("ERR"), QStringList{notReadable(path)});
}

void TestMedia::refused_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("path");
    const QString missing = files->path(u"no such file 50%2.mp3"_s);
    const QString relative = u"../no/such/%1.mp3"_s;
    QTest::newRow("missing") << english << missing;
    QTest::newRow("missing, in Chinese") << chinese << missing;
    QTest::newRow("the path as it was given") << english << relative;
    QTest::newRow("directory") << english << files->directory();
    QTest::newRow("not a regular file") << english << u"/dev/null"_s;
}

void TestMedia::refused()
{
    QFETCH(QString, language);
    QFETCH(QString, path);
    Stage stage(language);
    const Operator &hand = stage.hand();
    QVERIFY(!stage.window().loadMediaFile(path));
    QCOMPARE(hand.lastLog(), u"ERR   "_s + notReadable(path));
    QCOMPARE(hand.statusBar(), notReadable(path));
    QCOMPARE(hand.statusLifetimeMs(), 8000);
    QCOMPARE(boxes(stage).size(), 1);
    const QMessageBox *box = boxes(stage).first();
    QVERIFY(box->isVisible());
    QVERIFY(!box->isModal());
    QCOMPARE(box->icon(), QMessageBox::Warning);
    QCOMPARE(box->windowTitle(), either(u"Media Error"_s, u"媒体错误"_s));
    QCOMPARE(box->text(), notReadable(path));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    QCOMPARE(box->standardButtons(), QMessageBox::Ok);
    QCOMPARE(box->parentWidget(), &stage.window());
    QVERIFY(!stage.window().hasSelectedMedia());
    QCOMPARE(browseButton(stage)->toolTip(), chooseHint());
    QCOMPARE(savedDirectory(), QString());

    QTest::mouseClick(boxes(stage).first()->button(QMessageBox::Ok), Qt::LeftButton);
    QTRY_VERIFY(boxes(stage).isEmpty());
}

void TestMedia::refusedWithoutPermission()
{
#ifdef Q_OS_UNIX
    const QString path = files->copy(wav, u"secret.wav"_s);
    QVERIFY(QFile::setPermissions(path, {}));
    Stage stage;
    const bool root = getuid() == 0; // who may read everything
    constexpr uid_t nobody = 65534;
    if (root)
        QCOMPARE(setresuid(nobody, nobody, 0), 0);
    const bool accepted = stage.window().loadMediaFile(path);
    if (root)
        QCOMPARE(setresuid(0, 0, 0), 0);
    QVERIFY(!accepted);
    QCOMPARE(stage.hand().log("ERR"), QStringList{notReadable(path)});
    QVERIFY(!stage.window().hasSelectedMedia());
#else
    QSKIP("Permissions are a matter of Unix here");
#endif
}

void TestMedia::refusalKeepsTheLoadedFile()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QVERIFY(stage.window().loadMediaFile(wav));
    QTRY_VERIFY(isReady(stage));
    hand.click(hand.play());
    QVERIFY(!stage.window().loadMediaFile(files->path(u"missing.wav"_s)));
    QCOMPARE(browseButton(stage)->toolTip(), chooseHint() + u'\n' + wav);
    QCOMPARE(hand.media()->source(), QUrl::fromLocalFile(wav));
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QCOMPARE(hand.log("MEDIA").size(), 2);
}

void TestMedia::broken_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QByteArray noise;
    for (int i = 0; i < 20000; ++i)
        noise.append(static_cast<char>((i * 7919 + i / 251) % 251));
    QTest::newRow("empty audio") << u"empty.mp3"_s << QByteArray();
    QTest::newRow("empty video") << u"empty.webm"_s << QByteArray();
    QTest::newRow("text as audio")
        << u"text.mp3"_s << QByteArray("This is not music.\n").repeated(9);
    QTest::newRow("text as video")
        << u"text.mp4"_s << QByteArray("This is not film.\n").repeated(9);
    QTest::newRow("noise as audio") << u"noise.flac"_s << noise;
    QTest::newRow("noise as video") << u"noise.mkv"_s << noise;
    QTest::newRow("header only") << u"header.wav"_s << QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16);
}

// One line and one box, however often the backend reports. It may also take the bytes for media of
// no length and say nothing: that is told when it is played.
void TestMedia::broken()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    Stage stage;
    const Operator &hand = stage.hand();
    const QMediaPlayer *media = hand.media();
    QSignalSpy reports(media, &QMediaPlayer::errorOccurred);
    files->file(name, content);
    QVERIFY(stage.window().loadMediaFile(files->path(name)));
    QCOMPARE(hand.lastLog(), selectedLine(name));

    QTRY_VERIFY(media->mediaStatus() != QMediaPlayer::LoadingMedia);
    const bool refused = media->mediaStatus() == QMediaPlayer::InvalidMedia;
    QVERIFY(refused || media->duration() < 1);
    QVERIFY(!preview(stage)->isVisible());
    hand.click(hand.play());
    QTRY_VERIFY(hand.frame()->value() >= 3); // frames do not care
    QTRY_COMPARE(hand.log("ERR").size(), 1);
    hand.click(hand.stop());
    QCOMPARE(media->playbackState(), QMediaPlayer::StoppedState);

    QCOMPARE(reports.isEmpty(), !refused);
    QCOMPARE(hand.log("ERR").size(), 1);
    QVERIFY(hand.log("ERR").first().startsWith(u"Media playback failed: "_s));
    QVERIFY(hand.log("ERR").first().size() > playbackFailed({}).size());
    QCOMPARE(boxes(stage).size(), 1);
    QCOMPARE(boxes(stage).first()->text(), hand.log("ERR").first());
    QCOMPARE(hand.log("MEDIA").size(), 1); // never ready
}

// The box may stay up: the window behind it can still be worked, Stop most of all.
void TestMedia::stopBehindTheBox()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.click(hand.play());
    files->file(u"broken.mp3"_s, "nothing");
    QVERIFY(stage.window().loadMediaFile(files->path(u"broken.mp3"_s)));
    QTRY_COMPARE(boxes(stage).size(), 1);
    QVERIFY(boxes(stage).first()->isVisible());
    QVERIFY(!QApplication::activeModalWidget());
    hand.click(hand.stop());
    QCOMPARE(hand.state(), u"Stopped"_s);
    QVERIFY(boxes(stage).first()->isVisible());
}

void TestMedia::oneReportPerFile()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QMediaPlayer *media = hand.media();
    QVERIFY(stage.window().loadMediaFile(wav));
    emit media->errorOccurred(QMediaPlayer::NoError, u"no matter"_s);
    QCOMPARE(hand.log("ERR"), QStringList());

    emit media->errorOccurred(QMediaPlayer::ResourceError, u"  first  \n"_s);
    emit media->errorOccurred(QMediaPlayer::FormatError, u"second"_s);
    QCOMPARE(hand.log("ERR"), QStringList{playbackFailed(u"first"_s)});
    QCOMPARE(boxes(stage).size(), 1);

    QVERIFY(stage.window().loadMediaFile(wav));
    emit media->errorOccurred(QMediaPlayer::NetworkError, u"third"_s);
    QCOMPARE(hand.log("ERR").last(), playbackFailed(u"third"_s));
    QCOMPARE(boxes(stage).size(), 2);
}

// The refused file's report is not the loaded file's: that one's next error is told again.
void TestMedia::refusalClearsTheReport()
{
    Stage stage;
    const Operator &hand = stage.hand();
    const QString missing = files->path(u"missing.wav"_s);
    QVERIFY(stage.window().loadMediaFile(wav));
    emit hand.media()->errorOccurred(QMediaPlayer::ResourceError, u"first"_s);
    QVERIFY(!stage.window().loadMediaFile(missing));
    emit hand.media()->errorOccurred(QMediaPlayer::ResourceError, u"second"_s);
    emit hand.media()->errorOccurred(QMediaPlayer::ResourceError, u"third"_s);
    QCOMPARE(hand.log("ERR"), (QStringList{playbackFailed(u"first"_s), notReadable(missing),
                                           playbackFailed(u"second"_s)}));
    QCOMPARE(boxes(stage).size(), 3);
}

void TestMedia::emptyReasonNamesTheFile()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(wav));
    emit stage.hand().media()->errorOccurred(QMediaPlayer::ResourceError, u" \t"_s);
    QCOMPARE(stage.hand().log("ERR"), QStringList{playbackFailed(u"tone.wav"_s)});
}

void TestMedia::messagesArePlainText()
{
    Stage stage;
    const QString reason = u"<img src='/etc/passwd'> <b>50%2</b>"_s;
    QVERIFY(stage.window().loadMediaFile(wav));
    emit stage.hand().media()->errorOccurred(QMediaPlayer::ResourceError, reason);
    QCOMPARE(stage.hand().lastLog(), u"ERR   "_s + u"Media playback failed: "_s + reason);
    QCOMPARE(boxes(stage).first()->text(), u"Media playback failed: "_s + reason);
    QCOMPARE(boxes(stage).first()->textFormat(), Qt::PlainText);
}

void TestMedia::emptyMessage()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(wav));
    stage.window().reportMediaError(u"  "_s);
    QCOMPARE(stage.hand().log("ERR"), QStringList{playbackFailed(u"tone.wav"_s)});
}

void TestMedia::dialog_data()
{
    nothingSelected_data();
}

void TestMedia::dialog()
{
    QFETCH(QString, language);
    Stage stage(language);
    const Offer offer = browse(stage, cancel);
    QVERIFY(offer.shown);
    QCOMPARE(offer.title, either(u"Choose Audio or Video"_s, u"选择音频或视频"_s));
    const QString audio = u"*.mp3 *.wav *.aac *.m4a *.flac *.ogg *.wma"_s;
    const QString video = u"*.mp4 *.mov *.mkv *.avi *.wmv *.webm *.m4v"_s;
    QCOMPARE(offer.filters,
             (QStringList{either(u"Media Files (%1 %2)"_s, u"媒体文件 (%1 %2)"_s).arg(audio, video),
                          either(u"Audio Files (%1)"_s, u"音频文件 (%1)"_s).arg(audio),
                          either(u"Video Files (%1)"_s, u"视频文件 (%1)"_s).arg(video),
                          either(u"All Files (*)"_s, u"所有文件 (*)"_s)}));
}

void TestMedia::chosenInTheDialog()
{
    Stage stage;
    browse(stage, choose, wav);
    QCOMPARE(stage.hand().lastLog(), selectedLine(u"tone.wav"_s));
    QTRY_VERIFY(isReady(stage));
}

void TestMedia::cancelledDialog()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(webm));
    QTRY_VERIFY(isReady(stage));
    stage.hand().click(stage.hand().play());
    const QStringList before = stage.hand().log("MEDIA");
    browse(stage, cancel);
    QCOMPARE(stage.hand().log("MEDIA"), before);
    QCOMPARE(stage.hand().media()->playbackState(), QMediaPlayer::PlayingState);
    QVERIFY(preview(stage)->isVisible());
}

void TestMedia::missingMoviesDirectoryIsNoFile()
{
    const QTemporaryDir home;
    const QByteArray before = qgetenv("HOME");
    const auto putBack = qScopeGuard([&before] { qputenv("HOME", before); });
    qputenv("HOME", QFile::encodeName(home.path()));
    Stage stage;
    const Offer offer = browse(stage, cancel);
    QVERIFY(offer.shown);
    QCOMPARE(offer.directory, home.path());
    QCOMPARE(offer.typedFile, QString());
}

void TestMedia::lastDirectoryIsOffered()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(wav));
    stage.restart();
    QCOMPARE(browse(stage, cancel).directory, files->directory());
}

void TestMedia::vanishedDirectoryFallsBack()
{
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    QVERIFY(QDir().mkpath(movies));
    Stage stage;
    QCOMPARE(browse(stage, cancel).directory, movies);
    {
        QTemporaryDir shortLived;
        QVERIFY(QFile::copy(wav, shortLived.filePath(u"tone.wav"_s)));
        QVERIFY(stage.window().loadMediaFile(shortLived.filePath(u"tone.wav"_s)));
        QCOMPARE(savedDirectory(), shortLived.path());
        QCOMPARE(browse(stage, cancel).directory, shortLived.path());
    }
    QCOMPARE(browse(stage, cancel).directory, movies);
}

void TestMedia::fileIsNoLastDirectory()
{
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    QVERIFY(QDir().mkpath(movies));
    Stage stage;
    QSettings().setValue(u"media/lastDirectory"_s, wav);
    QCOMPARE(browse(stage, cancel).directory, movies);
}

void TestMedia::previewFollowsTheLanguage()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(webm));
    QCOMPARE(preview(stage)->windowTitle(), u"Video Preview — clip.webm"_s);
    stage.window().setLanguage(UiLanguage::Chinese);
    QCOMPARE(preview(stage)->windowTitle(), u"视频预览 — clip.webm"_s);
    QCOMPARE(browseButton(stage)->toolTip(), chooseHint() + u'\n' + webm);
    QCOMPARE(browseButton(stage)->accessibleName(), u"文件浏览"_s);
    QVERIFY(preview(stage)->isVisible());
}

void TestMedia::closedPreviewKeepsTheProgram()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(webm));
    QTRY_VERIFY(isReady(stage));
    QTimer::singleShot(0, preview(stage), &QWidget::close);
    QCOMPARE(runProgram([&] { return !preview(stage)->isVisible(); }), stillRunning);
    QVERIFY(stage.window().isVisible());

    stage.hand().click(stage.hand().play()); // it plays on without being seen
    QTRY_COMPARE(stage.hand().media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QVERIFY(stage.window().loadMediaFile(webm));
    QVERIFY(preview(stage)->isVisible());
}

void TestMedia::openPreviewDoesNotKeepTheProgram()
{
    Stage stage;
    QVERIFY(stage.window().loadMediaFile(webm));
    QVERIFY(preview(stage)->isVisible());
    QTimer::singleShot(0, &stage.window(), &QWidget::close);
    QCOMPARE(runProgram([] { return false; }), 0);
}

void TestMedia::tenFilesInARow_data()
{
    QTest::addColumn<bool>("played");
    QTest::newRow("only loaded") << false;
    QTest::newRow("played in between") << true;
}

void TestMedia::tenFilesInARow()
{
    QFETCH(bool, played);
    Stage stage;
    const Operator &hand = stage.hand();
    const auto loadBoth = [&] {
        for (const QString &path : {webm, wav}) {
            QVERIFY(stage.window().loadMediaFile(path));
            QTRY_COMPARE(hand.media()->source(), QUrl::fromLocalFile(path));
            QTRY_VERIFY(isReady(stage));
            if (played) {
                hand.click(hand.play());
                QTRY_VERIFY(hand.media()->position() > 100);
            }
        }
    };
    loadBoth();
    loadBoth();
    const auto children = [&] { return stage.window().findChildren<QObject *>().size(); };
    const qsizetype childrenBefore = children();
    const qsizetype filesBefore = openFiles();
    const qint64 memoryBefore = residentBytes();

    for (int i = 0; i < 5; ++i)
        loadBoth();
    QTRY_COMPARE(children(), childrenBefore);
    QTRY_VERIFY(openFiles() <= filesBefore);
    QVERIFY(residentBytes() - memoryBefore < 60'000'000);
    QCOMPARE(hand.log("ERR"), QStringList());
}

QTEST_MAIN(TestMedia)

#include "tst_media.moc"
