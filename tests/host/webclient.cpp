#include "tests/host/webclient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

using Time = std::chrono::steady_clock::time_point;

std::string WebAnswer::header(const std::string &name) const
{
    std::istringstream lines(head);
    std::string line;
    while (std::getline(lines, line)) {
        const auto colon = line.find(": ");
        if (colon == name.size() && strncasecmp(line.c_str(), name.c_str(), colon) == 0)
            return line.substr(colon + 2, line.find('\r') - colon - 2);
    }
    return {};
}

WebConnection::WebConnection(std::uint16_t port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

WebConnection::~WebConnection()
{
    if (m_socket >= 0)
        ::close(m_socket);
}

bool WebConnection::send(const std::string &bytes)
{
    std::size_t sent = 0;
    while (m_socket >= 0 && sent < bytes.size()) {
        const ssize_t count = ::send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += std::size_t(count);
    }
    return m_socket >= 0;
}

void WebConnection::finish()
{
    ::shutdown(m_socket, SHUT_WR);
}

bool WebConnection::receive(Time deadline)
{
    if (m_socket < 0)
        return false;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd waited {m_socket, POLLIN, 0};
    if (::poll(&waited, 1, int(std::max<long long>(left.count(), 0))) <= 0)
        return false;
    char piece[16384];
    const ssize_t count = ::recv(m_socket, piece, sizeof piece, 0);
    if (count <= 0) {
        ::close(m_socket);
        m_socket = -1;
        return false;
    }
    m_received.append(piece, std::size_t(count));
    return true;
}

std::string WebConnection::readUntil(const std::string &end, std::chrono::milliseconds limit)
{
    const Time deadline = std::chrono::steady_clock::now() + limit;
    while (m_received.find(end) == std::string::npos && receive(deadline)) { }
    const auto found = m_received.find(end);
    const std::string text =
        found == std::string::npos ? m_received : m_received.substr(0, found + end.size());
    m_received.erase(0, text.size());
    return text;
}

WebAnswer WebConnection::readAnswer(std::chrono::milliseconds limit)
{
    WebAnswer answer;
    answer.head = readUntil("\r\n\r\n", limit);
    if (answer.head.compare(0, 9, "HTTP/1.1 ") != 0)
        return answer;
    answer.status = std::atoi(answer.head.c_str() + 9);
    const Time deadline = std::chrono::steady_clock::now() + limit;
    const auto length = std::size_t(std::atoi(answer.header("Content-Length").c_str()));
    while (m_received.size() < length && receive(deadline)) { }
    answer.body = m_received.substr(0, length);
    m_received.erase(0, length);
    return answer;
}

bool WebConnection::isClosedWithin(std::chrono::milliseconds limit)
{
    const Time deadline = std::chrono::steady_clock::now() + limit;
    while (receive(deadline)) { }
    return m_socket < 0;
}

std::string WebPage::bytes(const std::string &method, const std::string &path, const std::string &body,
                           const Headers &headers) const
{
    const std::string host = "127.0.0.1:" + std::to_string(m_port);
    Headers all {{"Host", host}, {"Origin", "http://" + host}, {"Sec-Fetch-Site", "same-origin"}};
    if (!m_cookie.empty())
        all.emplace_back("Cookie", m_cookie);
    if (method == "POST" || method == "PUT")
        all.emplace_back("Content-Length", std::to_string(body.size()));
    for (const auto &[name, value] : headers) {
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [&, name = name](const auto &header) { return header.first == name; }),
                  all.end());
        if (!value.empty())
            all.emplace_back(name, value);
    }
    std::string bytes = method + ' ' + path + " HTTP/1.1\r\n";
    for (const auto &[name, value] : all)
        bytes += name + ": " + value + "\r\n";
    return bytes + "\r\n" + body;
}

WebAnswer WebPage::ask(const std::string &method, const std::string &path, const std::string &body,
                       const Headers &headers)
{
    WebConnection connection(m_port);
    connection.send(bytes(method, path, body, headers));
    return connection.readAnswer();
}

int WebPage::signIn(const std::string &code)
{
    const WebAnswer answer = post("/api/session", "{\"code\":\"" + code + "\"}");
    const std::string cookie = answer.header("Set-Cookie");
    if (answer.status == 200)
        m_cookie = cookie.substr(0, cookie.find(';'));
    return answer.status;
}
