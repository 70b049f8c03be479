// SPDX-License-Identifier: MIT
// Loaded into the real program by QT_QPA_GENERIC_PLUGINS=startupprobe: once its event loop runs,
// writes what it has become to standard output, as one line of JSON, and closes its window.
#include <QAbstractButton>
#include <QApplication>
#include <QFontDatabase>
#include <QGenericPlugin>
#include <QIcon>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QSettings>
#include <QTimer>

#include <cstdio>

namespace {

QJsonObject describe(const QWidget &window)
{
    const auto *playerEntry = window.findChild<QAbstractButton *>(QStringLiteral("navPlayer"));
    return {
        {QStringLiteral("class"), QString::fromLatin1(window.metaObject()->className())},
        {QStringLiteral("width"), window.width()},
        {QStringLiteral("height"), window.height()},
        {QStringLiteral("normalState"), window.windowState() == Qt::WindowNoState},
        {QStringLiteral("hasIcon"), !window.windowIcon().isNull()},
        {QStringLiteral("pointSize"), window.font().pointSize()},
        {QStringLiteral("playerEntry"), playerEntry ? playerEntry->text() : QString()},
    };
}

QWidgetList visibleWindows()
{
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget *widget) { return !widget->isVisible(); });
    return windows;
}

QJsonObject describeApplication()
{
    QJsonArray windows;
    for (const QWidget *window : visibleWindows())
        windows.append(describe(*window));
    const QFont general = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    const QSize iconSize = QGuiApplication::windowIcon().availableSizes().value(0);
    return {
        {QStringLiteral("name"), QCoreApplication::applicationName()},
        {QStringLiteral("organisation"), QCoreApplication::organizationName()},
        {QStringLiteral("version"), QCoreApplication::applicationVersion()},
        {QStringLiteral("settings"), QSettings().fileName()},
        {QStringLiteral("fontFamily"), QApplication::font().family()},
        {QStringLiteral("generalFontFamily"), general.family()},
        {QStringLiteral("pointSize"), QApplication::font().pointSize()},
        {QStringLiteral("iconWidth"), iconSize.width()},
        {QStringLiteral("iconHeight"), iconSize.height()},
        {QStringLiteral("windows"), windows},
    };
}

void reportAndClose()
{
    std::puts(QJsonDocument(describeApplication()).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
    for (QWidget *window : visibleWindows())
        window->close();
}

} // namespace

class StartupProbe : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "startupprobe.json")

public:
    // The application object is still being made here; its event loop comes last.
    QObject *create(const QString &, const QString &) override
    {
        QTimer::singleShot(0, qApp, &reportAndClose);
        return new QObject;
    }
};

#include "startupprobe.moc"
