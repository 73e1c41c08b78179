#include "garagectl/doctor/schemacheck.h"

#include "garagectl/database/select.h"
#include "garagectl/doctor/catalogue.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace {

enum Affinity { Integer, Text, Blob, Real, Numeric };

struct WantedColumn
{
    const char *name;
    Affinity affinity;
    bool isTime = false; ///< DATETIME and the like keep texts as they are
};

struct WantedTable
{
    const char *name;
    QVector<WantedColumn> columns;
    bool isWritten = false; ///< rows are inserted by the module
};

// As host/database/schema.sql has them.
const QVector<WantedTable> &wantedTables()
{
    static const QVector<WantedTable> tables {
        {"cars", {{"id", Integer}, {"num", Text}, {"name", Text}}},
        {"personal", {{"id", Integer}, {"last_name", Text}, {"first_name", Text}, {"mid_name", Text}}},
        {"laps",
         {{"lap_id", Integer},
          {"car_id", Integer},
          {"run_id", Integer},
          {"lap_timestamp", Text, true},
          {"sum_sectors", Integer}}},
        {"service_operations", {{"id", Integer}, {"operation_name", Text}}, true},
        {"service_reglament",
         {{"model", Text},
          {"operation_id", Integer},
          {"time_limit", Integer},
          {"runs_limit", Integer},
          {"laps_limit", Integer}},
         true},
        {"maintainance",
         {{"id", Integer},
          {"car_id", Integer},
          {"operation_id", Integer},
          {"operation_time", Text, true},
          {"person_id", Integer},
          {"person_name", Text},
          {"comment", Text},
          {"operation_state", Integer},
          {"remote_id", Integer}},
         true}};
    return tables;
}

struct Column
{
    QString name;
    QString type;
    bool isRequired = false; ///< NOT NULL without a default
    QString defaultValue; ///< SQL; empty: none
    int keyPlace = 0; ///< in the primary key, from 1; 0: not in it
};

struct Table
{
    QString sql; ///< without comments
    QMap<QString, Column> columns; ///< by name in lower case

    bool matches(const char *pattern) const
    {
        return QRegularExpression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption)
            .match(sql)
            .hasMatch();
    }
};

/// Neither comments nor quoted names and texts.
QString bareSql(QString sql)
{
    static const QRegularExpression comment(
        QStringLiteral("--[^\\n]*|/\\*.*?\\*/|'[^']*'|\"[^\"]*\"|\\[[^]]*\\]|`[^`]*`"),
        QRegularExpression::DotMatchesEverythingOption);
    return sql.replace(comment, QStringLiteral(" "));
}

/// By the rules of "Datatypes In SQLite".
Affinity affinityOf(const QString &type)
{
    const auto has = [&type](const char *part) {
        return type.contains(QLatin1String(part), Qt::CaseInsensitive);
    };
    if (has("INT"))
        return Integer;
    if (has("CHAR") || has("CLOB") || has("TEXT"))
        return Text;
    if (has("BLOB") || type.isEmpty())
        return Blob;
    if (has("REAL") || has("FLOA") || has("DOUB"))
        return Real;
    return Numeric;
}

bool isFitting(const WantedColumn &wanted, Affinity affinity)
{
    if (affinity == wanted.affinity || affinity == Blob)
        return true;
    return affinity == Numeric && (wanted.affinity == Integer || wanted.isTime);
}

Table readTable(const GarageDatabase &database, const QString &name, const QString &sql)
{
    enum { Name = 1, Type, NotNull, Default, Key };
    Table table;
    table.sql = bareSql(sql);
    Select::forEachRow(database,
                       QLatin1String("PRAGMA table_info(") + Select::quotedName(name) + QLatin1Char(')'),
                       [&table](const QSqlQuery &row) {
                           Column column;
                           column.name = row.value(Name).toString();
                           column.type = row.value(Type).toString();
                           column.defaultValue = row.value(Default).toString();
                           column.isRequired = row.value(NotNull).toBool() && row.value(Default).isNull();
                           column.keyPlace = row.value(Key).toInt();
                           table.columns.insert(column.name.toLower(), column);
                       });
    return table;
}

/// The garage's tables that exist, by name in lower case.
QMap<QString, Table> readTables(const GarageDatabase &database)
{
    QMap<QString, QString> sqlByName;
    Select::forEachRow(database,
                       QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type IN ('table','view')"),
                       [&sqlByName](const QSqlQuery &row) {
                           sqlByName.insert(row.value(0).toString().toLower(), row.value(1).toString());
                       });
    QMap<QString, Table> tables;
    for (const WantedTable &wanted : wantedTables()) {
        const QString name = QString::fromLatin1(wanted.name);
        if (sqlByName.contains(name))
            tables.insert(name, readTable(database, name, sqlByName.value(name)));
    }
    return tables;
}

/// Collects the examples of one kind of finding.
class Collected final
{
public:
    explicit Collected(const char *id) : m_id(id) { }

    void add(const QString &example) { m_examples.append(example); }
    void appendTo(Findings &findings) const
    {
        if (!m_examples.isEmpty())
            findings.append(DoctorCatalogue::finding(m_id, m_examples.size(), m_examples));
    }

private:
    const char *m_id;
    QStringList m_examples;
};

