// SPDX-License-Identifier: MIT
#include "mainwindow/mainwindow.h"
#include "mainwindow/version.h"
#include "process/endsignals.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QPixmap>
#include <QPointer>

namespace {

// Where the font has no Chinese, the system's choice follows its locale and may be a font with
// Japanese or traditional forms; these are the simplified ones of the usual systems.
void preferSimplifiedChinese(const QFont &font)
{
    QFont::insertSubstitutions(
        font.family(), {QFontInfo(font).family(), QStringLiteral("Noto Sans CJK SC"),
                        QStringLiteral("PingFang SC"), QStringLiteral("Microsoft YaHei UI")});
}

// Where the display is lost Qt ends the process by exit(), which destroys nothing of main's; the
// port is to be free for others then, too.
struct PortRelease
{
    QPointer<qx::MainWindow> window;

    ~PortRelease()
    {
        if (window)
            window->releasePort();
    }
};

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
    static const PortRelease release{&window};
    const qx::EndSignals endSignals;
    QObject::connect(&endSignals, &qx::EndSignals::endRequested, &application,
                     [] { QCoreApplication::exit(0); }); // out of any dialog too
    window.show();
    return QApplication::exec();
}
