#include "hostcheck/catalogue.h"
#include "support/garagetest.h"

#include <QRegularExpression>

/// docs/hostcheck.md lists every finding as the program has it.
class TestHostCheckPage final : public GarageTest
{
    Q_OBJECT

private slots:
    void thePageListsTheFindingsOfTheProgram();
};

void TestHostCheckPage::thePageListsTheFindingsOfTheProgram()
{
    QFile page(HOSTCHECK_PAGE);
    QVERIFY(page.open(QIODevice::ReadOnly));
    // | `id` | severity | seen | breaks | [section](page.md#section) |
    const QRegularExpression row(
        "^\\| `([a-z-]+)` \\| (\\w+) \\| [^|]+ \\| ([^|]+) \\| \\[[^|]+\\]\\(([^|)]+)\\) \\|$",
        QRegularExpression::MultilineOption);
    QStringList listed;
    auto matches = row.globalMatch(QString::fromUtf8(page.readAll()));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        listed.append(match.capturedTexts().mid(1).join('|'));
    }
    QStringList expected;
    for (const FindingKind &kind : Catalogue::all())
        expected.append(
            QStringList({kind.id, severityName(kind.severity), kind.breaks, kind.guide}).join('|'));
    QCOMPARE(listed, expected);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestHostCheckPage)
#include "tst_hostcheckpage.moc"
