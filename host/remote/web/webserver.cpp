#include "host/remote/web/webserver.h"

#include "host/remote/web/webchannel.h"
#include "host/remote/web/webfeed.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <deque>
#include <mutex>
#include <set>
#include <thread>

namespace {

using Json = nlohmann::ordered_json;
using Time = std::chrono::steady_clock::time_point;
using httplib::Request;
using httplib::Response;

const std::string kartPath = "/api/karts/";
constexpr std::size_t longestPath = 100;
constexpr auto farewellTime = std::chrono::milliseconds(500);

Time after(std::chrono::milliseconds time)
{
    return std::chrono::steady_clock::now() + time;
}

/// An answer other than success.
struct Refusal
{
    int status = 0;
    const char *error = "";
    int retryAfter = 0; // seconds; 0: not said
};

constexpr Refusal invalid {400, "invalid"};
constexpr Refusal signedOut {401, "signed_out"};
constexpr Refusal foreignPage {403, "origin"};
constexpr Refusal notFound {404, "not_found"};
constexpr Refusal wrongMethod {405, "method"};
constexpr Refusal lengthMissing {411, "length"};
constexpr Refusal tooLarge {413, "too_large"};
constexpr Refusal tooMany {429, "too_many", 1};
constexpr Refusal internalError {500, "internal"};
constexpr Refusal busy {503, "busy", 1};

void answer(Response &response, int status, const Json &json)
{
    response.status = status;
    response.set_content(json.dump(-1, ' ', false, Json::error_handler_t::replace),
                         "application/json; charset=utf-8");
}

void refuse(Response &response, const Refusal &refusal)
{
    if (refusal.retryAfter > 0)
        response.set_header("Retry-After", std::to_string(refusal.retryAfter));
    answer(response, refusal.status, {{"error", refusal.error}});
}

/// A connection as the library reads and writes it.
class Connection final : public httplib::Stream
{
public:
    Connection(int socket, const WebTls *tls, const WebLimits &limits)
        : m_channel(socket, tls), m_limits(limits), m_peer(m_channel.peerAddress())
    {
    }

    const std::string &peer() const { return m_peer; }
    WebChannel &channel() { return m_channel; }
    bool open() { return m_channel.open(after(m_limits.requestTime)); }

    bool awaitRequest() { return m_begin != m_end || m_channel.awaitInput(after(m_limits.idleTime)); }

    void beginRequest()
    {
        m_budget = m_limits.headBytes;
        m_readDeadline = after(m_limits.requestTime);
        m_writeDeadline.reset();
        m_refusal.reset();
    }

    /// Between the head of a request and its body. What the library would do with these headers costs more
    /// than it gives: it compresses slowly, expands small bodies and short lists of ranges without a limit.
    void examine(Request &request)
    {
        request.headers.erase("Accept-Encoding");
        request.headers.erase("Range");
        request.ranges.clear();
        request.headers.erase("Expect");
        m_budget = m_limits.bodyBytes;
        m_refusal = refusalOf(request);
    }

    /// Why the request is not handled at all.
    const std::optional<Refusal> &refusal() const { return m_refusal; }
    /// The connection lasts as long as the answer, which may be read slowly but not too slowly.
    void beginStream() { m_isStream = true; }
    /// The rest of the request was not read, so no other can follow.
    void closeAfterAnswer() { m_mustClose = true; }
    bool mustClose() const { return m_mustClose || m_isStream; }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_hasFailed; }

    ssize_t read(char *data, std::size_t size) override
    {
        if (m_begin == m_end) {
            const long count = m_channel.read(m_buffer.data(), m_buffer.size(), m_readDeadline);
            if (count <= 0)
                return count;
            m_begin = 0;
            m_end = std::size_t(count);
        }
        const std::size_t count = std::min({size, m_end - m_begin, m_budget});
        if (count == 0)
            return -1;
        std::memcpy(data, m_buffer.data() + m_begin, count);
        m_begin += count;
        m_budget -= count;
        return ssize_t(count);
    }

    ssize_t write(const char *data, std::size_t size) override
    {
        if (!m_writeDeadline || m_isStream)
            m_writeDeadline = after(m_limits.requestTime);
        m_hasFailed = m_hasFailed || !m_channel.write(data, size, *m_writeDeadline);
        return m_hasFailed ? -1 : ssize_t(size);
    }

