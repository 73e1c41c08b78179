#pragma once

#include <QString>

#include <optional>
#include <utility>

/// What the module asks of the operating system and Qt does not offer in the needed form. The one place with
/// code for some systems only; elsewhere it falls back to Qt alone. May be called from any thread.
namespace Platform {

/// Two files with different identities are different files. The same file keeps its identity while it is
/// written to.
using FileIdentity = std::pair<quint64, quint64>;

/// Of the file that a path leads to; none if there is no file. Where the system has no inodes, a file that
/// replaces another one is told apart by its time of creation, if the file system records it.
[[nodiscard]] std::optional<FileIdentity> identityOfFile(const QString &path);

/// True if the process may write the file or folder now, with the rights it acts with. Without POSIX, what Qt
/// says: access control lists of Windows are ignored.
[[nodiscard]] bool mayWriteFile(const QString &path);

} // namespace Platform
