#pragma once

#include <QJsonObject>
#include <QString>

/// The findings as JSON lines in the file that HOSTCHECK_REPORT names; without the variable nothing is
/// written. Each line is complete in the file when write() returns, so a crash of the host loses none.
class ReportFile final
{
public:
    /// Empties the file.
    ReportFile();

    void write(const QJsonObject &line) const;
    /// Empty if there is no report.
    QString path() const { return m_path; }

private:
    const QString m_path;
};
