#include "host/database/hostdatabase.h"

#include "host/database/hostconnection.h"

#include <QCoreApplication>
#include <QDir>

/// The linker drops a static library's resources unless they are asked for by name.
static void initResources()
{
    Q_INIT_RESOURCE(database);
}

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("HostDatabase", text);
}

QString makeTables(HostConnection &connection)
{
    const bool hasSharedTables =
        connection.value(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='cars'")).toInt() > 0;
    if (!connection.errorText().isEmpty())
        return connection.errorText();
    HostTransaction transaction(connection);
    if (!transaction.isActive())
        return connection.errorText();
    if (!hasSharedTables && !connection.execScript(QStringLiteral(":/host/schema.sql")))
        return connection.errorText();
    if (!connection.execScript(QStringLiteral(":/host/hosttables.sql")) || !transaction.commit())
        return connection.errorText();
    return {};
}

} // namespace

QString HostDatabase::prepare(const DataFolder &home)
{
    initResources();
    if (!QDir().mkpath(home.databaseFolder()))
        return tr("не удаётся создать папку %1").arg(home.databaseFolder());
    HostConnection connection(home.databasePath());
    const QString reason = connection.isOpen() ? makeTables(connection) : connection.errorText();
    return reason.isEmpty() ? QString() : tr("файл %1: %2").arg(home.databasePath(), reason);
}

bool HostDatabase::isBlank(const DataFolder &home)
{
    HostConnection connection(home.databasePath());
    const QVariant isUsed = connection.value(QStringLiteral(
        "SELECT EXISTS (SELECT 1 FROM cars) OR EXISTS (SELECT 1 FROM personal) OR EXISTS (SELECT 1 FROM "
        "service_operations) OR EXISTS (SELECT 1 FROM maintainance) OR EXISTS (SELECT 1 FROM laps)"));
    return isUsed.isValid() && !isUsed.toBool();
}
