#include "host/remote/web/webfeed.h"
#include "host/remote/web/webserver.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "tests/host/webclient.h"

#include <atomic>
#include <future>
#include <thread>

using namespace std::chrono_literals;

namespace {

const std::string oneService = R"({"services":[{"key":"abcd-1234","car_id":101,"op_id":2,"local_id":-1,)"
                               R"("done_time":"2026-11-22T08:15:30Z","comment":""}]})";

WebState stateOf(const std::string &note)
{
    WebState state;
    WebState::Due due;
    due.comment = note;
    state.due.push_back(due);
    return state;
}

} // namespace

/// The web server alone: what it answers, and what it bears.
class TestWebServer final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void thePageComesWithAStrictPolicy();
    void onlyThePageIsServed_data();
    void onlyThePageIsServed();
    void withoutASessionNothingIsTold();
    void aSessionReadsAndWrites();
    void signingOutEndsTheSession();
    void wrongCodesAreCountedAndThenLocked();
    void behindAProxyEachClientIsLockedByItself();
    void whoIsNoProxyCannotChangeItsAddress();
    void requestsOfOtherPagesAreRefused_data();
    void requestsOfOtherPagesAreRefused();
    void aForeignHostNameIsRefused();
    void theStateCarriesTheTimeOfItsSending();
    void eventsComeWithEachChange();
    void eventsEndWithTheSession();
    void tooManyStreamsAreRefused();
    void requestsThatAreNoneAreRefused_data();
    void requestsThatAreNoneAreRefused();
    void aConnectionServesManyRequestsInOrder();
    void aSlowSenderIsCutOff_data();
    void aSlowSenderIsCutOff();
    void aReaderThatDoesNotReadIsCutOff();
    void connectionsAreLimitedAndFreedAgain();
    void requestsOfASessionAreLimited();
    void whatIsNotAnsweredInTimeIsBusy();
    void stoppingEndsOpenStreamsAtOnce();
    void aTakenPortIsReported();
    void aSecondAddressIsNotListenedAt();

private:
    void start(const WebAccess &access = {{"127.0.0.1", 0}, {}, {}, {}, {}});
    std::uint16_t port() const { return m_server->endpoint().port; }
    WebPage page() const { return WebPage(port()); }
    WebPage signedIn() const
    {
        WebPage page(port());
        if (page.signIn("1234") != 200)
            qFatal("not signed in");
        return page;
    }

    WebLimits m_limits;
    std::unique_ptr<WebFeed> m_feed;
    std::unique_ptr<WebSessions> m_sessions;
    std::unique_ptr<WebServer> m_server;
    std::atomic<int> m_recorded {0};
    std::atomic<bool> m_isBusy {false};
};

void TestWebServer::init()
{
    GarageTest::init();
    m_limits = {};
    m_limits.requestTime = 400ms;
    m_limits.idleTime = 2000ms;
    m_limits.keepAliveTime = 100ms;
    m_limits.streams = 3;
    m_limits.connections = 12;
    m_limits.bodyBytes = 64 << 10;
    m_recorded = 0;
    m_isBusy = false;
    start();
}

void TestWebServer::cleanup()
{
    m_server.reset();
    m_sessions.reset();
    m_feed.reset();
    GarageTest::cleanup();
}

void TestWebServer::start(const WebAccess &access)
{
    m_server.reset();
    m_feed = std::make_unique<WebFeed>("epoch");
    m_sessions = std::make_unique<WebSessions>(m_limits);
    m_sessions->setPeople({{7, "Яшин Лев", "1234"}});
    WebServer::Actions actions;
    actions.recordServices = [this](const WebPerson &, const std::vector<WebRequests::Service> &services)
        -> std::optional<std::vector<WebServer::ServiceResult>> {
        if (m_isBusy)
            return std::nullopt;
        std::vector<WebServer::ServiceResult> results;
        for (const WebRequests::Service &service : services)
            results.push_back({service.key, ++m_recorded, "waiting", service.isValid ? "" : "invalid"});
        return results;
    };
    actions.setAvailable = [](int carId, bool) { return std::make_optional(carId == 101); };
    WebServer::Files files {{"/index.html", {"text/html", "<!doctype html>"}},
                            {"/page.js", {"text/javascript", "1;"}}};
    m_server = std::make_unique<WebServer>(access, m_limits, files, *m_feed, *m_sessions, actions);
    const std::string error = m_server->start();
    if (!error.empty())
        qFatal("%s", error.c_str());
}

