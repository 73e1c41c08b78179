#include "host/remote/web/websessions.h"
#include "support/garagetest.h"

using namespace std::chrono_literals;

/// Who is signed in to the page, and who must wait.
class TestWebSessions final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();

    void theRightCodeOpensASessionOfItsOwn();
    void withoutACodeNobodySignsIn();
    void fiveWrongCodesLockTheAddressForAMinute();
    void aRightCodeInBetweenDoesNotUndoWrongOnes();
    void wrongCodesAreForgottenAfterAMinute();
    void oneNetworkIsOneAddress();
    void anotherCodeOrNoPersonEndsTheSession();
    void anIdleSessionEndsButNotOneWithAnOpenPage();
    void requestsAreLimitedPerSecond();
    void streamsAreLimitedTogether();
    void tablesDoNotGrowWithoutALimit();
    void openPagesAreListedByName();

private:
    bool isLocked(const std::string &address, const std::string &code = "0000")
    {
        return m_sessions->signIn(address, code).outcome == WebSessions::SignIn::Locked;
    }
    std::string tokenOf(const std::string &code) { return m_sessions->signIn("10.0.0.9", code).token; }

    std::chrono::steady_clock::time_point m_now;
    std::unique_ptr<WebSessions> m_sessions;
};

void TestWebSessions::init()
{
    GarageTest::init();
    m_now = std::chrono::steady_clock::time_point(1000h);
    WebLimits limits;
    limits.requestBurst = 3;
    limits.requestsPerSecond = 2;
    limits.streams = 2;
    limits.sessions = 4;
    limits.strangers = 3;
    m_sessions = std::make_unique<WebSessions>(limits, [this] { return m_now; });
    m_sessions->setPeople({{7, "Яшин Лев", "1234"}, {8, "Аист Пётр", "5678"}, {9, "Без кода", ""}});
}

void TestWebSessions::theRightCodeOpensASessionOfItsOwn()
{
    const WebSessions::SignIn first = m_sessions->signIn("10.0.0.1", "1234");
    const WebSessions::SignIn second = m_sessions->signIn("10.0.0.2", "1234");
    QCOMPARE(first.outcome, WebSessions::SignIn::Done);
    QCOMPARE(first.person.id, 7);
    QCOMPARE(first.token.size(), std::size_t(64));
    QVERIFY(first.token != second.token);
    WebSessions::Check check = WebSessions::Check::SignedOut;
    QCOMPARE(m_sessions->personOf(first.token, check)->name, std::string("Яшин Лев"));
    QCOMPARE(check, WebSessions::Check::Good);
    m_sessions->signOut(first.token);
    QVERIFY(!m_sessions->isSignedIn(first.token));
    QVERIFY(m_sessions->isSignedIn(second.token));
    QVERIFY(!m_sessions->isSignedIn(std::string()));
}

void TestWebSessions::withoutACodeNobodySignsIn()
{
    QCOMPARE(m_sessions->signIn("10.0.0.1", "").outcome, WebSessions::SignIn::WrongCode);
    QCOMPARE(m_sessions->signIn("10.0.0.1", "123").outcome, WebSessions::SignIn::WrongCode);
    QCOMPARE(m_sessions->signIn("10.0.0.1", "12345").outcome, WebSessions::SignIn::WrongCode);
}

void TestWebSessions::fiveWrongCodesLockTheAddressForAMinute()
{
    for (int left = 4; left > 0; --left) {
        const WebSessions::SignIn wrong = m_sessions->signIn("10.0.0.1", "0000");
        QCOMPARE(wrong.outcome, WebSessions::SignIn::WrongCode);
        QCOMPARE(wrong.remaining, left);
    }
    const WebSessions::SignIn fifth = m_sessions->signIn("10.0.0.1", "0000");
    QCOMPARE(fifth.outcome, WebSessions::SignIn::Locked);
    QCOMPARE(fifth.seconds, 60);
    m_now += 59s;
    QCOMPARE(m_sessions->signIn("10.0.0.1", "1234").outcome, WebSessions::SignIn::Locked);
    QCOMPARE(m_sessions->signIn("10.0.0.1", "1234").seconds, 1);
    QCOMPARE(m_sessions->signIn("10.0.0.2", "1234").outcome, WebSessions::SignIn::Done);
    m_now += 1s;
    QCOMPARE(m_sessions->signIn("10.0.0.1", "1234").outcome, WebSessions::SignIn::Done);
}

void TestWebSessions::aRightCodeInBetweenDoesNotUndoWrongOnes()
{
    for (int attempt = 0; attempt < 4; ++attempt)
        QVERIFY(!isLocked("10.0.0.1"));
    QVERIFY(!isLocked("10.0.0.1", "1234"));
    QVERIFY(isLocked("10.0.0.1"));
}

