#include "tests/host/hostfixture.h"

#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sample/sampledata.h"

QJsonObject HostFixture::lastSent(const QString &event) const
{
    const MessageLogModel &log = host->messageLog();
    for (int row = log.rowCount() - 1; row >= 0; --row) {
        if (log.entry(row).toPlugin && log.entry(row).event == event)
            return log.entry(row).data();
    }
    return {};
}

int HostFixture::countSent(const QString &event) const
{
    int count = 0;
    const MessageLogModel &log = host->messageLog();
    for (int row = 0; row < log.rowCount(); ++row)
        count += log.entry(row).toPlugin && log.entry(row).event == event ? 1 : 0;
    return count;
}

HostFixture makeHostFixture()
{
    const DataFolder documents = DataFolder::userDocuments();
    HostFixture fixture;
    if (!HostDatabase::prepare(documents))
        qFatal("no database");
    {
        HostConnection connection(documents.databasePath());
        generateSampleData(connection, SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                           [](int) { return true; });
    }
    fixture.host = std::make_unique<DemoHost>(documents, 1);
    if (!fixture.host->plugin().load(FAKE_PLUGIN))
        qFatal("no plug-in");
    fixture.window = std::make_unique<HostWindow>(*fixture.host, documents);
    fixture.window->start();
    return fixture;
}
