#include "host/remote/web/webaddress.h"
#include "host/remote/web/webrequests.h"
#include "host/remote/web/webstate.h"
#include "support/garagetest.h"
#include "support/json.h"

namespace {

/// "key|car|op|local|time|comment" of each piece of work; "key|invalid" of others.
QStringList textsOf(const std::string &body)
{
    const auto services = WebRequests::services(body);
    if (!services)
        return {"refused"};
    QStringList texts;
    for (const WebRequests::Service &service : *services) {
        const QString key = QString::fromStdString(service.key);
        texts.append(service.isValid ? QString("%1|%2|%3|%4|%5|%6")
                                           .arg(key)
                                           .arg(service.carId)
                                           .arg(service.opId)
                                           .arg(service.localId)
                                           .arg(QString::fromStdString(service.doneTime),
                                                QString::fromStdString(service.comment))
                                     : key + "|invalid");
    }
    return texts;
}

/// One piece of work with a key replaced or, if the value is empty, left out.
std::string bodyWith(const char *key, const QByteArray &value)
{
    QMap<QByteArray, QByteArray> fields {{"key", "\"abcd-1234\""}, {"car_id", "101"},
                                         {"op_id", "2"},           {"local_id", "-1"},
                                         {"comment", "\"да\""},    {"done_time", "\"2026-11-22T08:15:30Z\""}};
    fields[key] = value;
    QByteArrayList pairs;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (!field.value().isEmpty())
            pairs.append('"' + field.key() + "\":" + field.value());
    }
    return "{\"services\":[{" + pairs.join(',').toStdString() + "}]}";
}

QString timeOf(const char *text)
{
    return QString::fromStdString(WebRequests::normalizedTime(text).value_or("none"));
}

} // namespace

/// What the server takes from the requests of pages, and what it leaves.
class TestWebRequests final : public GarageTest
{
    Q_OBJECT

private slots:
    void workIsRead();
    void oneBadPieceSparesTheOthers_data();
    void oneBadPieceSparesTheOthers();
    void whatIsNoListOfWorkIsRefused_data();
    void whatIsNoListOfWorkIsRefused();
    void codesAndAvailabilityAreRead();
    void timesAreMomentsThatExist();
    void idsArePlainNumbers();
    void aCookieIsFoundAmongOthers();
    void onlyTheOwnPageMayWrite_data();
    void onlyTheOwnPageMayWrite();
    void addressesToListenAtAreNumbers();
    void onlyATrustedProxyNamesTheClient();
    void theStateIsOneLineWhateverTheNamesHold();
};

void TestWebRequests::workIsRead()
{
    const QStringList expected {"abcd-1234|101|2|-1|2026-11-22T08:15:30.000Z|да"};
    QCOMPARE(textsOf(bodyWith("unknown", "[1]")), expected);
}

void TestWebRequests::oneBadPieceSparesTheOthers_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    const auto add = [](const char *name, const char *key, const QByteArray &value) {
        QTest::newRow(name) << QByteArray(key) << value;
    };
    add("no kart", "car_id", {});
    add("kart as a text", "car_id", "\"101\"");
    add("half a kart", "car_id", "101.5");
    add("negative kart", "car_id", "-1");
    add("kart beyond 32 bits", "car_id", "4294967397");
    add("kart beyond 64 bits", "car_id", "18446744073709551616");
    add("operation beyond -1", "op_id", "-2");
    add("no local record", "local_id", {});
    add("time of another zone", "done_time", "\"2026-11-22T08:15:30+03:00\"");
    add("no comment", "comment", {});
    add("comment that is none", "comment", "null");
    add("comment of 1001 characters", "comment", '"' + QByteArray("ж").repeated(1001) + '"');
    add("comment with a NUL", "comment", "\"a\\u0000b\"");
    add("comment with an escape", "comment", "\"\\u001b[2J\"");
}

void TestWebRequests::oneBadPieceSparesTheOthers()
{
    QFETCH(const QByteArray, key);
    QFETCH(const QByteArray, value);
    std::string body = bodyWith(key.constData(), value);
    QCOMPARE(textsOf(body), QStringList("abcd-1234|invalid"));
    body.insert(body.find('[') + 1,
                R"({"key":"0123456789","car_id":1,"op_id":-1,"local_id":5,)"
                R"("done_time":"2026-11-22T08:15:30.5Z","comment":""},)");
    QCOMPARE(textsOf(body).first(), QString("0123456789|1|-1|5|2026-11-22T08:15:30.500Z|"));
}