    void get_remote_ip_and_port(std::string &address, int &port) const override
    {
        address = m_peer;
        port = 0;
    }
    void get_local_ip_and_port(std::string &address, int &port) const override
    {
        address.clear();
        port = 0;
    }
    socket_t socket() const override { return m_channel.socket(); }

private:
    std::optional<Refusal> refusalOf(const Request &request) const
    {
        // A length that is said twice, or in two ways, may mean another one to a proxy.
        if (request.has_header("Transfer-Encoding"))
            return lengthMissing;
        if (request.has_header("Content-Encoding") || request.get_header_value_count("Content-Length") > 1
            || request.get_header_value_count("Host") > 1 || request.path.find('\0') != std::string::npos)
            return invalid;
        const std::string text = request.get_header_value("Content-Length");
        const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
        if (!isNumber)
            return invalid;
        const std::size_t digits = text.size();
        const std::size_t length = digits > 0 && digits < 19 ? std::stoull(text) : digits;
        if (digits >= 19 || length > m_limits.bodyBytes)
            return tooLarge;
        const bool hasBody = request.method == "POST" || request.method == "PUT";
        if (hasBody && digits == 0)
            return lengthMissing;
        if (!hasBody && length > 0)
            return invalid;
        if (request.path.size() > longestPath)
            return notFound;
        return std::nullopt;
    }

    WebChannel m_channel;
    const WebLimits &m_limits;
    const std::string m_peer;
    std::array<char, 8192> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_budget = 0; // bytes that the request may still have
    Time m_readDeadline;
    std::optional<Time> m_writeDeadline;
    std::optional<Refusal> m_refusal;
    bool m_isStream = false;
    bool m_mustClose = false;
    bool m_hasFailed = false;
};

/// The connection that the current thread handles: the library does not hand it to its handlers.
thread_local Connection *currentConnection = nullptr;
/// All threads are taken; the connection is closed at once.
thread_local bool isOverloaded = false;

/// A thread for each connection, up to a limit; threads are kept for later ones.
class Threads final : public httplib::TaskQueue
{
public:
    explicit Threads(int most) : m_most(std::size_t(most)) { }

    void enqueue(std::function<void()> task) override
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_idle <= m_tasks.size() && m_threads.size() >= m_most) {
            lock.unlock();
            isOverloaded = true;
            task();
            isOverloaded = false;
            return;
        }
        m_tasks.push_back(std::move(task));
        if (m_idle < m_tasks.size())
            m_threads.emplace_back([this] { work(); });
        else
            m_wake.notify_one();
    }

    void shutdown() override
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isOver = true;
        }
        m_wake.notify_all();
        for (std::thread &thread : m_threads)
            thread.join();
    }

private:
    void work()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            ++m_idle;
            m_wake.wait(lock, [this] { return m_isOver || !m_tasks.empty(); });
            --m_idle;
            if (m_tasks.empty())
                return;
            const std::function<void()> task = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            task();
            lock.lock();
        }
    }

    const std::size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    std::vector<std::thread> m_threads;
    std::size_t m_idle = 0;
    bool m_isOver = false;
};

/// The library's server with connections that end: its own wait for each byte anew, so that a slow sender
/// would keep a thread for ever.
class PatientServer : public httplib::Server
{
public:
    explicit PatientServer(const WebLimits &limits) : m_limits(limits)
    {
        new_task_queue = [this] { return new Threads(m_limits.connections); };
    }

    void setTls(std::unique_ptr<WebTls> tls) { m_tls = std::move(tls); }
    void setTrustedProxies(const std::vector<std::string> &proxies) { m_proxies = proxies; }

    /// Listens at that address and no other. Returns why it cannot, or an empty text.
    std::string bind(WebAddress::Endpoint &endpoint);
    /// Ends all connections, also later ones.
    void abortAll();

private:
    bool process_and_close_socket(socket_t socket) override;
    bool enter(Connection &connection);
    void leave(Connection &connection);
    void handleRequests(Connection &connection);

    const WebLimits &m_limits;
    std::unique_ptr<WebTls> m_tls;
    std::vector<std::string> m_proxies;
    std::mutex m_mutex;
    std::set<Connection *> m_connections;
    std::map<std::string, int> m_connectionsOf; // by network
    bool m_isOver = false;
};

