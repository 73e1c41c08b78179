#include "host/database/hostdatabase.h"

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <memory>

/// The linker drops a static library's resources unless they are referenced by name.
static void initResources()
{
    Q_INIT_RESOURCE(database);
}

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(HostDatabase)
};

bool hasSharedTables(HostConnection &connection)
{
    return connection.value(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='cars'")).toInt()
        > 0;
}

Result makeTables(HostConnection &connection)
{
    const bool isOld = hasSharedTables(connection);
    if (!connection.errorText().isEmpty())
        return Result::error(connection.errorText());
    return HostTransaction::run(connection, [&] {
        return (isOld || connection.execScript(QStringLiteral(":/host/schema.sql")))
            && connection.execScript(QStringLiteral(":/host/hosttables.sql"));
    });
}

} // namespace

Result HostDatabase::prepare(const DataFolder &folder)
{
    const bool isForeign = folder.isUserDocuments() && QFile::exists(folder.databasePath())
        && hasSharedTables(*std::make_unique<HostConnection>(folder.databasePath()));
    Result result = createTables(folder);
    // Without it the host's commits and the module's reloads wait for each other. The file remembers it. A
    // failure (another program has the file open, a network disk) leaves a file that works too.
    if (result && !isForeign)
        HostConnection(folder.databasePath()).value(QStringLiteral("PRAGMA journal_mode=WAL"));
    return result;
}

Result HostDatabase::createTables(const DataFolder &folder)
{
    initResources();
    if (!QDir().mkpath(folder.databaseFolder()))
        return Result::error(Text::tr("cannot create the folder %1").arg(folder.databaseFolder()));
    HostConnection connection(folder.databasePath());
    const Result result =
        connection.isOpen() ? makeTables(connection) : Result::error(connection.errorText());
    return result ? result
                  : Result::error(Text::tr("file %1: %2").arg(folder.databasePath(), result.errorText()));
}

bool HostDatabase::isBlank(const DataFolder &folder)
{
    HostConnection connection(folder.databasePath());
    const QVariant isUsed = connection.value(QStringLiteral(
        "SELECT EXISTS (SELECT 1 FROM cars) OR EXISTS (SELECT 1 FROM personal) OR EXISTS (SELECT 1 FROM "
        "service_operations) OR EXISTS (SELECT 1 FROM maintainance) OR EXISTS (SELECT 1 FROM laps)"));
    return isUsed.isValid() && !isUsed.toBool();
}
