// SPDX-License-Identifier: MIT
#include "mainwindow/mainwindow.h"
#include "mainwindow/version.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QPixmap>

namespace {

// Where the font has no Chinese, the system's choice follows its locale and may be a font with
// Japanese or traditional forms; these are the simplified ones of the usual systems.
void preferSimplifiedChinese(const QFont &font)
{
    QFont::insertSubstitutions(
        font.family(), {QFontInfo(font).family(), QStringLiteral("Noto Sans CJK SC"),
                        QStringLiteral("PingFang SC"), QStringLiteral("Microsoft YaHei UI")});
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
    QCoreApplication::setApplicationVersion(qx::version());
    QGuiApplication::setWindowIcon(QPixmap(QStringLiteral(":/assets/logo1_icon.png")));
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSize(10);
    QApplication::setFont(font);
    preferSimplifiedChinese(font);

    qx::MainWindow window;
    window.show();
    return QApplication::exec();
}
