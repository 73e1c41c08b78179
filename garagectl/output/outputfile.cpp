#include "garagectl/output/outputfile.h"

#include "garagectl/database/filestate.h"
#include "garagectl/exitcode.h"
#include "garagectl/wording.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

[[noreturn]] void failOn(const QString &path, const QString &reason)
{
    throw Failure {ExitCode::NotWritten,
                   text("cannot write %1: %2", "файл %1 не записан: %2").arg(path, reason)};
}

/// A pipe or a device, which cannot be replaced.
void writeInto(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        failOn(path, file.errorString());
}

void replaceFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        failOn(path, file.errorString());
}

bool isDatabase(const QString &path)
{
    const FileState::Kind kind = FileState(path).kind();
    return kind == FileState::RollbackJournal || kind == FileState::WriteAheadLog;
}

} // namespace

void OutputFile::write(const QString &path, const QByteArray &bytes)
{
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile() && !existing.isDir())
        return writeInto(path, bytes);
    if (isDatabase(path))
        failOn(path, text("it is a database", "это база данных"));
    replaceFile(path, bytes);
}
