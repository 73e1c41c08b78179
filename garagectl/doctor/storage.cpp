#include "garagectl/doctor/storage.h"

#include "data/platform.h"
#include "garagectl/doctor/catalogue.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace {

constexpr qint64 mebibyte = 1 << 20;
constexpr qint64 fewestFreeBytes = 16 * mebibyte;
constexpr qint64 largeLogBytes = 64 * mebibyte;

QStringList foldersAbove(const QString &path)
{
    QStringList folders;
    QDir folder(QFileInfo(path).absolutePath());
    do {
        folders.append(folder.absolutePath());
    } while (folder.cdUp());
    return folders;
}

bool hasSynchronisedName(const QString &folder)
{
    // The start of the name: "OneDrive - Company", "Dropbox (Company)".
    static const QStringList names {QStringLiteral("Dropbox"),           QStringLiteral("OneDrive"),
                                    QStringLiteral("Google Drive"),      QStringLiteral("GoogleDrive"),
                                    QStringLiteral("Yandex.Disk"),       QString::fromUtf8("Яндекс.Диск"),
                                    QStringLiteral("YandexDisk"),        QStringLiteral("Nextcloud"),
                                    QStringLiteral("ownCloud"),          QStringLiteral("Cloud Mail.Ru"),
                                    QString::fromUtf8("Облако Mail.Ru"), QStringLiteral("iCloud"),
                                    QStringLiteral("MEGAsync"),          QStringLiteral("pCloud"),
                                    QStringLiteral("SynologyDrive"),     QStringLiteral("Seafile"),
                                    QStringLiteral("Syncthing"),         QStringLiteral("Resilio Sync")};
    const QString folderName = QFileInfo(folder).fileName();
    return std::any_of(names.cbegin(), names.cend(), [&folderName](const QString &name) {
        return folderName.startsWith(name, Qt::CaseInsensitive);
    });
}

bool hasSynchronisedMark(const QString &folder)
{
    // What such programs leave in the folder that they keep.
    static const QStringList marks {QStringLiteral(".stfolder"),         QStringLiteral(".dropbox"),
                                    QStringLiteral(".dropbox.cache"),    QStringLiteral(".nextcloudsync.log"),
                                    QStringLiteral(".owncloudsync.log"), QStringLiteral(".sync/ID")};
    return std::any_of(marks.cbegin(), marks.cend(), [&folder](const QString &mark) {
        return QFileInfo::exists(folder + QLatin1Char('/') + mark);
    });
}

QString synchronisedFolderOf(const QStringList &folders)
{
    // The mark in the home folder is that of the program, not of the folder that it keeps.
    const auto found = std::find_if(folders.cbegin(), folders.cend(), [](const QString &folder) {
        return hasSynchronisedName(folder) || (folder != QDir::homePath() && hasSynchronisedMark(folder));
    });
    return found == folders.cend() ? QString() : *found;
}

bool isOnNetwork(const QString &fileSystem)
{
    static const QStringList types {QStringLiteral("nfs"),
                                    QStringLiteral("nfs4"),
                                    QStringLiteral("cifs"),
                                    QStringLiteral("smb3"),
                                    QStringLiteral("smbfs"),
                                    QStringLiteral("afs"),
                                    QStringLiteral("ceph"),
                                    QStringLiteral("9p"),
                                    QStringLiteral("ncpfs"),
                                    QStringLiteral("lustre"),
                                    QStringLiteral("vboxsf"),
                                    QStringLiteral("davfs"),
                                    QStringLiteral("fuse.sshfs"),
                                    QStringLiteral("fuse.rclone"),
                                    QStringLiteral("fuse.davfs2"),
                                    QStringLiteral("fuse.glusterfs"),
                                    QStringLiteral("fuse.vmhgfs-fuse"),
                                    QStringLiteral("fuse.gvfsd-fuse"),
                                    QStringLiteral("fuse.s3fs")};
    return types.contains(fileSystem);
}

const char *idOf(const Storage &storage)
{
    switch (storage.kind) {
    case FileState::Missing:
        return storage.hasFolder ? "file-missing" : "folder-missing";
    case FileState::NotAFile:
        return "not-a-file";
    case FileState::NotReadable:
        return "file-unreadable";
    case FileState::Empty:
        return "file-empty";
    case FileState::NotADatabase:
        return "not-a-database";
    case FileState::RollbackJournal:
    case FileState::WriteAheadLog:
        break;
    }
    return nullptr;
}

QString megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / mebibyte, 'f', 1) + QLatin1String(" MiB");
}

Findings judgeFile(const Storage &storage)
{
    Findings findings;
    const auto add = [&findings](const char *id, const QStringList &examples) {
        findings.append(DoctorCatalogue::finding(id, 1, examples));
    };
    if (!storage.mayWriteFile)
        add("file-read-only", {});
    if (!storage.mayWriteFolder)
        add("folder-read-only", {storage.folders.value(0)});
    if (storage.kind == FileState::RollbackJournal)
        add("journal-mode", {});
    if (storage.kind == FileState::RollbackJournal && storage.logBytes > 0)
        add("stray-log", {megabytes(storage.logBytes)});
    if (storage.logBytes > largeLogBytes)
        add("log-large", {megabytes(storage.logBytes)});
    return findings;
}

Findings judgeFolder(const Storage &storage)
{
    Findings findings;
    const auto add = [&findings](const char *id, const QString &example) {
        findings.append(DoctorCatalogue::finding(id, 1, {example}));
    };
    if (storage.freeBytes < fewestFreeBytes)
        add("disk-full", megabytes(storage.freeBytes));
    else if (storage.freeBytes < storage.fileBytes)
        add("disk-space", megabytes(storage.freeBytes));
    if (isOnNetwork(storage.fileSystem))
        add("network-folder", storage.fileSystem);
    if (!storage.synchronisedFolder.isEmpty())
        add("synchronised-folder", storage.synchronisedFolder);
    return findings;
}

} // namespace

Storage StorageCheck::look(const QString &databasePath)
{
    const QFileInfo file(databasePath);
    const QStorageInfo disk(file.absolutePath());
    Storage storage;
    storage.kind = FileState(databasePath).kind();
    storage.hasFolder = QFileInfo(file.absolutePath()).isDir();
    storage.mayWriteFile = Platform::mayWriteFile(databasePath);
    storage.mayWriteFolder = Platform::mayWriteFile(file.absolutePath());
    storage.folders = foldersAbove(databasePath);
    storage.synchronisedFolder = synchronisedFolderOf(storage.folders);
    storage.fileSystem = QString::fromLatin1(disk.fileSystemType());
    storage.fileBytes = file.size();
    storage.logBytes = QFileInfo(databasePath + QLatin1String("-wal")).size();
    storage.freeBytes = disk.bytesAvailable();
    return storage;
}

bool StorageCheck::isDatabase(FileState::Kind kind)
{
    return kind == FileState::RollbackJournal || kind == FileState::WriteAheadLog;
}

Findings StorageCheck::judge(const Storage &storage)
{
    if (const char *id = idOf(storage)) {
        Findings findings {DoctorCatalogue::finding(id, 1, {storage.folders.value(0)})};
        return storage.hasFolder ? findings + judgeFolder(storage) : findings;
    }
    return judgeFile(storage) + judgeFolder(storage);
}
