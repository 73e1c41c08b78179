#include "hostcheck/findings.h"

#include <algorithm>

void Findings::report(QLatin1String id, const QString &seen)
{
    const bool isKnown = std::any_of(m_findings.cbegin(), m_findings.cend(), [&](const Finding &finding) {
        return finding.kind->id == id && finding.seen == seen;
    });
    if (isKnown)
        return;
    const FindingKind &kind = Catalogue::kind(id);
    m_findings.append({&kind, seen, QDateTime::currentDateTime()});
    m_file.write({{QStringLiteral("record"), QStringLiteral("finding")},
                  {QStringLiteral("id"), kind.id},
                  {QStringLiteral("severity"), severityName(kind.severity)},
                  {QStringLiteral("seen"), seen},
                  {QStringLiteral("breaks"), kind.breaks},
                  {QStringLiteral("guide"), kind.guide},
                  {QStringLiteral("time"), m_findings.constLast().time.toUTC().toString(Qt::ISODateWithMs)}});
    emit added();
}

void Findings::noteSent(const QString &event)
{
    m_file.write({{QStringLiteral("record"), QStringLiteral("sent")}, {QStringLiteral("event"), event}});
}

void Findings::finish()
{
    m_file.write({{QStringLiteral("record"), QStringLiteral("end")},
                  {QStringLiteral("findings"), int(m_findings.size())}});
}