void TestWebRequests::whatIsNoListOfWorkIsRefused_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("services");
    QTest::newRow("a list") << QByteArray("[]");
    QTest::newRow("no services") << QByteArray("{}");
    QTest::newRow("services that are no list") << QByteArray(R"({"services":{}})");
    QTest::newRow("no work") << QByteArray(R"({"services":[]})");
    QTest::newRow("cut off") << QByteArray(R"({"services":[{"key":)");
    QTest::newRow("more behind") << QByteArray(R"({"services":[1]} {})");
    QTest::newRow("101 pieces") << QByteArray("{\"services\":[" + QByteArray("0,").repeated(100) + "0]}");
    QTest::newRow("bytes that are no text") << QByteArray("{\"services\":[{\"key\":\"\xff\xfe\"}]}");
    QTest::newRow("deep") << QByteArray("{\"services\":" + QByteArray("[").repeated(200000)
                                        + QByteArray("]").repeated(200000) + '}');
    QTest::newRow("deep objects") << QByteArray(QByteArray("{\"services\":").repeated(50000) + '0'
                                                + QByteArray("}").repeated(50000));
}

void TestWebRequests::whatIsNoListOfWorkIsRefused()
{
    QFETCH(const QByteArray, body);
    QCOMPARE(textsOf(body.toStdString()), QStringList("refused"));
}

void TestWebRequests::codesAndAvailabilityAreRead()
{
    QCOMPARE(WebRequests::code(R"({"code":"0042"})").value_or("none"), std::string("0042"));
    for (const char *body : {R"({"code":42})", R"({"code":""})", R"(["0042"])", R"({})"})
        QVERIFY2(!WebRequests::code(body), body);
    QVERIFY(!WebRequests::code("{\"code\":\"" + std::string(65, '1') + "\"}"));
    QCOMPARE(WebRequests::availability(R"({"available":true})").value_or(false), true);
    QCOMPARE(WebRequests::availability(R"({"available":false})").value_or(true), false);
    for (const char *body : {R"({"available":1})", R"({"available":"true"})", R"({})", "true"})
        QVERIFY2(!WebRequests::availability(body), body);
}

void TestWebRequests::timesAreMomentsThatExist()
{
    QCOMPARE(timeOf("2024-02-29T23:59:59Z"), QString("2024-02-29T23:59:59.000Z"));
    QCOMPARE(timeOf("2026-11-22T08:15:30.123456Z"), QString("2026-11-22T08:15:30.123Z"));
    for (const char *text :
         {"", "Z", "2026-11-22", "2026-11-22T08:15Z", "2026-11-22 08:15:30Z", "2026-11-22T08:15:30",
          "2023-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z", "2026-11-31T00:00:00Z",
          "2026-11-22T24:00:00Z", "2026-11-22T08:60:00Z", "1999-11-22T08:15:30Z", "2026-11-22T08:15:30,5Z",
          "2026-11-22T08:15:30.1x2Z", "2026-11-22T08:15:30.123456789012Z"})
        QCOMPARE(timeOf(text), QString("none"));
}

void TestWebRequests::idsArePlainNumbers()
{
    QCOMPARE(WebRequests::idAfter("/api/karts/", "/api/karts/17").value_or(-1), 17);
    for (const char *path : {"/api/karts/", "/api/karts/-1", "/api/karts/1/", "/api/karts/1x",
                             "/api/karts/+1", "/api/karts/2147483648", "/api/kart/17", ""})
        QVERIFY2(!WebRequests::idAfter("/api/karts/", path), path);
}

void TestWebRequests::aCookieIsFoundAmongOthers()
{
    QCOMPARE(WebRequests::cookie("a=1; garage_session=x=y ; b=2", "garage_session"), std::string("x=y"));
    QCOMPARE(WebRequests::cookie("xgarage_session=1;garage_session=2", "garage_session"), std::string("2"));
    for (const char *header : {"", ";", "=", "garage_session", "a=garage_session=1"})
        QCOMPARE(WebRequests::cookie(header, "garage_session"), std::string());
}