void TestWebServer::thePageComesWithAStrictPolicy()
{
    const WebAnswer answer = page().get("/");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, std::string("<!doctype html>"));
    const QString policy = QString::fromStdString(answer.header("Content-Security-Policy"));
    QVERIFY(policy.contains("default-src 'none'"));
    QVERIFY(!policy.contains("unsafe"));
    QVERIFY(policy.contains("frame-ancestors 'none'"));
    QCOMPARE(answer.header("X-Content-Type-Options"), std::string("nosniff"));
    QCOMPARE(answer.header("Cache-Control"), std::string("no-store"));
    QCOMPARE(page().get("/page.js").header("Content-Type"), std::string("text/javascript"));
}

void TestWebServer::onlyThePageIsServed_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("status");
    for (const char *path : {"/etc/passwd", "/../etc/passwd", "/..%2f..%2fetc%2fpasswd", "//etc/passwd",
                             "/page.js/../../etc/passwd", "/PAGE.JS", "/api", "/api/", "/api/karts",
                             "/api/karts/x", "/index.html/", "/."})
        QTest::newRow(path) << QByteArray(path) << 404;
    for (const char *path : {"/%00", "/page.js%00.html"})
        QTest::newRow(path) << QByteArray(path) << 400;
    QTest::newRow("very long") << QByteArray("/" + QByteArray("a/").repeated(4000)) << 404;
    QTest::newRow("longer than a head") << QByteArray("/" + QByteArray("a/").repeated(20000)) << 0;
}

void TestWebServer::onlyThePageIsServed()
{
    QFETCH(const QByteArray, path);
    QTEST(page().get(path.toStdString()).status, "status");
    QCOMPARE(page().get("/").status, 200);
}

void TestWebServer::withoutASessionNothingIsTold()
{
    for (const char *path : {"/api/session", "/api/state", "/api/events"}) {
        const WebAnswer answer = page().get(path);
        QCOMPARE(answer.status, 401);
        QCOMPARE(answer.body, std::string(R"({"error":"signed_out"})"));
    }
    QCOMPARE(page().post("/api/services", oneService).status, 401);
    QCOMPARE(page().put("/api/karts/101", R"({"available":true})").status, 401);
    WebPage stranger = page();
    stranger.setCookie("garage_session=" + std::string(64, '0'));
    QCOMPARE(stranger.get("/api/state").status, 401);
    QCOMPARE(m_recorded.load(), 0);
}

void TestWebServer::aSessionReadsAndWrites()
{
    const WebAnswer answer = page().post("/api/session", R"({"code":"1234"})");
    QCOMPARE(json(answer.body.c_str()), json(R"({"person":{"id":7,"name":"Яшин Лев"}})"));
    const QString cookie = QString::fromStdString(answer.header("Set-Cookie"));
    QVERIFY2(cookie.contains("; HttpOnly; SameSite=Strict"), qPrintable(cookie));
    QVERIFY(!cookie.contains("Secure")); // the browser would not send it

    WebPage page = signedIn();
    QCOMPARE(page.get("/api/session").body, answer.body); // after a reload of the page
    m_feed->publish(stateOf("стук"));
    QVERIFY(page.get("/api/state").body.find("стук") != std::string::npos);
    QCOMPARE(json(page.post("/api/services", oneService).body.c_str()),
             json(R"({"results":[{"key":"abcd-1234","id":1,"state":"waiting"}]})"));
    QCOMPARE(page.put("/api/karts/101", R"({"available":true})").body,
             std::string(R"({"id":101,"available":true})"));
    QCOMPARE(page.put("/api/karts/102", R"({"available":true})").status, 404);
}

void TestWebServer::signingOutEndsTheSession()
{
    WebPage page = signedIn();
    const WebAnswer answer = page.ask("DELETE", "/api/session");
    QCOMPARE(answer.status, 204);
    QVERIFY(answer.header("Set-Cookie").find("Max-Age=0") != std::string::npos);
    QCOMPARE(page.get("/api/state").status, 401);
}

void TestWebServer::wrongCodesAreCountedAndThenLocked()
{
    for (int left = 4; left > 0; --left)
        QCOMPARE(json(page().post("/api/session", R"({"code":"1"})").body.c_str()),
                 QJsonObject({{"error", "wrong_code"}, {"remaining", left}}));
    const WebAnswer locked = page().post("/api/session", R"({"code":"1"})");
    QCOMPARE(locked.status, 429);
    QCOMPARE(locked.header("Retry-After"), std::string("60"));
    QCOMPARE(page().signIn("1234"), 429);
}

