#include "support/garagetest.h"

#include <QAbstractItemModel>
#include <QMutex>

namespace {

QMutex outputMutex;
QStringList warnings;
QStringList debugLines;
QtMessageHandler previousHandler = nullptr;

/// Messages of the offscreen platform about sizes, raising, grabbing.
bool isPlatformNoise(const QString &text)
{
    return text.startsWith("This plugin does not support ");
}

void watchOutput(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    {
        const QMutexLocker lock(&outputMutex);
        if (type == QtDebugMsg)
            debugLines.append(text);
        else if (type != QtInfoMsg && !isPlatformNoise(text))
            warnings.append(text);
    }
    if (type != QtDebugMsg && !isPlatformNoise(text) && previousHandler)
        previousHandler(type, context, text);
}

QStringList take(QStringList &lines)
{
    const QMutexLocker lock(&outputMutex);
    QStringList taken;
    taken.swap(lines);
    return taken;
}

} // namespace

std::unique_ptr<TestDatabase> GarageTest::createDatabase() const
{
    m_home->createDatabaseFolder();
    return std::make_unique<TestDatabase>(m_home->databasePath());
}

QStringList GarageTest::takeWarnings()
{
    return take(warnings);
}

QStringList GarageTest::takeDebugLines()
{
    return take(debugLines);
}

void GarageTest::init()
{
    // What signal spies on models need to know.
    qRegisterMetaType<QList<QPersistentModelIndex>>();
    qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>("QAbstractItemModel::LayoutChangeHint");

    takeWarnings();
    takeDebugLines();
    m_home = std::make_unique<TestHome>();
    previousHandler = qInstallMessageHandler(watchOutput);
}

void GarageTest::cleanup()
{
    qInstallMessageHandler(previousHandler);
    m_home.reset();
    QCOMPARE(takeWarnings(), QStringList());
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

void DatabaseTest::init()
{
    GarageTest::init();
    database = createDatabase();
}

void DatabaseTest::cleanup()
{
    database.reset();
    GarageTest::cleanup();
}
