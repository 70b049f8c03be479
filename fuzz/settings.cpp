// SPDX-License-Identifier: MIT
// Any bytes as the settings file.
#include "fuzz/fuzzwindow.h"

#include <QFile>
#include <QFileInfo>

namespace {

qx::MainWindow *window;
QString path;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qx::fuzz::startApplication(argc, argv);
    path = QSettings().fileName();
    QDir().mkpath(QFileInfo(path).path());
    window = new qx::MainWindow;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    QFile::remove(path); // a new file, so that it is read again
    QFile file(path);
    qx::fuzz::require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    file.close();
    window->loadConfiguredRgbw();
    const qx::RgbwLevels levels = window->rgbwFromEditors();
    for (const int level : {levels.red, levels.green, levels.blue, levels.white})
        qx::fuzz::require(level >= 0 && level <= 255);
    return 0;
}
