#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// What a web server has answered.
struct WebAnswer
{
    int status = 0; // 0: the connection ended without an answer
    std::string head;
    std::string body;

    /// Value of the header, its name in any case; empty if it is missing.
    std::string header(const std::string &name) const;
};

/// One connection to a web server on this machine. Sends any bytes, also those that no browser would send.
class WebConnection final
{
public:
    explicit WebConnection(std::uint16_t port);
    ~WebConnection();
    WebConnection(const WebConnection &) = delete;
    WebConnection &operator=(const WebConnection &) = delete;

    /// False if the server has closed the connection.
    bool send(const std::string &bytes);
    /// Says that nothing more is sent.
    void finish();
    /// What the server sends until `end` is part of it, the connection ends or the time is over.
    std::string readUntil(const std::string &end, std::chrono::milliseconds limit = std::chrono::seconds(20));
    WebAnswer readAnswer(std::chrono::milliseconds limit = std::chrono::seconds(20));
    /// Whether the server ends the connection within the time.
    bool isClosedWithin(std::chrono::milliseconds limit);

private:
    bool receive(std::chrono::steady_clock::time_point deadline);

    int m_socket = -1;
    std::string m_received;
};

/// A page in a browser on this machine: sends its requests with an origin and a cookie.
class WebPage final
{
public:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    explicit WebPage(std::uint16_t port) : m_port(port) { }

    WebAnswer get(const std::string &path) { return ask("GET", path); }
    WebAnswer post(const std::string &path, const std::string &body) { return ask("POST", path, body); }
    WebAnswer put(const std::string &path, const std::string &body) { return ask("PUT", path, body); }
    /// Each request on a connection of its own. The headers replace those of the same names.
    WebAnswer ask(const std::string &method, const std::string &path, const std::string &body = {},
                  const Headers &headers = {});
    /// Keeps the cookie; the status of the answer.
    int signIn(const std::string &code);
    const std::string &cookie() const { return m_cookie; }
    void setCookie(const std::string &cookie) { m_cookie = cookie; }
    /// The bytes of such a request.
    std::string bytes(const std::string &method, const std::string &path, const std::string &body = {},
                      const Headers &headers = {}) const;

private:
    const std::uint16_t m_port;
    std::string m_cookie; // "name=value"
};
