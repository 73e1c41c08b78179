#include "host/app/demohost.h"
#include "host/commandline.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sample/samplejob.h"
#include "host/sessions/duesession.h"
#include "host/sessions/playsession.h"
#include "host/sessions/servesession.h"
#include "host/sessions/stdiosession.h"
#include "host/sessions/toursession.h"
#include "host/sessions/windowsession.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"
#include "host/terminal/messagehandler.h"
#include "host/terminal/translation.h"
#include "host/validation/checkprocess.h"

#include <QApplication>
#include <QEventLoop>
#include <QFont>
#include <QPalette>
#include <QProgressDialog>

#include <memory>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(main)
};

void chooseDisplay()
{
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

bool isHeadless()
{
    return QGuiApplication::platformName() == QLatin1String("offscreen");
}

/// For screenshots. The offscreen platform's default font is larger than a desktop's and would cut off cells;
/// a blinking cursor would make them differ.
void prepareForScreenshots()
{
    QFont font = QApplication::font();
    font.setPointSize(10);
    QApplication::setFont(font);
    QApplication::setCursorFlashTime(0);
}

/// As the dark palettes of desktops.
void useDarkPalette()
{
    const QColor window(66, 66, 66); // its darker shade outlines check boxes on Base
    const QColor disabled(127, 127, 127);
    QPalette palette(QColor(80, 80, 80), window);
    palette.setColor(QPalette::Base, QColor(24, 24, 24));
    palette.setColor(QPalette::AlternateBase, QColor(32, 32, 32));
    palette.setColor(QPalette::Highlight, QColor(42, 110, 170));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(110, 170, 230));
    palette.setColor(QPalette::ToolTipBase, QColor(70, 66, 45));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, Qt::white);
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    palette.setColor(QPalette::PlaceholderText, disabled);
    QApplication::setStyle(QStringLiteral("Fusion")); // other styles may ignore a palette
    QApplication::setPalette(palette);
}

void printProgress(int percent)
{
    if (percent % 10 == 0 && percent < 100)
        Console::writeError(Text::tr("generating sample data: %1 %").arg(percent));
}

SampleOutcome runSampleJob(SampleJob &job, bool takesLong)
{
    QEventLoop loop;
    SampleOutcome outcome = SampleOutcome::Failed;
    std::unique_ptr<QProgressDialog> dialog;
    if (takesLong && isHeadless()) {
        QObject::connect(&job, &SampleJob::progress, &loop, &printProgress);
    } else if (takesLong) {
        dialog = std::make_unique<QProgressDialog>(Text::tr("Generating sample data…"), Text::tr("Cancel"), 0,
                                                   100);
        QObject::connect(&job, &SampleJob::progress, dialog.get(), &QProgressDialog::setValue);
        QObject::connect(dialog.get(), &QProgressDialog::canceled, &job, &SampleJob::cancel);
    }
    QObject::connect(&job, &SampleJob::finished, &loop, [&](SampleOutcome result) {
        outcome = result;
        loop.quit();
    });
    job.start();
    loop.exec();
    return outcome;
}

QString keptDataText(const HostOptions &options, const DataFolder &folder)
{
    return options.documents
        ? Text::tr("--data was not applied: no sample data are written to the user's documents")
        : Text::tr("--data was not applied: file %1 has data already; --fresh starts over")
              .arg(folder.databasePath());
}

int fillDatabase(const HostOptions &options, const DataFolder &folder)
{
    if (options.fresh)
        folder.removeDatabases();
    if (const Result result = HostDatabase::prepare(folder); !result) {
        Console::writeError(Text::tr("the database is not ready: %1").arg(result.errorText()));
        return ExitCode::NoDatabase;
    }
    if (options.documents || !HostDatabase::isBlank(folder)) {
        if (options.isDataChosen)
            Console::writeError(keptDataText(options, folder));
        return ExitCode::Ok;
    }
    SampleJob job(folder.databasePath(), options.data, options.seed);
    const SampleOutcome outcome = runSampleJob(job, options.data == SampleKind::Season);
    if (outcome == SampleOutcome::Done)
        return ExitCode::Ok;
    if (outcome == SampleOutcome::Cancelled) {
        Console::writeError(Text::tr("the generation of sample data was cancelled"));
        return ExitCode::Cancelled;
    }
    Console::writeError(Text::tr("sample data not written: %1").arg(job.errorText()));
    return ExitCode::NoDatabase;
}

