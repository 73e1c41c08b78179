#pragma once

#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

/// Place of a named column in a "SELECT *", looked up once per query; a column that the table lacks reads
/// as NULL.
class SelectedColumn final
{
public:
    SelectedColumn(const QSqlQuery &query, const QString &name)
        : m_query(query), m_index(query.record().indexOf(name))
    {
    }

    QVariant value() const { return m_index < 0 ? QVariant() : m_query.value(m_index); }
    int toInt() const { return value().toInt(); }
    QString toString() const { return value().toString(); }

private:
    const QSqlQuery &m_query;
    const int m_index;
};
