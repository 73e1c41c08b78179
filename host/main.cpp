#include "commandline.h"
#include "console.h"
#include "dueprinter.h"
#include "exitcode.h"
#include "fleetdesk.h"
#include "hostconnection.h"
#include "hostdatabase.h"
#include "hosthome.h"
#include "pluginhost.h"
#include "stdiosession.h"

#include <QApplication>
#include <QFile>

#include <memory>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("main", text);
}

void chooseDisplay()
{
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

int fillDatabase(const HostOptions &options, const HostHome &home)
{
    if (options.fresh) {
        QFile::remove(home.databasePath());
        QFile::remove(home.remoteRecordsPath());
    }
    const QString error = HostDatabase::prepare(home);
    if (!error.isEmpty()) {
        Console::complain(tr("база данных не готова: %1").arg(error));
        return ExitCode::NoDatabase;
    }
    HostConnection connection(home.databasePath());
    if (options.documents || !HostDatabase::isBlank(connection))
        return ExitCode::Ok;
    const auto progress = [](int) { return true; };
    if (makeSampleData(connection, options.data, options.seed, QDateTime::currentDateTimeUtc(), progress)
        == SampleOutcome::Made)
        return ExitCode::Ok;
    Console::complain(tr("примеры данных не записаны: %1").arg(connection.errorText()));
    return ExitCode::NoDatabase;
}

int loadPlugin(const HostOptions &options, PluginHost &plugin)
{
    const QString library = options.pluginFile.isEmpty() ? PluginHost::defaultLibrary() : options.pluginFile;
    const QString error =
        library.isEmpty() ? tr("libruvalogarage.so рядом с программой не найдена") : plugin.load(library);
    if (error.isEmpty())
        return ExitCode::Ok;
    Console::complain(tr("плагин не загружен: %1").arg(error));
    return ExitCode::NoPlugin;
}

int run(QApplication &application, const HostOptions &options, const HostHome &home)
{
    PluginHost plugin;
    HostConnection connection(home.databasePath());
    if (const int failure = loadPlugin(options, plugin))
        return failure;

    FleetDesk desk(connection, plugin);
    std::unique_ptr<QObject> session;
    if (options.stdio) {
        auto stdioSession = std::make_unique<StdioSession>(plugin);
        QObject::connect(stdioSession.get(), &StdioSession::finished, &application, &QApplication::exit);
        session = std::move(stdioSession);
    } else {
        auto printer = std::make_unique<DuePrinter>(connection, plugin);
        QObject::connect(printer.get(), &DuePrinter::finished, &application, &QApplication::exit);
        session = std::move(printer);
    }
    desk.playStart();
    return application.exec();
}

/// An application object of its own reads the arguments: the environment must be ready before the real one.
CommandLine readArguments(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return CommandLine(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char **argv)
{
    const CommandLine commandLine = readArguments(argc, argv);
    if (!commandLine.errorText().isEmpty()) {
        Console::complain(commandLine.errorText());
        return ExitCode::BadUsage;
    }
    if (commandLine.wantsHelp()) {
        Console::writeLine(commandLine.helpText());
        return ExitCode::Ok;
    }
    const HostOptions &options = commandLine.options();
    const HostHome home =
        options.documents ? HostHome::userDocuments() : HostHome::ownFolder(options.homeFolder);
    home.enter();
    chooseDisplay();
    int programNameOnly = 1; // Qt has a --plugin option of its own
    QApplication application(programNameOnly, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (const int failure = fillDatabase(options, home))
        return failure;
    return run(application, options, home);
}
