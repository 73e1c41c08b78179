#include "data/garagedatabase.h"
#include "data/platform.h"
#include "support/garagetest.h"

#include <unistd.h>

#include <cstdio>

/// What the module knows about its file on a system without POSIX. Linked with the fallback in place of the
/// code for POSIX.
class TestPlatformWithoutPosix final : public GarageTest
{
    Q_OBJECT
private slots:
    void aMissingFileHasNoIdentity();
    void aFileKeepsItsIdentityWhileItIsWrittenTo();
    void aFileThatReplacesTheDatabaseIsOpened();
    void aChangedLinkLeadsToAnotherFile();
    void aReadOnlyFileMayNotBeWritten();
};

namespace {

void append(const QString &path, const char *text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write(text);
}

/// Acts as an ordinary user while it exists: the superuser may write every file.
class OrdinaryUser final
{
    Q_DISABLE_COPY(OrdinaryUser)
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        m_isChanged = ::geteuid() == 0 && ::setresuid(nobody, nobody, 0) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_isChanged && ::setresuid(0, 0, 0) != 0)
            qFatal("The user cannot be changed");
    }

private:
    bool m_isChanged = false;
};

} // namespace

void TestPlatformWithoutPosix::aMissingFileHasNoIdentity()
{
    QVERIFY(!Platform::identityOfFile(home().path() + "/missing"));
    QVERIFY(!Platform::mayWriteFile(home().path() + "/missing"));
}

void TestPlatformWithoutPosix::aFileKeepsItsIdentityWhileItIsWrittenTo()
{
    const QString path = home().path() + "/file";
    append(path, "1");
    const auto identity = Platform::identityOfFile(path);
    QVERIFY(identity);
    const QDateTime firstWrite = QFileInfo(path).lastModified();
    QTRY_VERIFY((append(path, "2"), QFileInfo(path).lastModified() != firstWrite));
    QVERIFY(Platform::identityOfFile(path) == identity);
}

void TestPlatformWithoutPosix::aFileThatReplacesTheDatabaseIsOpened()
{
    const auto database = createDatabase();
    const QString path = home().databasePath();
    const QDateTime created = QFileInfo(path).birthTime();
    if (!created.isValid())
        QSKIP("The file system does not record when a file was created");
    GarageDatabase garage("tst_platformwithoutposix");
    const int file = garage.fileCount();
    garage.ensureOpen();
    QCOMPARE(garage.fileCount(), file);

    const QString other = path + ".other";
    QTRY_VERIFY((QFile::remove(other), append(other, ""), QFileInfo(other).birthTime() != created));
    QCOMPARE(std::rename(qPrintable(other), qPrintable(path)), 0);
    garage.ensureOpen();
    QVERIFY(garage.fileCount() > file);
}

void TestPlatformWithoutPosix::aChangedLinkLeadsToAnotherFile()
{
    const QString link = home().path() + "/link";
    for (const char *target : {"/first", "/second"})
        append(home().path() + target, "");
    QVERIFY(QFile::link(home().path() + "/first", link));
    const auto first = Platform::identityOfFile(link);
    QVERIFY(QFile::remove(link));
    QVERIFY(QFile::link(home().path() + "/second", link));
    QVERIFY(Platform::identityOfFile(link) != first);
}

void TestPlatformWithoutPosix::aReadOnlyFileMayNotBeWritten()
{
    const QString writable = home().path() + "/writable";
    const QString readOnly = home().path() + "/readonly";
    for (const QString &path : {writable, readOnly})
        append(path, "");
    QVERIFY(QFile::setPermissions(home().path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(writable, QFile::Permissions(0x6666)));
    QVERIFY(QFile::setPermissions(readOnly, QFile::Permissions(0x4444)));
    const OrdinaryUser user;
    QVERIFY(Platform::mayWriteFile(writable));
    QVERIFY(!Platform::mayWriteFile(readOnly));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestPlatformWithoutPosix)
#include "tst_platformwithoutposix.moc"
