// Hosts that end in the middle of work. The first argument names the way they end. Each message that reaches
// the host is a line of the output; one that reaches it after its destructor has run ends it with code 3.

#include "trivexplugininterface.h"

#include <QApplication>
#include <QEventLoop>
#include <QMainWindow>
#include <QPluginLoader>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

namespace {

constexpr int messageAfterTheEnd = 3;
bool hostIsWhole = true;

void printLine(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

TrivexPluginInterface *loadPlugin()
{
    // The end of the loader object does not unload the library.
    QPluginLoader loader(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    if (!plugin)
        qFatal("%s", qPrintable(loader.errorString()));
    return plugin;
}

void handOverWork(TrivexPluginInterface *plugin)
{
    plugin->pluginSlot(QString(), "clicked", {{"key", "show_garage"}});
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
    plugin->pluginSlot(QString(), "remote_service_data", {{"data", "[{\"id\":40,\"carId\":1,\"opId\":2}]"}});
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
}

/// Answered with "settings_dialog" if the call is run.
void queueCall(TrivexPluginInterface *plugin)
{
    QMetaObject::invokeMethod(plugin, "pluginSlot", Qt::QueuedConnection, Q_ARG(QString, QString()),
                              Q_ARG(QString, "send_settings_dialogs"), Q_ARG(QJsonObject, QJsonObject()));
}

class HostWindow final : public QMainWindow
{
public:
    explicit HostWindow(TrivexPluginInterface *plugin)
    {
        connect(plugin, &TrivexPluginInterface::pluginSignal, this, &HostWindow::handleMessage);
    }
    ~HostWindow() override { hostIsWhole = false; }

    std::function<void(const QString &event)> reaction;

private:
    void handleMessage(const QString &module, const QString &event)
    {
        if (!hostIsWhole)
            std::_Exit(messageAfterTheEnd);
        m_lastModule = module + QString::number(m_messages++);
        printLine(event);
        if (reaction)
            reaction(event);
    }

    QString m_lastModule;
    int m_messages = 0;
};

int returnFromMain(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPluginLoader loader(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    QObject::connect(plugin, &TrivexPluginInterface::pluginSignal,
                     [](const QString &, const QString &event) { printLine(event); });
    handOverWork(plugin);
    queueCall(plugin);
    printLine("end of main");
    return 0;
}

int exitFromSlot(int argc, char **argv)
{
    QApplication application(argc, argv);
    TrivexPluginInterface *plugin = loadPlugin();
    QTimer::singleShot(0, plugin, [plugin] {
        handOverWork(plugin);
        std::exit(0); // NOLINT(concurrency-mt-unsafe)
    });
    return QApplication::exec();
}

int exitFromMessage(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPluginLoader loader(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    HostWindow window(plugin);
    window.reaction = [plugin](const QString &event) {
        if (event == "update_pending_service") {
            handOverWork(plugin);
            std::exit(0); // NOLINT(concurrency-mt-unsafe)
        }
    };
    window.show();
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
    return QApplication::exec();
}

int neverDeleteApplication(int argc, char **argv)
{
    static const auto *application = new QApplication(argc, argv);
    Q_UNUSED(application)
    TrivexPluginInterface *plugin = loadPlugin();
    static const auto *window = new HostWindow(plugin);
    Q_UNUSED(window)
    handOverWork(plugin);
    return 0;
}

int deleteWithParent(int argc, char **argv)
{
    QApplication application(argc, argv);
    TrivexPluginInterface *plugin = loadPlugin();
    HostWindow window(plugin);
    plugin->setParent(&window);
    QEventLoop loop;
    window.reaction = [&](const QString &event) {
        if (event == "update_pending_service")
            loop.quit();
    };
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
    loop.exec();
    handOverWork(plugin);
    queueCall(plugin);
    return 0;
}

void handOverWorkAndQuit(TrivexPluginInterface *plugin)
{
    QTimer::singleShot(0, plugin, [plugin] {
        handOverWork(plugin);
        QApplication::quit();
    });
    QApplication::exec();
    printLine("end of the event loop");
}

/// Quits its event loop after it handed over work, and unloads the library later on.
int quit(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPluginLoader loader(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    HostWindow window(plugin);
    handOverWorkAndQuit(plugin);
    return loader.unload() ? 0 : 1;
}

/// Runs its event loop a second time.
int runAgain(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPluginLoader loader(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    HostWindow window(plugin);
    handOverWorkAndQuit(plugin);
    window.reaction = [](const QString &event) {
        if (event == "update_pending_service")
            QApplication::quit();
    };
    // The reload after the work may have been announced before the loop ended.
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
    QApplication::exec();
    return loader.unload() ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    static const std::map<std::string, int (*)(int, char **)> ways {
        {"return", returnFromMain},
        {"exit-from-slot", exitFromSlot},
        {"exit-from-message", exitFromMessage},
        {"leak-application", neverDeleteApplication},
        {"parent", deleteWithParent},
        {"quit", quit},
        {"run-again", runAgain},
    };
    const auto way = argc > 1 ? ways.find(argv[1]) : ways.end();
    return way != ways.end() ? way->second(argc, argv) : 2;
}
