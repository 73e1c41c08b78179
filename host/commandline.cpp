#include "host/commandline.h"

#include "host/terminal/translation.h"
#include "host/validation/check.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QRect>

namespace {

constexpr int longestTimeLimit = 3600; // seconds

const QCommandLineOption &helpOption()
{
    static const QCommandLineOption option({QStringLiteral("h"), QStringLiteral("help")},
                                           CommandLine::tr("Shows this help."));
    return option;
}

/// The validator starts this program with it for each check.
QCommandLineOption inThisProcessOption()
{
    QCommandLineOption option(QStringLiteral("in-this-process"));
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

QList<QCommandLineOption> allOptions()
{
    return {
        helpOption(),
        {QStringLiteral("stdio"),
         CommandLine::tr(
             "Without a window: sends each line of standard input, {\"module\":…,\"event\":…,\"data\":{…}}, "
             "to the plug-in and prints each of its events as such a line. Ends with the input.")},
        {QStringLiteral("due"),
         CommandLine::tr("Without a window: prints which services are due, and exits.")},
        {QStringLiteral("play"),
         CommandLine::tr("Plays the events of a file to the plug-in: JSON lines as for --stdio, and "
                         "{\"wait\":milliseconds}, {\"wait\":\"answer\"}, {\"screenshot\":\"name\"}. A saved "
                         "message log is such a file. Prints the events of the plug-in. Ends with the file."),
         CommandLine::tr("FILE")},
        {QStringLiteral("screenshots"),
         CommandLine::tr("Saves a screenshot of every page of the window to the folder, prints which "
                         "services are due, and exits. With --play: the folder of its screenshots. The "
                         "default without a display, with a folder in the program's data folder."),
         CommandLine::tr("FOLDER")},
        {QStringLiteral("window-size"),
         CommandLine::tr("With --screenshots: size of the window in pixels. The default is 1500x900."),
         CommandLine::tr("WIDTHxHEIGHT")},
        {QStringLiteral("dark"), CommandLine::tr("Shows all windows in a dark palette.")},
        {QStringLiteral("validate"),
         CommandLine::tr("Without a window: tests the plug-in from outside, as a timing application uses it. "
                         "Each check runs in its own process with its own temporary database. Prints a line "
                         "PASSED, FAILED or SKIPPED with the reason for each check, and the totals."),
         CommandLine::tr("FILE")},
        {QStringLiteral("json"), CommandLine::tr("With --validate: prints the report as one JSON object.")},
        {QStringLiteral("check"),
         CommandLine::tr("With --validate: runs only this check, named as in the report. Can be repeated."),
         CommandLine::tr("NAME")},
        {QStringLiteral("time-limit"),
         CommandLine::tr("With --validate: time limit of each check in seconds. The default is 30."),
         CommandLine::tr("SECONDS")},
        inThisProcessOption(),
        {QStringLiteral("serve"),
         CommandLine::tr("Serves the page of the remote side, on which mechanics see what is due and tick it "
                         "off, at this address. The default is 127.0.0.1:8080: this machine only. Without a "
                         "display, or with --stdio, there is no window. Ends with SIGINT or SIGTERM."),
         CommandLine::tr("ADDRESS:PORT")},
        {QStringLiteral("serve-certificate"),
         CommandLine::tr("With --serve: certificate, in PEM format; the page is encrypted."),
         CommandLine::tr("FILE")},
        {QStringLiteral("serve-key"), CommandLine::tr("With --serve-certificate: its key, in PEM format."),
         CommandLine::tr("FILE")},
        {QStringLiteral("serve-proxy"),
         CommandLine::tr("With --serve: address of a reverse proxy that names its clients in "
                         "X-Forwarded-For. Can be repeated."),
         CommandLine::tr("ADDRESS")},
        {QStringLiteral("serve-url"),
         CommandLine::tr("With --serve: address under which a reverse proxy shows the page, such as "
                         "https://garage.example."),
         CommandLine::tr("URL")},
        {QStringLiteral("plugin"),
         CommandLine::tr("Library of the plug-in. The default is libruvalogarage.so beside the program."),
         CommandLine::tr("FILE")},
        {QStringLiteral("home"),
         CommandLine::tr("Data folder of the program. The default is garage-host in the user's data folder."),
         CommandLine::tr("FOLDER")},
        {QStringLiteral("documents"),
         CommandLine::tr("Works with the user's real documents. Never writes sample data there.")},
        {QStringLiteral("data"),
         CommandLine::tr("Contents of a new database: empty (tables only), sample (24 karts, four weeks) or "
                         "season (60 karts, 3,000,000 laps, 20,000 records). The default is sample."),
         CommandLine::tr("KIND")},
        {QStringLiteral("seed"), CommandLine::tr("Seed of the sample data. The default is 1."),
         CommandLine::tr("NUMBER")},
        {QStringLiteral("fresh"),
         CommandLine::tr("Removes the database in the program's data folder first.")},
        {QStringLiteral("lang"),
         CommandLine::tr(
             "Language of the texts: ru or en. The default is ru if the system's language is Russian, "
             "else en. The garage window is always Russian."),
         CommandLine::tr("LANGUAGE")},
        {QStringLiteral("verbose"),
         CommandLine::tr(
             "Prints every message of Qt and the plug-in to standard error, not only warnings. The "
             "log file garage-host.log in the data folder always holds all of them.")},
    };
}

const QMap<QString, SampleKind> &sampleKinds()
{
    static const QMap<QString, SampleKind> kinds = {{QStringLiteral("empty"), SampleKind::Empty},
                                                    {QStringLiteral("sample"), SampleKind::Sample},
                                                    {QStringLiteral("season"), SampleKind::Season}};
    return kinds;
}

/// Qt's options have a value always or never; that of --serve may be missing.
QStringList withServeAddress(QStringList arguments)
{
    for (QString &argument : arguments) {
        const int next = int(&argument - &arguments.first()) + 1;
        const bool hasValue = next < arguments.size() && !arguments.at(next).startsWith(QLatin1Char('-'));
        if (argument == QLatin1String("--serve") && !hasValue)
            argument += QLatin1Char('=') + QString::fromStdString(WebAccess().endpoint.text());
    }
    return arguments;
}

QStringList checkNames()
{
    QStringList names;
    for (const Check &check : allChecks())
        names.append(check.name);
    return names;
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(tr(
        "Demo host of the garage module: loads the plug-in and exchanges messages with it as a timing "
        "application does.\n\nExit codes: 0 - success, 1 - invalid options, 2 - plug-in not loaded, 3 - no "
        "database, 4 - the plug-in did not answer, 5 - some input lines are not messages, 6 - cancelled, 7 - "
        "the plug-in failed a check, 8 - a screenshot was not saved, 9 - the page is not served."));
    parser.addOptions(allOptions());
    m_helpText = parser.helpText();
    if (!parser.parse(withServeAddress(arguments))) {
        m_errorText = parser.errorText();
        return;
    }
    if (!parser.positionalArguments().isEmpty()) {
        m_errorText = tr("unexpected argument: %1").arg(parser.positionalArguments().first());
        return;
    }
    m_wantsHelp = parser.isSet(helpOption());
    for (const QCommandLineOption &option : allOptions()) {
        if (!option.valueName().isEmpty() && parser.values(option).contains(QString()))
            m_errorText = tr("the value of --%1 is empty").arg(option.names().first());
    }
    if (!m_errorText.isEmpty())
        return;
    m_options.language = Translation::language(arguments);
    read(parser);
}

void CommandLine::read(const QCommandLineParser &parser)
{
    m_options.stdio = parser.isSet(QStringLiteral("stdio"));
    m_options.due = parser.isSet(QStringLiteral("due"));
    m_options.documents = parser.isSet(QStringLiteral("documents"));
    m_options.fresh = parser.isSet(QStringLiteral("fresh"));
    m_options.darkPalette = parser.isSet(QStringLiteral("dark"));
    m_options.verbose = parser.isSet(QStringLiteral("verbose"));
    m_options.playFile = parser.value(QStringLiteral("play"));
    m_options.screenshotsFolder = parser.value(QStringLiteral("screenshots"));
    m_options.pluginFile = parser.value(QStringLiteral("plugin"));
    m_options.homeFolder = parser.value(QStringLiteral("home"));

    const QString kind = parser.value(QStringLiteral("data"));
    if (!kind.isEmpty() && !sampleKinds().contains(kind))
        m_errorText = tr("unknown kind of data: %1 (known are empty, sample, season)").arg(kind);
    m_options.data = sampleKinds().value(kind, SampleKind::Sample);
    m_options.isDataChosen = parser.isSet(QStringLiteral("data"));

    bool isNumber = true;
    if (parser.isSet(QStringLiteral("seed")))
        m_options.seed = parser.value(QStringLiteral("seed")).toUInt(&isNumber);
    if (!isNumber)
        m_errorText = tr("--seed must be an integer from 0");
    const QStringList languages = Translation::languages();
    if (parser.isSet(QStringLiteral("lang")) && !languages.contains(parser.value(QStringLiteral("lang"))))
        m_errorText = tr("--lang must be one of: %1").arg(languages.join(QLatin1String(", ")));
    readWindowSize(parser.value(QStringLiteral("window-size")));
    readValidation(parser);
    readServe(parser);
    if (m_errorText.isEmpty())
        checkCombination();
}

void CommandLine::readWindowSize(const QString &text)
{
    if (text.isEmpty())
        return;
    constexpr int largest = 10000;
    const QStringList parts = text.split(QLatin1Char('x'));
    m_options.windowSize = QSize(parts.value(0).toInt(), parts.value(1).toInt());
    const QRect allowed(1, 1, largest, largest);
    if (parts.size() != 2 || !allowed.contains(m_options.windowSize.width(), m_options.windowSize.height()))
        m_errorText = tr("--window-size must be like 900x600");
    else if (m_options.screenshotsFolder.isEmpty())
        m_errorText = tr("--window-size needs --screenshots");
}

void CommandLine::readValidation(const QCommandLineParser &parser)
{
    Validation::Request &request = m_options.validation;
    request.library = parser.value(QStringLiteral("validate"));
    request.asJson = parser.isSet(QStringLiteral("json"));
    // Machine output is the same in every language.
    request.language = request.asJson ? QStringLiteral("en") : m_options.language;
    request.checkNames = parser.values(QStringLiteral("check"));
    m_options.checksHere = parser.isSet(inThisProcessOption());
    for (const QString &name : request.checkNames) {
        if (!findCheck(name))
            m_errorText =
                tr("unknown check: %1 (known are %2)").arg(name, checkNames().join(QLatin1String(", ")));
    }
    if (parser.isSet(QStringLiteral("time-limit")))
        request.timeLimit = parser.value(QStringLiteral("time-limit")).toInt();
    if (request.timeLimit < 1 || request.timeLimit > longestTimeLimit)
        m_errorText = tr("--time-limit must be an integer from 1 to %1").arg(longestTimeLimit);
    const bool hasDetails = request.asJson || !request.checkNames.isEmpty() || m_options.checksHere
        || parser.isSet(QStringLiteral("time-limit"));
    if (hasDetails && request.library.isEmpty())
        m_errorText = tr("--json, --check and --time-limit need --validate");
    if (m_options.checksHere && (request.checkNames.size() != 1 || m_options.homeFolder.isEmpty()))
        m_errorText = tr("a check in this process needs --check and --home");
}

void CommandLine::readServe(const QCommandLineParser &parser)
{
    const QString certificate = parser.value(QStringLiteral("serve-certificate"));
    const QString key = parser.value(QStringLiteral("serve-key"));
    const QStringList proxies = parser.values(QStringLiteral("serve-proxy"));
    const QString url = parser.value(QStringLiteral("serve-url"));
    if (!parser.isSet(QStringLiteral("serve"))) {
        if (!certificate.isEmpty() || !key.isEmpty() || !proxies.isEmpty() || !url.isEmpty())
            m_errorText = tr("the options that begin with --serve- need --serve");
        return;
    }
    WebAccess access;
    if (const auto endpoint = WebAddress::parse(parser.value(QStringLiteral("serve")).toStdString()))
        access.endpoint = *endpoint;
    else
        m_errorText = tr("--serve must be like 192.168.1.5:8080 or [fd00::1]:8080");
    access.certificateFile = QFile::encodeName(certificate).toStdString();
    access.keyFile = QFile::encodeName(key).toStdString();
    if (certificate.isEmpty() != key.isEmpty())
        m_errorText = tr("--serve-certificate and --serve-key need each other");
    for (const QString &proxy : proxies) {
        access.trustedProxies.push_back(proxy.toStdString());
        if (!WebAddress::isAddress(access.trustedProxies.back()))
            m_errorText = tr("--serve-proxy must be an address like 127.0.0.1");
    }
    access.publicUrl = url.toStdString();
    if (!url.isEmpty() && WebAddress::authority(access.publicUrl).empty())
        m_errorText = tr("--serve-url must be like https://garage.example");
    m_options.serve = access;
}

void CommandLine::checkCombination()
{
    if (m_options.documents && (m_options.fresh || !m_options.homeFolder.isEmpty()))
        m_errorText = tr("--documents excludes --home and --fresh");
    const int ways = int(m_options.stdio) + int(m_options.due) + int(!m_options.playFile.isEmpty())
        + int(!m_options.validation.library.isEmpty());
    if (ways > 1)
        m_errorText = tr("--stdio, --due, --play and --validate exclude each other");
    if ((m_options.stdio || m_options.due) && !m_options.screenshotsFolder.isEmpty())
        m_errorText = tr("--screenshots excludes --stdio and --due");
    const bool endsByItself = ways - int(m_options.stdio) > 0 || !m_options.screenshotsFolder.isEmpty();
    if (m_options.serve && endsByItself)
        m_errorText = tr("--serve excludes --due, --play, --validate and --screenshots");
}
