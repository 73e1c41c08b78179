#pragma once

#include <QString>

class Findings;
class QSqlDatabase;

/// Judges the shared database. Reads only, on a connection that exists only during a call; a busy file is not
/// judged until the next call.
class DatabaseJudge final
{
public:
    explicit DatabaseJudge(Findings &findings) : m_findings(findings) { }

    /// The file must exist already.
    void judgeLoading();
    /// Does nothing while the file is missing.
    void judgeContents();
    void judgeConnectionNames();

private:
    void judgeTables(QSqlDatabase &database);
    void judgeKeys(QSqlDatabase &database);
    void judgeJournal(QSqlDatabase &database);
    void judgeIndex(QSqlDatabase &database);
    void judgeLapTimes(QSqlDatabase &database);

    Findings &m_findings;
    bool m_hasReportedLapTimes = false;
};
