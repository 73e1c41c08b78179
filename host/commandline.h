#pragma once

#include "host/sample/sampledata.h"
#include "host/validation/validation.h"

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// What the program was asked to do.
struct HostOptions
{
    bool stdio = false;
    bool due = false;
    bool documents = false;
    bool fresh = false;
    QString playFile;
    QString screenshotsFolder;
    QString pluginFile;
    QString homeFolder;
    Validation::Request validation; // asked for if it names a library
    bool checksHere = false; // as the process of one check
    quint32 seed = 1;
    SampleKind data = SampleKind::Sample;
};

/// The command line, read; needs an application object for the program's name.
class CommandLine final
{
public:
    explicit CommandLine(const QStringList &arguments);

    const HostOptions &options() const { return m_options; }
    /// Why the arguments make no sense, or empty.
    QString errorText() const { return m_errorText; }
    bool wantsHelp() const { return m_wantsHelp; }
    QString helpText() const { return m_helpText; }

private:
    void read(const QCommandLineParser &parser);
    void readValidation(const QCommandLineParser &parser);
    void checkCombination();

    HostOptions m_options;
    QString m_errorText;
    QString m_helpText;
    bool m_wantsHelp = false;
};
