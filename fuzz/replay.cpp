// SPDX-License-Identifier: MIT
// Gives each file of the seed folder to the target once.
#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cstdio>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size);

int main(int argc, char *argv[])
{
    LLVMFuzzerInitialize(&argc, &argv);
    const QDir seeds(QStringLiteral(SEEDS));
    const QFileInfoList files = seeds.entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        const QByteArray bytes = file.readAll();
        std::printf("%s\n", qPrintable(info.fileName()));
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char *>(bytes.constData()),
                               static_cast<std::size_t>(bytes.size()));
    }
    return files.isEmpty() ? 1 : 0;
}
