#include "support/garagetest.h"
#include "support/protocolcatalogue.h"

#include "host/messages/eventexamples.h"
#include "trivexplugininterface.h"

#include <QFile>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace {

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// The section of the reference of events that has this heading; empty if there is none.
QString sectionOf(const QString &event)
{
    QFile reference(HOST_GUIDE);
    if (!reference.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", HOST_GUIDE);
    const QStringList sections = QString::fromUtf8(reference.readAll()).split("\n### ");
    for (const QString &section : sections) {
        if (section.startsWith('`' + event + "`\n"))
            return section.section("\n## ", 0, 0);
    }
    return {};
}

QStringList sectionsOfTheReference()
{
    QFile reference(HOST_GUIDE);
    if (!reference.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", HOST_GUIDE);
    static const QRegularExpression heading("^### `(\\w+)`$", QRegularExpression::MultilineOption);
    QStringList events;
    auto match = heading.globalMatch(QString::fromUtf8(reference.readAll()));
    while (match.hasNext())
        events.append(match.next().captured(1));
    return events;
}

} // namespace

/// Everything that names the events agrees with the catalogue, docs/protocol/events.json.
class TestProtocolCatalogue final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theModuleListsItsEventsInThisOrder();
    void directAnswersComeBeforeTheCallReturns_data();
    void directAnswersComeBeforeTheCallReturns();
    void eachEventHasASchema();
    void theDemoHostOffersAnExampleOfEachEventThatTheModuleUnderstands();
    void theReferenceHasASectionForEachEvent();
    void theReferenceNamesTheDirectAnswers();

private:
    std::unique_ptr<QPluginLoader> m_loader;
    TrivexPluginInterface *m_plugin = nullptr;
};

void TestProtocolCatalogue::init()
{
    GarageTest::init();
    m_loader = std::make_unique<QPluginLoader>(GARAGE_PLUGIN_FILE);
    m_plugin = qobject_cast<TrivexPluginInterface *>(m_loader->instance());
    QVERIFY(m_plugin);
}

void TestProtocolCatalogue::cleanup()
{
    m_loader->unload();
    GarageTest::cleanup();
}

void TestProtocolCatalogue::theModuleListsItsEventsInThisOrder()
{
    QCOMPARE(m_plugin->emittedEvents(), ProtocolCatalogue::emittedEvents());
    QCOMPARE(m_plugin->subscribedEvents(), ProtocolCatalogue::subscribedEvents());
}

void TestProtocolCatalogue::directAnswersComeBeforeTheCallReturns_data()
{
    QTest::addColumn<QString>("event");
    for (const QString &event : ProtocolCatalogue::understoodEvents())
        QTest::newRow(qPrintable(event)) << event;
}

void TestProtocolCatalogue::directAnswersComeBeforeTheCallReturns()
{
    QFETCH(const QString, event);
    const QString host = "host";
    const QString cars = "cars_list_changed";
    m_plugin->pluginSlot(host, cars, ProtocolCatalogue::exampleOf(cars)); // names the car of the examples

    QStringList answers;
    QStringList senders;
    QObject receiver; // ends before the module, which sends more when it ends
    connect(m_plugin, &TrivexPluginInterface::pluginSignal, &receiver,
            [&](const QString &module, const QString &answer) {
                senders.append(module);
                answers.append(answer);
            });
    m_plugin->pluginSlot(host, event, ProtocolCatalogue::exampleOf(event));
    QCOMPARE(answers, ProtocolCatalogue::directAnswersTo(event));
    for (int i = 0; i < answers.size(); ++i)
        QCOMPARE(senders.at(i), ProtocolCatalogue::senderOf(answers.at(i)));
}

void TestProtocolCatalogue::eachEventHasASchema()
{
    QCOMPARE(ProtocolCatalogue::eventsWithSchema(),
             sorted(ProtocolCatalogue::understoodEvents() + ProtocolCatalogue::emittedEvents()));
}

void TestProtocolCatalogue::theDemoHostOffersAnExampleOfEachEventThatTheModuleUnderstands()
{
    QStringList offered;
    for (const EventExample &example : eventExamples())
        offered.append(example.event);
    QCOMPARE(sorted(offered), sorted(ProtocolCatalogue::understoodEvents()));
}

void TestProtocolCatalogue::theReferenceHasASectionForEachEvent()
{
    QCOMPARE(sorted(sectionsOfTheReference()),
             sorted(ProtocolCatalogue::understoodEvents() + ProtocolCatalogue::emittedEvents()));
}

void TestProtocolCatalogue::theReferenceNamesTheDirectAnswers()
{
    for (const QString &event : ProtocolCatalogue::understoodEvents()) {
        for (const QString &answer : ProtocolCatalogue::directAnswersTo(event)) {
            const QString sentence = QString("Direct answer to `%1`").arg(event);
            QVERIFY2(sectionOf(answer).simplified().contains(sentence), qPrintable(answer + ": " + sentence));
        }
    }
}

GARAGE_TEST(TestProtocolCatalogue)
#include "tst_protocolcatalogue.moc"
