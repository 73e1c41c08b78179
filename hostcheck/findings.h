#pragma once

#include "hostcheck/catalogue.h"
#include "hostcheck/reportfile.h"

#include <QDateTime>
#include <QObject>
#include <QVector>

struct Finding
{
    const FindingKind *kind = nullptr;
    QString seen;
    QDateTime time; // local
};

/// Collects what the judges find and writes it to the report. A finding that was made before with the same
/// text is not repeated.
class Findings final : public QObject
{
    Q_OBJECT
public:
    /// `seen` is one sentence: what the host did.
    void report(QLatin1String id, const QString &seen);
    /// Writes a line about a message to the host, before it is sent: if the host crashes over the message,
    /// this is the last line.
    void noteSent(const QString &event);
    /// Writes the last line of the report.
    void finish();

    const QVector<Finding> &all() const { return m_findings; }
    QString reportPath() const { return m_file.path(); }

signals:
    void added();

private:
    const ReportFile m_file;
    QVector<Finding> m_findings;
};