std::string PatientServer::bind(WebAddress::Endpoint &endpoint)
{
    const bool isSix = endpoint.address.find(':') != std::string::npos;
    sockaddr_storage address {};
    socklen_t size = isSix ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
    auto *six = reinterpret_cast<sockaddr_in6 *>(&address);
    auto *four = reinterpret_cast<sockaddr_in *>(&address);
    address.ss_family = isSix ? AF_INET6 : AF_INET;
    (isSix ? six->sin6_port : four->sin_port) = htons(endpoint.port);
    if (isSix)
        inet_pton(AF_INET6, endpoint.address.c_str(), &six->sin6_addr);
    else
        inet_pton(AF_INET, endpoint.address.c_str(), &four->sin_addr);

    const int listening = ::socket(address.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(listening, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (isSix)
        setsockopt(listening, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
    const bool isListening = listening >= 0
        && ::bind(listening, reinterpret_cast<sockaddr *>(&address), size) == 0
        && ::listen(listening, m_limits.connections) == 0
        && ::getsockname(listening, reinterpret_cast<sockaddr *>(&address), &size) == 0;
    if (!isListening) {
        std::string error = std::strerror(errno);
        if (listening >= 0)
            ::close(listening);
        return error;
    }
    endpoint.port = ntohs(isSix ? six->sin6_port : four->sin_port);
    svr_sock_ = listening;
    return {};
}

void PatientServer::abortAll()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isOver = true;
    for (Connection *connection : m_connections)
        connection->channel().abort();
}

bool PatientServer::process_and_close_socket(socket_t socket)
{
    Connection connection(socket, m_tls.get(), m_limits);
    if (isOverloaded || !enter(connection))
        return false;
    currentConnection = &connection;
    handleRequests(connection);
    currentConnection = nullptr;
    leave(connection);
    return true;
}

void PatientServer::handleRequests(Connection &connection)
{
    if (!connection.open())
        return;
    const auto examine = [&](Request &request) { connection.examine(request); };
    for (int left = m_limits.requestsPerConnection; left > 0 && connection.awaitRequest(); --left) {
        connection.beginRequest();
        bool isClosed = left == 1;
        if (!process_request(connection, isClosed, isClosed, examine) || isClosed || connection.mustClose())
            break;
    }
    connection.channel().finish(after(farewellTime));
}

bool PatientServer::enter(Connection &connection)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isProxy = WebAddress::isOneOf(connection.peer(), m_proxies);
    int &count = m_connectionsOf[WebAddress::network(connection.peer())];
    if (m_isOver || (count >= m_limits.connectionsPerAddress && !isProxy))
        return false;
    ++count;
    m_connections.insert(&connection);
    return true;
}

void PatientServer::leave(Connection &connection)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_connections.erase(&connection);
    const auto count = m_connectionsOf.find(WebAddress::network(connection.peer()));
    if (--count->second == 0)
        m_connectionsOf.erase(count);
}

} // namespace

class WebServer::Private final
{
public:
    Private(const WebAccess &access, const WebLimits &limits, Files files, WebFeed &feed,
            WebSessions &sessions, Actions actions)
        : m_access(access)
        , m_limits(limits)
        , m_files(std::move(files))
        , m_feed(feed)
        , m_sessions(sessions)
        , m_actions(std::move(actions))
        , m_server(m_limits)
    {
        setUp();
    }

    std::string start();
    void stop();
    const WebAddress::Endpoint &endpoint() const { return m_access.endpoint; }

private:
    using Handling = httplib::Server::HandlerResponse;

    void setUp();
    Handling route(const Request &request, Response &response);
    /// Nothing if the request may be handled further.
    std::optional<Refusal> examine(const Request &request);
    bool isKnownHost(const std::string &host) const;
    std::string clientOf(const Request &request) const;
    std::string tokenOf(const Request &request) const;
    std::string cookieFor(const std::string &token, bool isEnd) const;

    void sendFile(const Request &request, Response &response) const;
    void signIn(const Request &request, Response &response);
    void signOut(const Request &request, Response &response);
    void sendPerson(const Request &request, Response &response);
    void sendState(Response &response);
    void sendEvents(const Request &request, Response &response);
    void recordServices(const Request &request, Response &response);
    void setAvailability(const Request &request, Response &response);

