// The start as an operator sees it: the library is loaded, its page and its tab are constructed, and the tab
// is painted once in the host's window. The first reload runs in its own thread meanwhile. This is a separate
// program, because a process loads a library for the first time only once.
//   garage-startup [LIBRARY HOME]     HOME's documents folder contains the database; without arguments the
//                                     window stays empty
// Prints JSON: when the tab, or the empty window, was painted (nanoseconds of the monotonic clock), how long
// loading and painting the module took (milliseconds), what the process and its GUI thread had read from the
// disk by then (bytes), how often it had waited for a page of a file, and which files it had mapped.

#include "trivexplugininterface.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QMainWindow>
#include <QPluginLoader>
#include <QSet>
#include <QTabWidget>

#include <sys/resource.h>

#include <chrono>
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

QList<QByteArray> linesOf(const char *path)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", path);
    return file.readAll().split('\n');
}

/// Bytes that a process or thread has read from the disk, by its file in /proc.
qint64 bytesRead(const char *path)
{
    const QByteArray name("read_bytes: ");
    for (const QByteArray &line : linesOf(path)) {
        if (line.startsWith(name))
            return line.mid(name.size()).toLongLong();
    }
    qFatal("%s does not count the bytes", path);
}

QJsonArray mappedFiles()
{
    QSet<QString> files;
    for (const QByteArray &line : linesOf("/proc/self/maps")) {
        const auto path = line.indexOf('/');
        if (path >= 0)
            files.insert(QFile::decodeName(line.mid(path)));
    }
    QJsonArray result;
    for (const QString &file : files)
        result.append(file);
    return result;
}

/// What the process has used so far.
QJsonObject usage()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    rusage used {};
    getrusage(RUSAGE_SELF, &used);
    return {{QStringLiteral("painted_ns"), qint64(std::chrono::nanoseconds(now).count())},
            {QStringLiteral("read_bytes"), bytesRead("/proc/self/io")},
            {QStringLiteral("gui_read_bytes"), bytesRead("/proc/thread-self/io")},
            {QStringLiteral("major_faults"), qint64(used.ru_majflt)},
            {QStringLiteral("mapped"), mappedFiles()},
            {QStringLiteral("plugins"), QLibraryInfo::location(QLibraryInfo::PluginsPath)}};
}

/// Milliseconds from the request for the library to the paint of its tab.
double showModule(const QString &library, QMainWindow &window, QTabWidget &tabs)
{
    QElapsedTimer clock;
    clock.start();
    QPluginLoader loader(library);
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
                             tabs.addTab(tab, QStringLiteral("Гараж"));
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
    return ms;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 1 && argc != 3)
        qFatal("usage: garage-startup [LIBRARY HOME]");
    const bool hasModule = argc == 3;
    if (hasModule) {
        qputenv("HOME", argv[2]);
        qputenv("XDG_CONFIG_HOME", argv[2]);
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    QMainWindow window;
    auto *tabs = new QTabWidget;
    window.setCentralWidget(tabs);
    window.resize(1920, 1080);
    PaintWatch watch;
    tabs->installEventFilter(&watch);
    window.show();
    while (!watch.isPainted())
        QCoreApplication::processEvents();

    const double ms = hasModule ? showModule(QFile::decodeName(argv[1]), window, *tabs) : 0;
    QJsonObject start = usage();
    start.insert(QStringLiteral("module_ms"), ms);
    std::puts(QJsonDocument(start).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS); // the loader may be in the middle of a season's laps
}