void TestWebServer::behindAProxyEachClientIsLockedByItself()
{
    start({{"127.0.0.1", 0}, {}, {}, {"127.0.0.1"}, "https://garage.example"});
    const auto signIn = [this](const char *client, const char *body) {
        return page().ask(
            "POST", "/api/session", body,
            {{"X-Forwarded-For", client}, {"Host", "garage.example"}, {"Origin", "https://garage.example"}});
    };
    for (int attempt = 0; attempt < 5; ++attempt)
        signIn("192.168.1.20", R"({"code":"1"})");
    QCOMPARE(signIn("192.168.1.20", R"({"code":"1234"})").status, 429);
    const WebAnswer other = signIn("1.2.3.4, 192.168.1.21", R"({"code":"1234"})");
    QCOMPARE(other.status, 200);
    QVERIFY(other.header("Set-Cookie").find("; Secure") != std::string::npos);
}

void TestWebServer::whoIsNoProxyCannotChangeItsAddress()
{
    for (int attempt = 0; attempt < 5; ++attempt)
        page().ask("POST", "/api/session", R"({"code":"1"})",
                   {{"X-Forwarded-For", "192.168.1." + std::to_string(attempt)}});
    QCOMPARE(page().signIn("1234"), 429);
}

void TestWebServer::requestsOfOtherPagesAreRefused_data()
{
    QTest::addColumn<QByteArray>("origin");
    QTest::addColumn<QByteArray>("site");
    QTest::newRow("other site") << QByteArray("https://evil.example") << QByteArray("cross-site");
    QTest::newRow("nothing said") << QByteArray() << QByteArray();
    QTest::newRow("no origin") << QByteArray("null") << QByteArray("cross-site");
}

void TestWebServer::requestsOfOtherPagesAreRefused()
{
    QFETCH(const QByteArray, origin);
    QFETCH(const QByteArray, site);
    WebPage page = signedIn();
    const WebPage::Headers headers {{"Origin", origin.toStdString()}, {"Sec-Fetch-Site", site.toStdString()}};
    QCOMPARE(page.ask("POST", "/api/services", oneService, headers).body,
             std::string(R"({"error":"origin"})"));
    QCOMPARE(page.ask("PUT", "/api/karts/101", R"({"available":true})", headers).status, 403);
    QCOMPARE(page.ask("DELETE", "/api/session", {}, headers).status, 403);
    QCOMPARE(page.ask("POST", "/api/session", R"({"code":"1"})", headers).status, 403);
    QCOMPARE(m_recorded.load(), 0);
    QCOMPARE(page.get("/api/state").status, 200);
}

void TestWebServer::aForeignHostNameIsRefused()
{
    const std::string name = "evil.example:" + std::to_string(port());
    QCOMPARE(
        page()
            .ask("POST", "/api/session", R"({"code":"1234"})", {{"Host", name}, {"Origin", "http://" + name}})
            .status,
        421);
    for (const std::string host : {"localhost", "127.0.0.1", "[::1]"})
        QCOMPARE(page().ask("GET", "/", {}, {{"Host", host + ':' + std::to_string(port())}}).status, 200);
}