    WebAccess m_access;
    const WebLimits m_limits;
    const Files m_files;
    WebFeed &m_feed;
    WebSessions &m_sessions;
    const Actions m_actions;
    PatientServer m_server;
    std::thread m_listener;
};

namespace {

/// The methods that a path answers, or null.
const std::vector<std::string> *methodsOf(const std::string &path, bool isFile)
{
    static const std::vector<std::string> reading {"GET", "HEAD"};
    static const std::map<std::string, std::vector<std::string>> methods {
        {"/api/session", {"GET", "POST", "DELETE"}},
        {"/api/state", {"GET"}},
        {"/api/events", {"GET"}},
        {"/api/services", {"POST"}},
    };
    static const std::vector<std::string> writing {"PUT"};
    if (isFile)
        return &reading;
    if (WebRequests::idAfter(kartPath, path))
        return &writing;
    const auto found = methods.find(path);
    return found == methods.end() ? nullptr : &found->second;
}

bool isWrite(const Request &request)
{
    return request.method != "GET" && request.method != "HEAD";
}

} // namespace

void WebServer::Private::setUp()
{
    // Strict and complete: the page has no script or style but its own files.
    m_server.set_default_headers({
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
         "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
        {"X-Content-Type-Options", "nosniff"},
        {"X-Frame-Options", "DENY"},
        {"Referrer-Policy", "no-referrer"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Cache-Control", "no-store"},
    });
    m_server.set_payload_max_length(m_limits.bodyBytes);
    m_server.set_keep_alive_max_count(std::size_t(m_limits.requestsPerConnection));
    m_server.set_keep_alive_timeout(
        std::chrono::duration_cast<std::chrono::seconds>(m_limits.idleTime).count());
    m_server.set_pre_routing_handler(
        [this](const Request &request, Response &response) { return route(request, response); });
    m_server.Post("/api/session",
                  [this](const Request &request, Response &response) { signIn(request, response); });
    m_server.Post("/api/services",
                  [this](const Request &request, Response &response) { recordServices(request, response); });
    m_server.Put(kartPath + "[0-9]+",
                 [this](const Request &request, Response &response) { setAvailability(request, response); });
    m_server.set_exception_handler([](const Request &, Response &response, const std::exception_ptr &) {
        refuse(response, internalError);
    });
    m_server.set_error_handler([](const Request &, Response &response) {
        if (response.body.empty())
            refuse(response, {response.status, response.status == 413 ? tooLarge.error : invalid.error});
        if (currentConnection)
            currentConnection->closeAfterAnswer();
    });
}

std::string WebServer::Private::start()
{
    if (m_access.hasCertificate()) {
        std::string error;
        std::unique_ptr<WebTls> tls = WebTls::load(m_access.certificateFile, m_access.keyFile, error);
        if (!tls)
            return error;
        m_server.setTls(std::move(tls));
    }
    m_server.setTrustedProxies(m_access.trustedProxies);
    std::string error = m_server.bind(m_access.endpoint);
    if (!error.empty())
        return error;
    m_listener = std::thread([this] { m_server.listen_after_bind(); });
    // Before it runs, the library ignores stop().
    while (!m_server.is_running())
        std::this_thread::yield();
    return {};
}

void WebServer::Private::stop()
{
    if (!m_listener.joinable())
        return;
    m_feed.close();
    m_server.stop();
    m_server.abortAll();
    m_listener.join();
}

WebServer::Private::Handling WebServer::Private::route(const Request &request, Response &response)
{
    if (const std::optional<Refusal> refusal = examine(request)) {
        currentConnection->closeAfterAnswer();
        response.set_header("Connection", "close");
        refuse(response, *refusal);
        return Handling::Handled;
    }
    if (request.path == "/api/state")
        sendState(response);
    else if (request.path == "/api/events")
        sendEvents(request, response);
    else if (request.path == "/api/session" && request.method == "DELETE")
        signOut(request, response);
    else if (request.path == "/api/session" && request.method == "GET")
        sendPerson(request, response);
    else if (!isWrite(request))
        sendFile(request, response);
    else
        return Handling::Unhandled; // the library reads the body first
    return Handling::Handled;
}

std::optional<Refusal> WebServer::Private::examine(const Request &request)
{
    if (currentConnection->refusal())
        return currentConnection->refusal();
    if (!isKnownHost(request.get_header_value("Host")))
        return Refusal {421, "host"};
    const bool isFile = request.path == "/" || m_files.count(request.path) > 0;
    const std::vector<std::string> *methods = methodsOf(request.path, isFile);
    if (isWrite(request)
        && !WebRequests::isOwnPage({request.get_header_value("Host"), request.get_header_value("Origin"),
                                    request.get_header_value("Sec-Fetch-Site")}))
        return foreignPage;
    const bool needsSession =
        !isFile && methods && (request.path != "/api/session" || request.method == "GET");
    WebSessions::Check check = WebSessions::Check::SignedOut;
    if (needsSession && m_sessions.personOf(tokenOf(request), check))
        check = WebSessions::Check::Good;
    if (check == WebSessions::Check::TooMany)
        return tooMany;
    if (check == WebSessions::Check::SignedOut && !m_sessions.allowStranger(clientOf(request)))
        return tooMany;
    if (!methods)
        return notFound;
    if (std::find(methods->begin(), methods->end(), request.method) == methods->end())
        return wrongMethod;
    if (needsSession && check == WebSessions::Check::SignedOut)
        return signedOut;
    return std::nullopt;
}

/// A page of another site cannot reach this server under a name that its owner lets point here.
bool WebServer::Private::isKnownHost(const std::string &host) const
{
    if (host.empty())
        return false;
    if (!m_access.publicUrl.empty() && host == WebAddress::authority(m_access.publicUrl))
        return true;
    const std::string suffix = ':' + std::to_string(m_access.endpoint.port);
    const bool hasPort =
        host.size() > suffix.size() && host.compare(host.size() - suffix.size(), suffix.size(), suffix) == 0;
    std::string name = hasPort ? host.substr(0, host.size() - suffix.size()) : host;
    const std::string own = WebAddress::machineName();
    if (name == "localhost" || (!own.empty() && (name == own || name == own + ".local")))
        return true;
    if (name.size() > 2 && name.front() == '[' && name.back() == ']')
        name = name.substr(1, name.size() - 2);
    return WebAddress::isAddress(name) || WebAddress::parse(host).has_value();
}

std::string WebServer::Private::clientOf(const Request &request) const
{
    return WebAddress::client(currentConnection->peer(), request.get_header_value("X-Forwarded-For"),
                              m_access.trustedProxies);
}

namespace {
const std::string cookieName = "garage_session";
} // namespace

std::string WebServer::Private::tokenOf(const Request &request) const
{
    return WebRequests::cookie(request.get_header_value("Cookie"), cookieName);
}

std::string WebServer::Private::cookieFor(const std::string &token, bool isEnd) const
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_limits.sessionTime).count();
    return cookieName + '=' + token + "; Path=/; HttpOnly; SameSite=Strict; Max-Age="
        + std::to_string(isEnd ? 0 : seconds) + (m_access.isEncrypted() ? "; Secure" : "");
}

