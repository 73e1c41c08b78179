#include "garagectl/findings/finding.h"

#include "garagectl/findings/findingtext.h"
#include "garagectl/wording.h"

#include <QtGlobal>

#include <algorithm>
#include <cstring>

bool hasError(const Findings &findings)
{
    return std::any_of(findings.cbegin(), findings.cend(),
                       [](const Finding &finding) { return finding.severity == Finding::Error; });
}

Finding FindingText::finding(qint64 count, const QStringList &examples) const
{
    const auto inLanguage = [](const ByLanguage &texts) { return text(texts[0], texts[1]); };
    const QString statements = sql ? QLatin1Char('\n') + QString::fromUtf8(sql) : QString();
    return {QString::fromLatin1(id),
            severity,
            inLanguage(title),
            inLanguage(harm),
            inLanguage(remedy) + statements,
            count,
            examples.mid(0, mostExamples)};
}

Finding findingOf(const std::vector<FindingText> &texts, const char *id, qint64 count,
                  const QStringList &examples)
{
    const auto found = std::find_if(texts.cbegin(), texts.cend(), [id](const FindingText &candidate) {
        return std::strcmp(candidate.id, id) == 0;
    });
    Q_ASSERT(found != texts.cend());
    return found->finding(count, examples);
}
