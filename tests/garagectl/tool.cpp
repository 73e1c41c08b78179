#include "tool.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

namespace {

Tool::Result resultOf(QProcess &process, const QByteArray &input = {})
{
    constexpr int patienceMs = 120000;
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patienceMs))
        return {-1, {}, process.errorString()};
    const bool hasCrashed = process.exitStatus() != QProcess::NormalExit;
    return {hasCrashed ? -1 : process.exitCode(), process.readAllStandardOutput(),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

QJsonObject Tool::Result::json() const
{
    return QJsonDocument::fromJson(output).object();
}

Tool::Result Tool::run(const QStringList &arguments, const QMap<QString, QString> &environment,
                       const QString &outputFile)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (auto it = environment.cbegin(); it != environment.cend(); ++it)
        variables.insert(it.key(), it.value());
    QProcess process;
    process.setProcessEnvironment(variables);
    if (!outputFile.isEmpty())
        process.setStandardOutputFile(outputFile, QIODevice::Append);
    process.start(GARAGECTL, arguments);
    return resultOf(process);
}

QStringList Tool::folderState(const QString &path)
{
    QStringList state;
    for (const QFileInfo &info :
         QFileInfo(path).dir().entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return {"cannot read " + info.filePath()};
        const QByteArray hash = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex();
        state.append(info.fileName() + ' ' + hash + ' ' + info.lastModified().toString(Qt::ISODateWithMs));
    }
    return state;
}

QString Tool::schemaFaults(const QString &name, const QByteArray &output)
{
    QProcess process;
    process.start(PYTHON, {CHECK_OUTPUT, name, "-"});
    const Result result = resultOf(process, output);
    return result.exitCode == 0 ? QString() : QString::fromUtf8(result.output) + result.errors;
}