void TestWebServer::theStateCarriesTheTimeOfItsSending()
{
    const auto timeOf = [](const WebAnswer &answer) {
        return QDateTime::fromString(json(answer.body.c_str()).value("now").toString(), Qt::ISODateWithMs);
    };
    WebPage page = signedIn();
    m_feed->publish(stateOf("стук"));
    const QDateTime first = timeOf(page.get("/api/state"));
    QVERIFY(qAbs(first.msecsTo(QDateTime::currentDateTimeUtc())) < 60'000);
    QTRY_VERIFY(timeOf(page.get("/api/state")) > first);
}

void TestWebServer::eventsComeWithEachChange()
{
    m_feed->publish(stateOf("первое"));
    const WebPage page = signedIn();
    WebConnection stream(port());
    stream.send(page.bytes("GET", "/api/events"));
    const WebAnswer head = stream.readAnswer();
    QCOMPARE(head.header("Content-Type"), std::string("text/event-stream"));
    QVERIFY(stream.readUntil("\n\n").find("первое") != std::string::npos);
    m_feed->publish(stateOf("первое")); // no change
    m_feed->publish(stateOf("второе"));
    const std::string second = stream.readUntil("второе");
    QVERIFY(second.find("первое") == std::string::npos);
    QVERIFY(second.find("event: state\ndata: {\"version\":3,") != std::string::npos);
    QVERIFY(stream.readUntil(": keep-alive\n\n").find("event:") == std::string::npos);
    QCOMPARE(m_sessions->clients().front().streams, 1);
}

void TestWebServer::eventsEndWithTheSession()
{
    WebPage page = signedIn();
    WebConnection stream(port());
    stream.send(page.bytes("GET", "/api/events"));
    stream.readUntil("event: state");
    page.ask("DELETE", "/api/session");
    QVERIFY(stream.readUntil("event: signed_out\ndata: {}\n\n").find("signed_out") != std::string::npos);
    QVERIFY(stream.isClosedWithin(5s));
    QTRY_VERIFY(m_sessions->clients().empty());
}

void TestWebServer::tooManyStreamsAreRefused()
{
    WebPage page = signedIn();
    std::vector<std::unique_ptr<WebConnection>> streams;
    for (int stream = 0; stream < m_limits.streams; ++stream) {
        streams.push_back(std::make_unique<WebConnection>(port()));
        streams.back()->send(page.bytes("GET", "/api/events"));
        QCOMPARE(streams.back()->readAnswer().status, 200);
    }
    QCOMPARE(page.get("/api/events").status, 429);
    streams.pop_back();
    QTRY_COMPARE(m_sessions->clients().front().streams, m_limits.streams - 1);
}

void TestWebServer::requestsThatAreNoneAreRefused_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status"); // 0: closed without an answer
    const auto add = [](const char *name, const QByteArray &request, int status) {
        QTest::newRow(name) << request << status;
    };
    const QByteArray host = "Host: 127.0.0.1\r\n";
    const QByteArray origin = host + "Sec-Fetch-Site: same-origin\r\n";
    add("nonsense", "hello\r\n\r\n", 400);
    add("zeros", QByteArray(300, '\0') + "\r\n\r\n", 400);
    add("another protocol", QByteArray("\x16\x03\x01\x02\x00\x01", 6).repeated(20) + "\r\n\r\n", 400);
    add("unknown method", "BREW / HTTP/1.1\r\n" + host + "\r\n", 400);
    add("no host", "GET / HTTP/1.1\r\n\r\n", 421);
    add("two hosts", "GET / HTTP/1.1\r\n" + host + host + "\r\n", 400);
    add("method that a path does not have", "POST / HTTP/1.1\r\n" + origin + "Content-Length: 0\r\n\r\n",
        405);
    add("reading by writing", "POST /api/state HTTP/1.1\r\n" + origin + "Content-Length: 0\r\n\r\n", 405);
    add("a body without a length", "POST /api/session HTTP/1.1\r\n" + origin + "\r\n", 411);
    add("pieces", "POST /api/session HTTP/1.1\r\n" + origin + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        411);
    add("length and pieces",
        "POST /api/session HTTP/1.1\r\n" + origin
            + "Content-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        411);
    add("two lengths",
        "POST /api/session HTTP/1.1\r\n" + origin + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n{}", 400);
    add("length that is none", "POST /api/session HTTP/1.1\r\n" + origin + "Content-Length: -1\r\n\r\n", 400);
    add("huge length", "POST /api/session HTTP/1.1\r\n" + origin + "Content-Length: 99999999999\r\n\r\n",
        413);
    add("length beyond 64 bits",
        "POST /api/session HTTP/1.1\r\n" + origin + "Content-Length: 99999999999999999999999\r\n\r\n", 413);
    add("body that grows",
        "POST /api/session HTTP/1.1\r\n" + origin + "Content-Encoding: gzip\r\nContent-Length: 2\r\n\r\n{}",
        400);
    add("body of a reading request", "GET / HTTP/1.1\r\n" + host + "Content-Length: 5\r\n\r\nhello", 400);
    add("headers without an end", "GET / HTTP/1.1\r\n" + QByteArray("X: y\r\n").repeated(10000), 400);
    add("header without an end", "GET / HTTP/1.1\r\nX: " + QByteArray(100000, 'y'), 400);
    add("many ranges",
        "GET / HTTP/1.1\r\n" + host + "Range: bytes=" + QByteArray("0-,").repeated(1500) + "0-\r\n\r\n", 200);
    add("range that is none",
        "GET / HTTP/1.1\r\n" + host + "Range: bytes=" + QByteArray(7000, '-') + "\r\n\r\n", 416);
    add("form with files",
        "POST /api/session HTTP/1.1\r\n" + origin
            + "Content-Type: multipart/form-data; boundary=b\r\nContent-Length: 7\r\n\r\n--b--\r\n",
        400);
    add("expectation", "GET / HTTP/1.1\r\n" + host + "Expect: 100-continue\r\n\r\n", 200);
}

void TestWebServer::requestsThatAreNoneAreRefused()
{
    QFETCH(const QByteArray, request);
    WebConnection connection(port());
    connection.send(request.toStdString());
    QTEST(connection.readAnswer(5s).status, "status");
    QCOMPARE(page().get("/").status, 200);
}

void TestWebServer::aConnectionServesManyRequestsInOrder()
{
    WebPage page = signedIn();
    WebConnection connection(port());
    connection.send(page.bytes("GET", "/") + page.bytes("POST", "/api/services", oneService)
                    + page.bytes("GET", "/page.js"));
    QCOMPARE(connection.readAnswer().body, std::string("<!doctype html>"));
    QVERIFY(connection.readAnswer().body.find("abcd-1234") != std::string::npos);
    QCOMPARE(connection.readAnswer().body, std::string("1;"));
    // What follows a refused request may be its body.
    connection.send(page.bytes("POST", "/api/services", page.bytes("GET", "/"), {{"Origin", "http://x"}}));
    QCOMPARE(connection.readAnswer().status, 403);
    QVERIFY(connection.isClosedWithin(5s));
}

void TestWebServer::aSlowSenderIsCutOff_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("request line") << QByteArray("GET /");
    QTest::newRow("headers") << QByteArray("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nX: ");
    QTest::newRow("body") << QByteArray(
        "POST /api/session HTTP/1.1\r\nHost: 127.0.0.1\r\nSec-Fetch-Site: same-origin\r\n"
        "Content-Length: 5000\r\n\r\n{");
}

void TestWebServer::aSlowSenderIsCutOff()
{
    QFETCH(const QByteArray, begin);
    WebConnection connection(port());
    connection.send(begin.toStdString());
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 10000 && !connection.isClosedWithin(50ms))
        connection.send("a"); // always in time for a server that waits for the next byte
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
}