Findings checkColumns(const QMap<QString, Table> &tables)
{
    Collected missingTables("table-missing");
    Collected missingColumns("column-missing");
    Collected otherTypes("column-type");
    for (const WantedTable &wanted : wantedTables()) {
        const QString name = QString::fromLatin1(wanted.name);
        if (!tables.contains(name)) {
            missingTables.add(name);
            continue;
        }
        for (const WantedColumn &wantedColumn : wanted.columns) {
            const QString place = name + QLatin1Char('.') + QLatin1String(wantedColumn.name);
            const auto &columns = tables.value(name).columns;
            const auto column = columns.constFind(QString::fromLatin1(wantedColumn.name));
            if (column == columns.cend())
                missingColumns.add(place);
            else if (!isFitting(wantedColumn, affinityOf(column->type)))
                otherTypes.add(place + QLatin1Char(' ') + column->type);
        }
    }
    Findings findings;
    for (const Collected &collected : {missingTables, missingColumns, otherTypes})
        collected.appendTo(findings);
    return findings;
}

/// True if the column is the row's own id, which SQLite assigns.
bool isRowId(const Table &table)
{
    const Column id = table.columns.value(QStringLiteral("id"));
    const auto keyColumns = std::count_if(table.columns.cbegin(), table.columns.cend(),
                                          [](const Column &column) { return column.keyPlace > 0; });
    return id.keyPlace == 1 && keyColumns == 1
        && id.type.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0
        && !table.matches("\\bWITHOUT\\s+ROWID\\b");
}

Findings checkIds(const QMap<QString, Table> &tables)
{
    Collected notKeys("id-not-key");
    Collected reused("ids-reused");
    for (const char *name : {"maintainance", "service_operations"}) {
        const auto table = tables.constFind(QString::fromLatin1(name));
        if (table == tables.cend() || !table->columns.contains(QStringLiteral("id")))
            continue;
        if (!isRowId(*table))
            notKeys.add(QLatin1String(name) + QLatin1String(".id"));
        else if (!table->matches("\\bAUTOINCREMENT\\b"))
            reused.add(QLatin1String(name) + QLatin1String(".id"));
    }
    Findings findings;
    notKeys.appendTo(findings);
    reused.appendTo(findings);
    return findings;
}

Findings checkInserts(const QMap<QString, Table> &tables)
{
    Findings findings;
    Collected required("required-column");
    for (const WantedTable &wanted : wantedTables()) {
        if (!wanted.isWritten)
            continue;
        const QString name = QString::fromLatin1(wanted.name);
        for (const Column &column : tables.value(name).columns) {
            // Left out by the insert of a service done.
            const bool isLeftOut = column.name == QLatin1String("remote_id")
                || std::none_of(wanted.columns.cbegin(), wanted.columns.cend(),
                                [&column](const WantedColumn &known) {
                                    return column.name.compare(QLatin1String(known.name), Qt::CaseInsensitive)
                                        == 0;
                                });
            if (column.isRequired && isLeftOut && column.keyPlace == 0)
                required.add(name + QLatin1Char('.') + column.name);
        }
    }
    required.appendTo(findings);

    const auto log = tables.constFind(QStringLiteral("maintainance"));
    const QString state = QStringLiteral("operation_state");
    if (log != tables.cend() && log->columns.contains(state)) {
        QString defaultValue = log->columns.value(state).defaultValue;
        defaultValue.remove(QRegularExpression(QStringLiteral("[()'\"\\s]")));
        if (defaultValue != QLatin1String("1"))
            findings.append(DoctorCatalogue::finding(
                "state-default", 1,
                {QLatin1String("DEFAULT ")
                 + (defaultValue.isEmpty() ? QStringLiteral("NULL") : defaultValue)}));
    }
    return findings;
}

struct UniqueIndex
{
    QString name;
    QStringList columns; ///< in lower case, sorted
    bool isPlain = true; ///< binary comparison of all rows
};

QVector<UniqueIndex> readUniqueIndexes(const GarageDatabase &database, const QString &table)
{
    QVector<UniqueIndex> indexes;
    Select::forEachRow(
        database,
        QStringLiteral("SELECT name, partial FROM pragma_index_list('%1') WHERE \"unique\"").arg(table),
        [&indexes](const QSqlQuery &row) {
            indexes.append({row.value(0).toString(), {}, !row.value(1).toBool()});
        });
    for (UniqueIndex &index : indexes) {
        const QString columns =
            QStringLiteral("SELECT lower(name), coll FROM pragma_index_xinfo(%1) WHERE key")
                .arg(Select::quotedName(index.name));
        Select::forEachRow(database, columns, [&index](const QSqlQuery &row) {
            index.columns.append(row.value(0).toString());
            index.isPlain = index.isPlain && row.value(1).toString() == QLatin1String("BINARY");
        });
        index.columns.sort();
    }
    return indexes;
}

Findings checkLimitsKey(const GarageDatabase &database)
{
    const QStringList key {QStringLiteral("model"), QStringLiteral("operation_id")};
    bool hasKey = false;
    QStringList others;
    for (const UniqueIndex &index : readUniqueIndexes(database, QStringLiteral("service_reglament"))) {
        if (index.columns == key && index.isPlain)
            hasKey = true;
        else
            others.append(index.name + QLatin1String(": ") + index.columns.join(QLatin1String(", ")));
    }
    if (hasKey && others.isEmpty())
        return {};
    return {DoctorCatalogue::finding("limits-key", qMax(1, others.size()), others)};
}

} // namespace

Findings checkSchema(const GarageDatabase &database)
{
    const QMap<QString, Table> tables = readTables(database);
    Findings findings = checkColumns(tables) + checkIds(tables) + checkInserts(tables);
    if (tables.contains(QStringLiteral("service_reglament")))
        findings += checkLimitsKey(database);
    return findings;
}
