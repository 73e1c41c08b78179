#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

struct ssl_ctx_st;
struct ssl_st;

/// The certificate and the key of an encrypted server.
class WebTls final
{
public:
    /// Nothing on failure; `errorText` then says why.
    static std::unique_ptr<WebTls> load(const std::string &certificateFile, const std::string &keyFile,
                                        std::string &errorText);
    ~WebTls();
    WebTls(const WebTls &) = delete;
    WebTls &operator=(const WebTls &) = delete;

    ssl_ctx_st *context() const { return m_context; }

private:
    explicit WebTls(ssl_ctx_st *context) : m_context(context) { }

    ssl_ctx_st *m_context;
};

/// One accepted connection. Every operation ends at a deadline, however slowly the other side sends or reads.
class WebChannel final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Takes the socket, which it closes. `tls` may be null: plain bytes.
    WebChannel(int socket, const WebTls *tls);
    ~WebChannel();
    WebChannel(const WebChannel &) = delete;
    WebChannel &operator=(const WebChannel &) = delete;

    int socket() const { return m_socket; }
    /// The handshake of an encrypted connection.
    bool open(Time deadline);
    /// Waits until there is something to read, or the end of the connection.
    bool awaitInput(Time deadline);
    /// Number of bytes read; 0 at the end of the connection, negative on failure.
    long read(char *data, std::size_t size, Time deadline);
    bool write(const char *data, std::size_t size, Time deadline);
    /// Says that nothing follows, and drops what the other side still sends, so that it gets to read the
    /// answer.
    void finish(Time deadline);
    /// For another thread: ends all operations, also later ones.
    void abort();

    /// Empty if unknown.
    std::string peerAddress() const;

private:
    bool await(short events, Time deadline) const;
    /// Repeats an operation of OpenSSL that wants to read or write first. Its result if it is positive, 0 at
    /// the end of the connection, else negative.
    template<typename Operation> int repeat(Operation operation, Time deadline);

    const int m_socket;
    ssl_st *m_tls = nullptr;
    bool m_isOpen = false;
};
