#include "host/remote/web/webchannel.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace {

std::string lastTlsError()
{
    char text[256] = "unknown error";
    if (const unsigned long code = ERR_get_error())
        ERR_error_string_n(code, text, sizeof text);
    ERR_clear_error();
    return text;
}

int millisecondsUntil(WebChannel::Time deadline)
{
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return int(std::clamp<long long>(left.count(), 0, std::numeric_limits<int>::max()));
}

int asLength(std::size_t size)
{
    return int(std::min(size, std::size_t(std::numeric_limits<int>::max())));
}

} // namespace

std::unique_ptr<WebTls> WebTls::load(const std::string &certificateFile, const std::string &keyFile,
                                     std::string &errorText)
{
    std::unique_ptr<WebTls> tls(new WebTls(SSL_CTX_new(TLS_server_method())));
    const bool isLoaded = tls->m_context && SSL_CTX_set_min_proto_version(tls->m_context, TLS1_2_VERSION) == 1
        && SSL_CTX_use_certificate_chain_file(tls->m_context, certificateFile.c_str()) == 1
        && SSL_CTX_use_PrivateKey_file(tls->m_context, keyFile.c_str(), SSL_FILETYPE_PEM) == 1
        && SSL_CTX_check_private_key(tls->m_context) == 1;
    if (!isLoaded) {
        errorText = lastTlsError();
        return nullptr;
    }
    // What is written may be moved between two attempts of a write.
    SSL_CTX_set_mode(tls->m_context, SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER | SSL_MODE_ENABLE_PARTIAL_WRITE);
    SSL_CTX_set_options(tls->m_context, SSL_OP_NO_RENEGOTIATION);
    return tls;
}

WebTls::~WebTls()
{
    SSL_CTX_free(m_context);
}

WebChannel::WebChannel(int socket, const WebTls *tls) : m_socket(socket)
{
    fcntl(m_socket, F_SETFL, fcntl(m_socket, F_GETFL) | O_NONBLOCK);
    const int on = 1;
    setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (!tls)
        return;
    m_tls = SSL_new(tls->context());
    if (m_tls)
        SSL_set_fd(m_tls, m_socket);
    m_isOpen = false;
}

WebChannel::~WebChannel()
{
    SSL_free(m_tls);
    ::close(m_socket);
}

bool WebChannel::open(Time deadline)
{
    m_isOpen = !m_tls || repeat([this] { return SSL_accept(m_tls); }, deadline) > 0;
    return m_isOpen;
}

bool WebChannel::awaitInput(Time deadline)
{
    return (m_tls && SSL_pending(m_tls) > 0) || await(POLLIN, deadline);
}

long WebChannel::read(char *data, std::size_t size, Time deadline)
{
    if (m_tls)
        return repeat([=] { return SSL_read(m_tls, data, asLength(size)); }, deadline);
    while (await(POLLIN, deadline)) {
        const ssize_t count = ::recv(m_socket, data, size, 0);
        if (count >= 0)
            return long(count);
        if (errno != EAGAIN && errno != EINTR)
            return -1;
    }
    return -1;
}

bool WebChannel::write(const char *data, std::size_t size, Time deadline)
{
    while (size > 0) {
        ssize_t count = -1;
        if (m_tls)
            count = repeat([=] { return SSL_write(m_tls, data, asLength(size)); }, deadline);
        else if (await(POLLOUT, deadline))
            count = ::send(m_socket, data, size, MSG_NOSIGNAL);
        else
            return false;
        const bool mayRepeat = !m_tls && count < 0 && (errno == EAGAIN || errno == EINTR);
        if (count <= 0 && !mayRepeat)
            return false;
        data += std::max<ssize_t>(count, 0);
        size -= std::size_t(std::max<ssize_t>(count, 0));
    }
    return true;
}

void WebChannel::finish(Time deadline)
{
    if (m_tls && m_isOpen)
        SSL_shutdown(m_tls); // says so once; the answer is not waited for
    ::shutdown(m_socket, SHUT_WR);
    char dropped[4096];
    while (await(POLLIN, deadline)) {
        const ssize_t count = ::recv(m_socket, dropped, sizeof dropped, 0);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
            return;
    }
}

void WebChannel::abort()
{
    ::shutdown(m_socket, SHUT_RDWR);
}

std::string WebChannel::peerAddress() const
{
    sockaddr_storage peer {};
    socklen_t size = sizeof peer;
    if (getpeername(m_socket, reinterpret_cast<sockaddr *>(&peer), &size) != 0)
        return {};
    char text[INET6_ADDRSTRLEN] = "";
    if (peer.ss_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<sockaddr_in *>(&peer)->sin_addr, text, sizeof text);
    else if (peer.ss_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<sockaddr_in6 *>(&peer)->sin6_addr, text, sizeof text);
    return text;
}

bool WebChannel::await(short events, Time deadline) const
{
    for (;;) {
        pollfd waited {m_socket, events, 0};
        const int ready = ::poll(&waited, 1, millisecondsUntil(deadline));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

template<typename Operation> int WebChannel::repeat(Operation operation, Time deadline)
{
    for (;;) {
        ERR_clear_error();
        const int result = operation();
        if (result > 0)
            return result;
        const int reason = SSL_get_error(m_tls, result);
        const bool wantsRead = reason == SSL_ERROR_WANT_READ;
        if (!wantsRead && reason != SSL_ERROR_WANT_WRITE)
            return reason == SSL_ERROR_ZERO_RETURN ? 0 : -1;
        if (!await(wantsRead ? POLLIN : POLLOUT, deadline))
            return -1;
    }
}
