#include "support/garagetest.h"

#include <QFile>
#include <QtTest>

/// The page on the database quotes the schema that hosts run.
class TestDatabaseGuide final : public GarageTest
{
    Q_OBJECT

private slots:
    void theSchemaIsQuotedWordForWord();
};

void TestDatabaseGuide::theSchemaIsQuotedWordForWord()
{
    QFile guide(DATABASE_GUIDE);
    QVERIFY(guide.open(QIODevice::ReadOnly));
    QFile schema(":/test/schema.sql");
    QVERIFY(schema.open(QIODevice::ReadOnly));
    const QString quotation =
        QString::fromUtf8(guide.readAll()).section("```sql\n", 1).section("```\n", 0, 0);
    const QStringList quoted = quotation.split('\n');
    const QStringList lines = QString::fromUtf8(schema.readAll()).split('\n');
    for (int i = 0; i < qMin(quoted.size(), lines.size()); ++i)
        QCOMPARE(quoted.at(i), lines.at(i));
    QCOMPARE(quoted.size(), lines.size());
}

GARAGE_TEST_WITHOUT_WINDOWS(TestDatabaseGuide)
#include "tst_databaseguide.moc"
