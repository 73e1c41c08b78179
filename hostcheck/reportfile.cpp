#include "hostcheck/reportfile.h"

#include <QFile>
#include <QJsonDocument>

ReportFile::ReportFile() : m_path(QFile::decodeName(qgetenv("HOSTCHECK_REPORT")))
{
    if (m_path.isEmpty())
        return;
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qWarning("hostcheck: %s: %s", qPrintable(m_path), qPrintable(file.errorString()));
}

void ReportFile::write(const QJsonObject &line) const
{
    if (m_path.isEmpty())
        return;
    QFile file(m_path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
}