void TestWebServer::aReaderThatDoesNotReadIsCutOff()
{
    m_feed->publish(stateOf(std::string(8 << 20, 'a')));
    const WebPage page = signedIn();
    WebConnection connection(port());
    connection.send(page.bytes("GET", "/api/events"));
    QTRY_COMPARE(m_sessions->clients().size(), std::size_t(1));
    QTRY_VERIFY(m_sessions->clients().empty());
}

void TestWebServer::connectionsAreLimitedAndFreedAgain()
{
    std::vector<std::unique_ptr<WebConnection>> idle;
    for (int connection = 0; connection < m_limits.connections; ++connection) {
        idle.push_back(std::make_unique<WebConnection>(port()));
        idle.back()->send(page().bytes("GET", "/"));
        QCOMPARE(idle.back()->readAnswer().status, 200);
    }
    QCOMPARE(page().get("/").status, 0);
    QTRY_COMPARE(page().get("/").status, 200); // the idle ones are closed after a while
}

void TestWebServer::requestsOfASessionAreLimited()
{
    WebPage page = signedIn();
    WebAnswer answer;
    for (int request = 0; request < 3 * m_limits.requestBurst && answer.status != 429; ++request)
        answer = page.get("/api/state");
    QCOMPARE(answer.status, 429);
    QCOMPARE(answer.body, std::string(R"({"error":"too_many"})"));
    QVERIFY(!answer.header("Retry-After").empty());
    QCOMPARE(signedIn().get("/api/state").status, 200);
}

void TestWebServer::whatIsNotAnsweredInTimeIsBusy()
{
    m_isBusy = true;
    const WebAnswer answer = signedIn().post("/api/services", oneService);
    QCOMPARE(answer.status, 503);
    QCOMPARE(answer.body, std::string(R"({"error":"busy"})"));
}

void TestWebServer::stoppingEndsOpenStreamsAtOnce()
{
    const WebPage page = signedIn();
    WebConnection stream(port());
    stream.send(page.bytes("GET", "/api/events"));
    stream.readUntil("event: state");
    WebConnection idle(port());
    WebConnection half(port());
    half.send("GET / HT");
    QElapsedTimer timer;
    timer.start();
    m_server->stop();
    QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(stream.isClosedWithin(1s));
}

void TestWebServer::aTakenPortIsReported()
{
    WebServer second({{"127.0.0.1", port()}, {}, {}, {}, {}}, m_limits, {}, *m_feed, *m_sessions, {});
    QVERIFY(!second.start().empty());
    WebServer encrypted({{"127.0.0.1", 0}, "/nowhere.pem", "/nowhere.key", {}, {}}, m_limits, {}, *m_feed,
                        *m_sessions, {});
    QVERIFY(!encrypted.start().empty());
}

void TestWebServer::aSecondAddressIsNotListenedAt()
{
    start({{"127.0.0.2", 0}, {}, {}, {}, {}});
    QCOMPARE(page().get("/").status, 0); // asks 127.0.0.1
}

GARAGE_TEST(TestWebServer)
#include "tst_webserver.moc"
