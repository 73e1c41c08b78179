#include "garagectl/commands/backupcommand.h"

#include "garagectl/backup/backupfolder.h"
#include "garagectl/backup/checkedcopy.h"
#include "garagectl/backup/restoresteps.h"
#include "garagectl/backup/unfinishedfile.h"
#include "garagectl/output/progress.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/wording.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <CLI/CLI.hpp>

namespace {

/// What the command reports, of a backup that was made or checked.
struct Backup
{
    QString path;
    CheckedCopy::Proof proof;
    QStringList removed; ///< names of older backups
    QStringList restoreSteps;
};

QJsonObject jsonOf(const Backup &backup)
{
    QJsonObject rows;
    for (const FileProof::TableRows &table : backup.proof.tables)
        rows.insert(table.table, table.rows);
    return {{QStringLiteral("file"), backup.path},
            {QStringLiteral("bytes"), backup.proof.bytes},
            {QStringLiteral("rows"), rows},
            {QStringLiteral("removed"), QJsonArray::fromStringList(backup.removed)},
            {QStringLiteral("restoreSteps"), QJsonArray::fromStringList(backup.restoreSteps)}};
}

QString sizeText(qint64 bytes)
{
    constexpr double bytesPerMegabyte = 1e6;
    return text("%1 MB", "%1 МБ").arg(double(bytes) / bytesPerMegabyte, 0, 'f', 1);
}

QString sentencesOf(const Backup &backup)
{
    QStringList rows;
    for (const FileProof::TableRows &table : backup.proof.tables)
        rows.append(
            QStringLiteral("%1 %2").arg(TextWidth::printable(table.table), QString::number(table.rows)));
    QStringList lines {TextWidth::printable(backup.path),
                       text("Whole: %1, rows: %2.", "Цела: %1, строк: %2.")
                           .arg(sizeText(backup.proof.bytes), rows.join(QLatin1String(", ")))};
    if (!backup.removed.isEmpty())
        lines.append(text("Removed: %1.", "Удалены: %1.").arg(backup.removed.join(QLatin1String(", "))));
    if (!backup.restoreSteps.isEmpty())
        lines.append(QLatin1Char('\n') + text("To restore it:", "Чтобы восстановить базу из неё:"));
    int number = 0;
    for (QString step : backup.restoreSteps) {
        step.replace(QLatin1Char('\n'), QLatin1String("\n     "));
        lines.append(QStringLiteral("%1. %2").arg(QString::number(++number), step));
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void report(const RowOptions &options, const Backup &backup)
{
    writeBytes(options,
               options.format == "json" ? QJsonDocument(jsonOf(backup)).toJson()
                                        : sentencesOf(backup).toUtf8());
}

/// This program never writes beside the database.
void refuseFolderOf(const QString &databasePath, const QString &folder)
{
    if (QFileInfo(databasePath).canonicalPath() == QFileInfo(folder).canonicalFilePath())
        throw Failure {ExitCode::BadUsage,
                       text("%1 is the folder of the database; choose another one",
                            "%1 — папка самой базы; укажите другую")
                           .arg(folder)};
}

} // namespace

CLI::App *BackupCommand::addTo(CLI::App &program)
{
    CLI::App *command =
        program.add_subcommand("backup",
                               utf8Text("Makes a checked copy of the database, or checks an old one",
                                        "Проверенная копия базы или проверка старой копии"));
    CLI::Option *folder =
        command
            ->add_option("folder", m_folder,
                         utf8Text("Write the copy into this folder, as ruvalo-YYYYMMDD-HHMMSS.sqlite",
                                  "Записать копию в эту папку: ruvalo-ГГГГММДД-ЧЧММСС.sqlite"))
            ->option_text(utf8Text("FOLDER", "ПАПКА"));
    CLI::Option *check = command
                             ->add_option("--check", m_fileToCheck,
                                          utf8Text("Check this copy, and print how to restore it",
                                                   "Проверить эту копию и показать, как её восстановить"))
                             ->option_text(utf8Text("FILE", "ФАЙЛ"));
    command
        ->add_option("--keep", m_keep,
                     utf8Text("Then keep this number of copies in the folder, the newest ones",
                              "Оставить в папке столько копий, самых новых"))
        ->option_text(utf8Text("NUMBER", "ЧИСЛО"))
        ->check(CLI::Range(1, 100000))
        ->excludes(check);
    folder->excludes(check);
    m_rowOptions.addTo(*command, {"text", "json"});
    return command;
}

ExitCode BackupCommand::run(const QString &databasePath)
{
    if (m_folder.empty() && m_fileToCheck.empty())
        throw Failure {ExitCode::BadUsage,
                       text("name a folder for the copy, or a file with --check",
                            "укажите папку для копии или файл после --check")};
    return m_fileToCheck.empty() ? makeCopy(databasePath) : checkCopy(databasePath);
}

ExitCode BackupCommand::makeCopy(const QString &databasePath)
{
    const QString folderPath = QString::fromStdString(m_folder);
    refuseFolderOf(databasePath, folderPath);
    const BackupFolder folder(folderPath);
    folder.removeLeftovers();

    const QString name = folder.freeName(QDateTime::currentDateTime());
    Backup backup;
    backup.path = folder.filePath(name);
    {
        UnfinishedFile file(
            folder.filePath(QStringLiteral(".%1.%2.part").arg(name).arg(QCoreApplication::applicationPid())));
        Progress progress(text("checking the database", "проверяется база"));
        backup.proof = CheckedCopy::write(databasePath, file.path(), progress);
        if (!file.finish(backup.path, databasePath))
            throw Failure {ExitCode::NotWritten,
                           text("cannot write %1", "файл %1 не записан").arg(backup.path)};
    }
    if (m_keep > 0)
        backup.removed = folder.thin(m_keep, name);
    report(m_rowOptions, backup);
    return ExitCode::Ok;
}

ExitCode BackupCommand::checkCopy(const QString &databasePath)
{
    const QString path = QString::fromStdString(m_fileToCheck);
    Backup backup;
    backup.path = QFileInfo(path).absoluteFilePath();
    {
        const Progress progress(text("checking the copy", "проверяется копия"));
        backup.proof = CheckedCopy::prove(path);
    }
    backup.restoreSteps = restoreSteps(path, databasePath);
    report(m_rowOptions, backup);
    return ExitCode::Ok;
}
