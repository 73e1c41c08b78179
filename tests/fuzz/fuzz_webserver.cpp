// Feeds the web server of the demo host with the fuzzer's bytes: as they are, or as a part of a request that
// would else be right. One server runs all inputs. Every input gets an answer of the protocol, or the end of
// the connection; what reaches the host is work that a page may send.

#include "host/remote/web/webfeed.h"
#include "host/remote/web/webrequests.h"
#include "host/remote/web/webserver.h"
#include "tests/host/webclient.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

extern "C" {
int LLVMFuzzerInitialize(int *argc, char ***argv);
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
}

using namespace std::chrono_literals;

namespace {

void expect(bool condition, const char *text)
{
    if (condition)
        return;
    std::fprintf(stderr, "Not so: %s\n", text);
    std::abort();
}

WebLimits fuzzingLimits()
{
    WebLimits limits;
    limits.keepAliveTime = 5ms;
    limits.wrongCodes = std::numeric_limits<int>::max();
    limits.requestBurst = std::numeric_limits<int>::max();
    limits.unsignedBurst = std::numeric_limits<int>::max();
    return limits;
}

/// What RemoteSide may rely on.
void check(const WebRequests::Service &service)
{
    expect(service.key.empty() || WebRequests::isKey(service.key), "a key is empty or of its letters");
    if (!service.isValid)
        return;
    expect(!service.key.empty(), "valid work has a key");
    expect(service.carId >= 0 && service.opId >= -1 && service.localId >= -1, "ids are in their range");
    expect(service.doneTime.size() == 24 && WebRequests::normalizedTime(service.doneTime) == service.doneTime,
           "a time is normalized");
    expect(service.comment.find('\0') == std::string::npos, "a comment has no zero");
    expect(service.comment.size() <= 4 * WebRequests::longestComment, "a comment is not too long");
}

class FuzzedServer final
{
public:
    FuzzedServer() : m_feed("epoch"), m_sessions(fuzzingLimits())
    {
        m_sessions.setPeople({{7, "Лев", "1234"}});
        WebServer::Actions actions;
        actions.recordServices = [](const WebPerson &, const std::vector<WebRequests::Service> &services)
            -> std::optional<std::vector<WebServer::ServiceResult>> {
            std::vector<WebServer::ServiceResult> results;
            for (const WebRequests::Service &service : services) {
                check(service);
                results.push_back({service.key, 1, "waiting", service.isValid ? "" : "invalid"});
            }
            return results;
        };
        actions.setAvailable = [](int carId, bool) { return std::make_optional(carId < 100); };
        WebServer::Files files {{"/index.html", {"text/html", "<!doctype html>"}}};
        WebAccess access {{"127.0.0.1", 0}, {}, {}, {"127.0.0.1"}, "https://garage.example"};
        m_server = std::make_unique<WebServer>(access, fuzzingLimits(), files, m_feed, m_sessions, actions);
        expect(m_server->start().empty(), "the server starts");
        m_page = std::make_unique<WebPage>(m_server->endpoint().port);
        expect(m_page->signIn("1234") == 200, "the code opens a session");
    }

    void run(const std::string &bytes)
    {
        WebConnection connection(m_server->endpoint().port);
        connection.send(bytes);
        connection.finish();
        const std::string answer = connection.readUntil("text/event-stream", 5s);
        expect(answer.empty() || answer.compare(0, 9, "HTTP/1.1 ") == 0, "an answer is one of the protocol");
        expect(answer.compare(0, 12, "HTTP/1.1 500") != 0, "no handler fails");
        const bool isStream = answer.find("text/event-stream") != std::string::npos;
        expect(isStream || connection.isClosedWithin(5s), "the connection ends");
    }

    std::string requestOf(int kind, const std::string &text) const
    {
        switch (kind) {
        case 0:
            return m_page->bytes("POST", "/api/services", text);
        case 1:
            return m_page->bytes("POST", "/api/session", text);
        case 2:
            return m_page->bytes("PUT", "/api/karts/1", text);
        case 3:
            return m_page->bytes("GET", text);
        case 4:
            return m_page->bytes("GET", "/api/state", {}, {{"Cookie", text}, {"X-Forwarded-For", text}});
        case 5: // headers, and whatever follows them
            return "POST /api/services HTTP/1.1\r\nHost: 127.0.0.1\r\nCookie: " + m_page->cookie() + "\r\n"
                + text;
        case 6:
            return m_page->bytes("GET", "/") + text;
        default:
            return text;
        }
    }

private:
    WebFeed m_feed;
    WebSessions m_sessions;
    std::unique_ptr<WebServer> m_server;
    std::unique_ptr<WebPage> m_page;
};

FuzzedServer *server = nullptr;

} // namespace

int LLVMFuzzerInitialize(int *, char ***)
{
    // Never deleted: the fuzzer ends the process itself.
    server = new FuzzedServer;
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    server->run(server->requestOf(data[0] % 8, text));
    return 0;
}