void WebServer::Private::sendFile(const Request &request, Response &response) const
{
    const File &file = m_files.at(request.path == "/" ? "/index.html" : request.path);
    response.status = 200;
    response.set_content(file.content, file.type);
}

void WebServer::Private::signIn(const Request &request, Response &response)
{
    const std::optional<std::string> code = WebRequests::code(request.body);
    if (!code) {
        refuse(response, invalid);
        return;
    }
    using SignIn = WebSessions::SignIn;
    const SignIn result = m_sessions.signIn(clientOf(request), *code);
    if (result.outcome == SignIn::WrongCode) {
        answer(response, 401, {{"error", "wrong_code"}, {"remaining", result.remaining}});
    } else if (result.outcome == SignIn::Locked) {
        response.set_header("Retry-After", std::to_string(result.seconds));
        answer(response, 429, {{"error", "locked"}, {"seconds", result.seconds}});
    } else {
        m_sessions.signOut(tokenOf(request)); // the browser forgets it now
        response.set_header("Set-Cookie", cookieFor(result.token, false));
        answer(response, 200, {{"person", {{"id", result.person.id}, {"name", result.person.name}}}});
    }
}

void WebServer::Private::signOut(const Request &request, Response &response)
{
    m_sessions.signOut(tokenOf(request));
    m_feed.wake(); // its pages learn that it has ended
    response.set_header("Set-Cookie", cookieFor({}, true));
    response.status = 204;
}

