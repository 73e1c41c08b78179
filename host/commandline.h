#pragma once

#include "host/remote/web/webserver.h"
#include "host/sample/sampledata.h"
#include "host/validation/validation.h"

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

class QCommandLineParser;

/// The options of the command line.
struct HostOptions
{
    bool stdio = false;
    bool due = false;
    bool documents = false;
    bool fresh = false;
    bool verbose = false;
    QString playFile;
    QString screenshotsFolder;
    QSize windowSize; // of the screenshots; empty = the usual size
    bool darkPalette = false;
    QString pluginFile;
    QString homeFolder;
    Validation::Request validation; // requested if it names a library
    bool checksHere = false; // this process runs one check of a validation
    QString language; // "ru" or "en"
    quint32 seed = 1;
    SampleKind data = SampleKind::Sample;
    bool isDataChosen = false; // --data was given
    std::optional<WebAccess> serve; // the page of the remote side
};

/// Parses the command line. Needs an application object for the program's name.
class CommandLine final
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
public:
    explicit CommandLine(const QStringList &arguments);

    const HostOptions &options() const { return m_options; }
    /// Why the arguments are invalid, or empty.
    QString errorText() const { return m_errorText; }
    bool wantsHelp() const { return m_wantsHelp; }
    QString helpText() const { return m_helpText; }

private:
    void read(const QCommandLineParser &parser);
    void readWindowSize(const QString &text);
    void readValidation(const QCommandLineParser &parser);
    void readServe(const QCommandLineParser &parser);
    void checkCombination();

    HostOptions m_options;
    QString m_errorText;
    QString m_helpText;
    bool m_wantsHelp = false;
};