Result loadPlugin(const HostOptions &options, PluginHost &plugin)
{
    const QString library = options.pluginFile.isEmpty() ? PluginHost::defaultLibrary() : options.pluginFile;
    return library.isEmpty() ? Result::error(Text::tr("libruvalogarage.so was not found beside the program"))
                             : plugin.load(library);
}

std::unique_ptr<HostSession> makeSession(const HostOptions &options, const DataFolder &folder, DemoHost &host)
{
    const QString screenshots =
        options.screenshotsFolder.isEmpty() ? folder.screenshotsPath() : options.screenshotsFolder;
    if (options.stdio)
        return std::make_unique<StdioSession>(host);
    if (options.due)
        return std::make_unique<DueSession>(host);
    if (!options.playFile.isEmpty())
        return std::make_unique<PlaySession>(host, folder, options.playFile, screenshots);
    if (isHeadless() && options.serve)
        return std::make_unique<ServeSession>(host);
    if (isHeadless() || !options.screenshotsFolder.isEmpty())
        return std::make_unique<TourSession>(host, folder, screenshots, options.windowSize);
    return std::make_unique<WindowSession>(host, folder);
}

/// Prints the address where standard output is not for messages.
Result serve(const HostOptions &options, DemoHost &host)
{
    if (Result result = host.remote().prepare(); !result)
        return result;
    if (Result result = host.web().start(*options.serve); !result)
        return result;
    const QString text = Text::tr("Page for phones: %1").arg(host.web().url());
    if (options.stdio)
        Console::writeError(text);
    else
        Console::writeLine(text);
    return Result::success();
}

int run(const HostOptions &options, const DataFolder &folder)
{
    DemoHost host(folder, options.seed);
    if (const Result result = loadPlugin(options, host.plugin()); !result) {
        Console::writeError(Text::tr("plug-in not loaded: %1").arg(result.errorText()));
        return ExitCode::NoPlugin;
    }
    if (options.serve) {
        if (const Result result = serve(options, host); !result) {
            Console::writeError(result.errorText());
            return ExitCode::NoServer;
        }
    }
    const std::unique_ptr<HostSession> session = makeSession(options, folder, host);
    QObject::connect(session.get(), &HostSession::finished, qApp, &QApplication::exit, Qt::QueuedConnection);
    session->start();
    return QApplication::exec();
}

int runCheck(const HostOptions &options, const DataFolder &folder)
{
    const std::optional<Check> check = findCheck(options.validation.checkNames.first());
    return CheckProcess::runHere(*check, options.validation.library, folder);
}

/// Uses a temporary application object: the environment must be set before the real one exists.
CommandLine parseArguments(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    Translation::install(Translation::language(arguments));
    CommandLine commandLine(arguments);
    if (!commandLine.errorText().isEmpty())
        Console::writeError(commandLine.errorText());
    else if (commandLine.wantsHelp())
        Console::writeLine(commandLine.helpText());
    return commandLine;
}

int validate(int &argc, char **argv, const Validation::Request &request)
{
    const QCoreApplication application(argc, argv);
    Translation::install(request.language);
    return Validation::run(request);
}

} // namespace

int main(int argc, char **argv)
{
    const CommandLine commandLine = parseArguments(argc, argv);
    if (!commandLine.errorText().isEmpty())
        return ExitCode::BadUsage;
    if (commandLine.wantsHelp())
        return ExitCode::Ok;
    const HostOptions &options = commandLine.options();
    if (!options.validation.library.isEmpty() && !options.checksHere)
        return validate(argc, argv, options.validation);
    const DataFolder folder =
        options.documents ? DataFolder::userDocuments() : DataFolder::own(options.homeFolder);
    MessageHandler::install(folder.logPath(), options.verbose);
    folder.applyToEnvironment();
    chooseDisplay();
    int programNameOnly = 1; // Qt has a --plugin option of its own
    const QApplication application(programNameOnly, argv);
    Translation::install(options.language);
    QApplication::setQuitOnLastWindowClosed(false);
    if (isHeadless())
        prepareForScreenshots();
    if (options.darkPalette)
        useDarkPalette();
    if (options.checksHere)
        return runCheck(options, folder);
    if (const int failure = fillDatabase(options, folder))
        return failure;
    return run(options, folder);
}