void TestWebRequests::onlyTheOwnPageMayWrite_data()
{
    QTest::addColumn<QByteArray>("origin");
    QTest::addColumn<QByteArray>("site");
    QTest::addColumn<bool>("mayWrite");
    const auto add = [](const char *name, const char *origin, const char *site, bool mayWrite) {
        QTest::newRow(name) << QByteArray(origin) << QByteArray(site) << mayWrite;
    };
    add("own page", "http://10.0.0.5:8080", "same-origin", true);
    add("own page behind a proxy", "https://10.0.0.5:8080", "same-origin", true);
    add("own page of an old browser", "http://10.0.0.5:8080", "", true);
    add("own page without an origin", "", "same-origin", true);
    add("neither", "", "", false);
    add("other page", "http://evil.example", "cross-site", false);
    add("other page of an old browser", "http://evil.example", "", false);
    add("other port", "http://10.0.0.5:8081", "same-site", false);
    add("page without an origin", "null", "cross-site", false);
    add("typed address", "", "none", false);
    add("origin that begins alike", "http://10.0.0.5:8080.evil.example", "", false);
    add("own origin, other site", "http://10.0.0.5:8080", "cross-site", false);
}

void TestWebRequests::onlyTheOwnPageMayWrite()
{
    QFETCH(const QByteArray, origin);
    QFETCH(const QByteArray, site);
    QTEST(WebRequests::isOwnPage({"10.0.0.5:8080", origin.toStdString(), site.toStdString()}), "mayWrite");
}

void TestWebRequests::addressesToListenAtAreNumbers()
{
    QCOMPARE(WebAddress::parse("192.168.1.5:8080")->text(), std::string("192.168.1.5:8080"));
    QCOMPARE(WebAddress::parse("[fd00::1]:0")->text(), std::string("[fd00::1]:0"));
    for (const char *text : {"", "8080", ":8080", "localhost:8080", "192.168.1.5",
                             "192.168.1.5:", "192.168.1.5:65536", "192.168.1.5:-1", "192.168.1.5:80x",
                             "fd00::1:8080", "[192.168.1.5]:80", "[fd00::1]", "192.168.1.500:80"})
        QVERIFY2(!WebAddress::parse(text), text);
    QCOMPARE(WebAddress::authority("https://garage.example/x"), std::string("garage.example"));
    QCOMPARE(WebAddress::authority("http://garage.example:81"), std::string("garage.example:81"));
    QCOMPARE(WebAddress::authority("ftp://garage.example"), std::string());
}

void TestWebRequests::onlyATrustedProxyNamesTheClient()
{
    const std::vector<std::string> proxies {"127.0.0.1", "::1", "10.0.0.2"};
    const auto client = [&](const char *peer, const char *forwardedFor) {
        return QString::fromStdString(WebAddress::client(peer, forwardedFor, proxies));
    };
    QCOMPARE(client("127.0.0.1", "192.168.1.20"), QString("192.168.1.20"));
    QCOMPARE(client("::ffff:127.0.0.1", "192.168.1.20"), QString("192.168.1.20"));
    QCOMPARE(client("127.0.0.1", "1.2.3.4, 192.168.1.20, 10.0.0.2"), QString("192.168.1.20"));
    QCOMPARE(client("192.168.1.9", "1.2.3.4"), QString("192.168.1.9"));
    QCOMPARE(client("127.0.0.1", ""), QString("127.0.0.1"));
    QCOMPARE(client("127.0.0.1", "unknown"), QString("127.0.0.1"));
    QCOMPARE(client("127.0.0.1", "1.2.3.4, _hidden"), QString("127.0.0.1"));
    QCOMPARE(client("::1", "2001:DB8::1"), QString("2001:db8::1"));
}

void TestWebRequests::theStateIsOneLineWhateverTheNamesHold()
{
    WebState state;
    WebState::Due due;
    due.op = "</script><b>\"\n\r\u2028";
    due.comment = "\xff";
    state.due.push_back(due);
    const std::string text = state.toJson("e", 3);
    QCOMPARE(text.find('\n'), std::string::npos);
    QCOMPARE(text.find('\r'), std::string::npos);
    const QJsonObject read = json(text.c_str());
    QCOMPARE(read.value("version").toInt(), 3);
    const QJsonObject line = read.value("due").toArray().first().toObject();
    QCOMPARE(line.value("op").toString(), QString("</script><b>\"\n\r\u2028"));
    QCOMPARE(line.value("comment").toString(), QString(QChar(0xfffd)));
    QVERIFY(line.value("since").isNull());
    QVERIFY(line.value("limits").isNull());
}

GARAGE_TEST(TestWebRequests)
#include "tst_webrequests.moc"
