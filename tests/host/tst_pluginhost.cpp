#include "host/plugin/pluginhost.h"
#include "host/plugin/pluginmetadata.h"
#include "support/garagetest.h"

#include <QCborMap>
#include <QCborValue>

/// A library that is no plug-in for this host is refused with a reason.
class TestPluginHost : public GarageTest
{
    Q_OBJECT
private slots:
    void aPluginOfAnotherQtIsNamedAsSuch_data();
    void aPluginOfAnotherQtIsNamedAsSuch();
    void whatIsNoPluginHasNoMetadata_data();
    void whatIsNoPluginHasNoMetadata();

private:
    QString writeFile(const QByteArray &content);
};

QString TestPluginHost::writeFile(const QByteArray &content)
{
    const QString path = home().path() + "/library.so";
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
    return path;
}

void TestPluginHost::aPluginOfAnotherQtIsNamedAsSuch_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("as Qt 5 writes metadata") << QByteArray("QTMETADATA !");
    QTest::newRow("as Qt 6 writes metadata") << QByteArray("qt-project!\0", 12);
}

void TestPluginHost::aPluginOfAnotherQtIsNamedAsSuch()
{
    QFETCH(const QByteArray, start);
    const QByteArray header("\0\7\2\0", 4); // Qt 7.2
    const QByteArray entries = QCborValue(QCborMap {{2, "trivex.TrivexPluginInterface/v1.0"}}).toCbor();
    const QString path = writeFile("library" + start + header + entries + "text");
    const std::optional<PluginMetadata> metadata = readPluginMetadata(path);
    QVERIFY(metadata);
    QCOMPARE(metadata->entries.value(2).toString(), "trivex.TrivexPluginInterface/v1.0");

    const Result loaded = PluginHost().load(path);
    QVERIFY(!loaded);
    QCOMPARE(loaded.errorText(),
             QString("%1 was built with Qt 7, this host with Qt %2").arg(path).arg(QT_VERSION_MAJOR));
}

void TestPluginHost::whatIsNoPluginHasNoMetadata_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("text");
    QTest::newRow("cut off in the header") << QByteArray("QTMETADATA !\0\5", 14);
    QTest::newRow("cut off in the entries") << QByteArray("QTMETADATA !\0\5\17\0\277\2", 18);
    QTest::newRow("no entries follow") << QByteArray("qt-project! and nothing more");
}

void TestPluginHost::whatIsNoPluginHasNoMetadata()
{
    QFETCH(const QByteArray, content);
    const QString path = writeFile(content);
    QVERIFY(!readPluginMetadata(path));
    const Result loaded = PluginHost().load(path);
    QVERIFY(!loaded);
    QVERIFY(!loaded.errorText().isEmpty());
    takeWarnings(); // Qt 6 warns
}

GARAGE_TEST(TestPluginHost)
#include "tst_pluginhost.moc"