void TestWebSessions::wrongCodesAreForgottenAfterAMinute()
{
    for (int attempt = 0; attempt < 4; ++attempt)
        QVERIFY(!isLocked("10.0.0.1"));
    m_now += 60s;
    QCOMPARE(m_sessions->signIn("10.0.0.1", "0000").remaining, 4);
}

void TestWebSessions::oneNetworkIsOneAddress()
{
    for (int attempt = 1; attempt < 5; ++attempt)
        QVERIFY(!isLocked("2001:db8:1:2::" + std::to_string(attempt)));
    QVERIFY(isLocked("2001:db8:1:2:ffff::1"));
    QVERIFY(!isLocked("2001:db8:1:3::1"));
    for (int attempt = 1; attempt < 5; ++attempt)
        QVERIFY(!isLocked(attempt % 2 != 0 ? "10.0.0.1" : "::ffff:10.0.0.1"));
    QVERIFY(isLocked("10.0.0.1"));
}

void TestWebSessions::anotherCodeOrNoPersonEndsTheSession()
{
    const std::string first = tokenOf("1234");
    const std::string second = tokenOf("5678");
    m_sessions->setPeople({{7, "Яшин Лев Иванович", "1234"}, {8, "Аист Пётр", "5679"}});
    QCOMPARE(m_sessions->personOfSession(first)->name, std::string("Яшин Лев Иванович"));
    QVERIFY(!m_sessions->isSignedIn(second));
    m_sessions->setPeople({});
    QVERIFY(!m_sessions->isSignedIn(first));
}

void TestWebSessions::anIdleSessionEndsButNotOneWithAnOpenPage()
{
    const std::string idle = tokenOf("1234");
    const std::string open = tokenOf("5678");
    QVERIFY(m_sessions->openStream(open));
    m_now += 12h;
    QVERIFY(!m_sessions->isSignedIn(idle));
    QVERIFY(m_sessions->isSignedIn(open));
    m_sessions->closeStream(open);
    m_now += 12h;
    QVERIFY(!m_sessions->isSignedIn(open));
}

void TestWebSessions::requestsAreLimitedPerSecond()
{
    const std::string token = tokenOf("1234");
    const std::string other = tokenOf("1234");
    WebSessions::Check check = WebSessions::Check::Good;
    for (int request = 0; request < 3; ++request)
        QVERIFY(m_sessions->personOf(token, check));
    QVERIFY(!m_sessions->personOf(token, check));
    QCOMPARE(check, WebSessions::Check::TooMany);
    QVERIFY(m_sessions->personOf(other, check));
    m_now += 500ms;
    QVERIFY(m_sessions->personOf(token, check));
    QVERIFY(!m_sessions->personOf(token, check));
}

void TestWebSessions::streamsAreLimitedTogether()
{
    const std::string one = tokenOf("1234");
    const std::string other = tokenOf("5678");
    QVERIFY(m_sessions->openStream(one));
    QVERIFY(m_sessions->openStream(other));
    QVERIFY(!m_sessions->openStream(other));
    m_sessions->signOut(one);
    m_sessions->closeStream(one); // the session has ended meanwhile
    QVERIFY(m_sessions->openStream(other));
    QVERIFY(!m_sessions->openStream(one));
}

void TestWebSessions::tablesDoNotGrowWithoutALimit()
{
    const std::string first = tokenOf("1234");
    std::string last;
    for (int session = 0; session < 4; ++session) {
        m_now += 1s;
        last = tokenOf("1234");
    }
    QVERIFY(!m_sessions->isSignedIn(first)); // the one used longest ago made room
    QVERIFY(m_sessions->isSignedIn(last));

    for (int attempt = 0; attempt < 5; ++attempt)
        isLocked("10.0.0.1");
    m_now += 1s;
    QVERIFY(isLocked("10.0.0.1"));
    for (int stranger = 2; stranger < 4; ++stranger)
        QVERIFY(!isLocked("10.0.0." + std::to_string(stranger)));
    QVERIFY(isLocked("10.0.0.1"));
}

void TestWebSessions::openPagesAreListedByName()
{
    const std::string first = tokenOf("1234");
    const std::string second = tokenOf("5678");
    QVERIFY(m_sessions->clients().empty());
    QVERIFY(m_sessions->openStream(first));
    QVERIFY(m_sessions->openStream(second));
    QCOMPARE(m_sessions->clients().size(), std::size_t(2));
    QCOMPARE(m_sessions->clients().front().person, std::string("Аист Пётр"));
    QCOMPARE(m_sessions->clients().front().address, std::string("10.0.0.9"));
    m_sessions->closeStream(second);
    QCOMPARE(m_sessions->clients().front().person, std::string("Яшин Лев"));
}

GARAGE_TEST(TestWebSessions)
#include "tst_websessions.moc"
