// The start as an operator sees it: the library is loaded, its page and its tab are constructed, and the tab
// is painted once in the host's window. The first reload runs in its own thread meanwhile. This is a separate
// program, because a process loads a library for the first time only once.
//   garage-startup HOME     prints elapsed milliseconds; HOME's documents folder contains the database

#include "trivexplugininterface.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QJsonObject>
#include <QMainWindow>
#include <QPluginLoader>
#include <QTabWidget>

#include <cstdio>
#include <cstdlib>

namespace {

/// Remembers whether the watched widget was painted.
class PaintWatch final : public QObject
{
public:
    bool isPainted() const { return m_isPainted; }
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_isPainted = false;
};

QWidget *widgetIn(const QJsonObject &message, const char *key)
{
    return reinterpret_cast<QWidget *>(message.value(QLatin1String(key)).toVariant().toLongLong());
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2)
        qFatal("usage: garage-startup HOME");
    qputenv("HOME", argv[1]);
    qputenv("XDG_CONFIG_HOME", argv[1]);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    QMainWindow window;
    auto *tabs = new QTabWidget;
    window.setCentralWidget(tabs);
    window.resize(1920, 1080);
    window.show();
    QCoreApplication::processEvents();

    QElapsedTimer clock;
    clock.start();
    QPluginLoader loader(QStringLiteral(GARAGE_PLUGIN));
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    if (!plugin)
        qFatal("%s", qPrintable(loader.errorString()));
    PaintWatch watch;
    int pages = 0;
    QObject::connect(plugin, &TrivexPluginInterface::pluginSignal, &window,
                     [&](const QString &, const QString &event, const QJsonObject &message) {
                         if (event == QLatin1String("insert_tab")) {
                             QWidget *tab = widgetIn(message, "tabWidget");
                             tab->installEventFilter(&watch);
                             tabs->addTab(tab, QStringLiteral("Гараж"));
                         }
                         pages += event == QLatin1String("settings_dialog") ? 1 : 0;
                     });
    const QString host = QStringLiteral("bench");
    plugin->pluginSlot(host, QStringLiteral("load_complete"), {});
    plugin->pluginSlot(host, QStringLiteral("send_settings_dialogs"), {});
    plugin->pluginSlot(host, QStringLiteral("clicked"),
                       {{QStringLiteral("key"), QStringLiteral("show_garage")}});
    while (!watch.isPainted())
        QCoreApplication::processEvents();
    const double ms = double(clock.nsecsElapsed()) / 1e6;
    if (pages != 1)
        qFatal("The settings page is missing");
    std::printf("%.2f\n", ms);
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS); // the loader may be in the middle of a season's laps
}