void WebServer::Private::sendPerson(const Request &request, Response &response)
{
    if (const std::optional<WebPerson> person = m_sessions.personOfSession(tokenOf(request)))
        answer(response, 200, {{"person", {{"id", person->id}, {"name", person->name}}}});
    else
        refuse(response, signedOut);
}

namespace {

/// UTC, ISO 8601 with milliseconds.
std::string timeText()
{
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm parts {};
    gmtime_r(&seconds, &parts);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, sizeof text - length, ".%03dZ", int(milliseconds));
    return text;
}

/// The state as it is sent: a page corrects the clock of its phone by the time, which must be that of the
/// sending.
std::string withTime(const std::string &state)
{
    return state.substr(0, state.size() - 1) + ",\"now\":\"" + timeText() + "\"}";
}

} // namespace

void WebServer::Private::sendState(Response &response)
{
    response.status = 200;
    response.set_content(withTime(m_feed.latest()->json), "application/json; charset=utf-8");
}

void WebServer::Private::sendEvents(const Request &request, Response &response)
{
    const std::string token = tokenOf(request);
    if (!m_sessions.openStream(token)) {
        refuse(response, tooMany);
        return;
    }
    currentConnection->beginStream();
    response.status = 200;
    response.set_header("X-Accel-Buffering", "no"); // for a proxy
    const auto seen = std::make_shared<std::uint64_t>(0);
    const auto send = [this, token, seen](std::size_t, httplib::DataSink &sink) {
        const WebFeed::TextPointer text = m_feed.waitForNext(*seen, m_limits.keepAliveTime);
        const auto write = [&sink](const std::string &line) { sink.write(line.data(), line.size()); };
        if (!m_sessions.isSignedIn(token)) {
            write("event: signed_out\ndata: {}\n\n");
            sink.done();
        } else if (text) {
            *seen = text->version;
            write("event: state\ndata: " + withTime(text->json) + "\n\n");
        } else if (m_feed.isClosed()) {
            sink.done();
        } else {
            write(": keep-alive\n\n");
        }
        return true;
    };
    response.set_chunked_content_provider("text/event-stream", send,
                                          [this, token](bool) { m_sessions.closeStream(token); });
}

void WebServer::Private::recordServices(const Request &request, Response &response)
{
    const std::optional<std::vector<WebRequests::Service>> services = WebRequests::services(request.body);
    if (!services) {
        refuse(response, invalid);
        return;
    }
    const std::optional<WebPerson> person = m_sessions.personOfSession(tokenOf(request));
    if (!person) {
        refuse(response, signedOut);
        return;
    }
    const auto results = m_actions.recordServices(*person, *services);
    if (!results) {
        refuse(response, busy);
        return;
    }
    Json list = Json::array();
    for (const ServiceResult &result : *results) {
        if (result.error.empty())
            list.push_back({{"key", result.key}, {"id", result.id}, {"state", result.state}});
        else
            list.push_back({{"key", result.key}, {"error", result.error}});
    }
    answer(response, 200, {{"results", list}});
}

void WebServer::Private::setAvailability(const Request &request, Response &response)
{
    const std::optional<int> id = WebRequests::idAfter(kartPath, request.path);
    const std::optional<bool> available = WebRequests::availability(request.body);
    if (!id || !available) {
        refuse(response, invalid);
        return;
    }
    const std::optional<bool> isDone = m_actions.setAvailable(*id, *available);
    if (!isDone)
        refuse(response, busy);
    else if (!*isDone)
        refuse(response, {404, "unknown_car"});
    else
        answer(response, 200, {{"id", *id}, {"available", *available}});
}

WebServer::WebServer(const WebAccess &access, const WebLimits &limits, Files files, WebFeed &feed,
                     WebSessions &sessions, Actions actions)
    : m_private(
        std::make_unique<Private>(access, limits, std::move(files), feed, sessions, std::move(actions)))
{
}

WebServer::~WebServer()
{
    stop();
}

std::string WebServer::start()
{
    return m_private->start();
}

void WebServer::stop()
{
    m_private->stop();
}

WebAddress::Endpoint WebServer::endpoint() const
{
    return m_private->endpoint();
}
