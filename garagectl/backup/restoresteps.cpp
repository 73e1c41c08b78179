#include "garagectl/backup/restoresteps.h"

#include "garagectl/database/filestate.h"
#include "garagectl/wording.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

namespace {

/// A word for a POSIX shell.
QString shellWord(const QString &content)
{
    QString quoted = content;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

} // namespace

QStringList restoreSteps(const QString &backupPath, const QString &databasePath)
{
    const QFileInfo database(databasePath);
    const QString path = database.absoluteFilePath();
    const QString aside = database.absolutePath()
        + QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("'/replaced-'yyyyMMdd-hhmmss"));
    QStringList steps {
        text("Close the host on every computer that uses %1.",
             "Закройте программу хронометража на всех компьютерах, где открыта %1.")
            .arg(path),
        text("Put the present file aside, with its log and journal:",
             "Отложите нынешний файл вместе с его журналами:")
            + QStringLiteral("\nmkdir %1\nmv %2* %1/").arg(shellWord(aside), shellWord(path)),
        text("Copy the backup to its place:", "Скопируйте копию на его место:")
            + QStringLiteral("\ncp %1 %2")
                  .arg(shellWord(QFileInfo(backupPath).absoluteFilePath()), shellWord(path)),
    };
    if (FileState(path).kind() == FileState::WriteAheadLog)
        steps.append(text("Give it the journal mode of the present file:", "Верните ему режим журнала:")
                     + QStringLiteral("\nsqlite3 %1 'PRAGMA journal_mode=WAL'").arg(shellWord(path)));
    steps.append(text("Check it:", "Проверьте его:")
                 + QStringLiteral("\ngaragectl doctor --database %1").arg(shellWord(path)));
    steps.append(text("Start the host. When all is well, delete the folder %1.",
                      "Запустите программу хронометража. Когда всё в порядке, удалите папку %1.")
                     .arg(aside));
    return steps;
}
