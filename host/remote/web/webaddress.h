#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Addresses of the Internet protocol, as text.
namespace WebAddress {

/// Where a server listens.
struct Endpoint
{
    std::string address; // IPv4 or IPv6, without brackets
    std::uint16_t port = 0; // 0: any free one

    /// "192.168.1.5:8080", "[fd00::1]:8080".
    std::string text() const;
};

/// Nothing unless the text is "ADDRESS:PORT" with an address of numbers; an IPv6 address needs brackets.
std::optional<Endpoint> parse(const std::string &text);

/// Whether it is an IPv4 or IPv6 address of numbers.
bool isAddress(const std::string &text);

/// Whether the list holds that address, in whatever form.
bool isOneOf(const std::string &address, const std::vector<std::string> &list);

/// What one client can take: an IPv4 address, or the first 64 bits of an IPv6 address. Another text is
/// returned as it is.
std::string network(const std::string &address);

/// The address of the client that asks. A peer that is a trusted proxy names it in "X-Forwarded-For", of
/// which every other client may send what it likes.
std::string client(const std::string &peer, const std::string &forwardedFor,
                   const std::vector<std::string> &trustedProxies);

/// Host and port without the scheme and path of an address like "https://garage.example/x"; empty if it is
/// not one of http or https.
std::string authority(const std::string &url);

/// This machine's name; empty if it has none.
std::string machineName();

/// This machine's IPv4 addresses, those that other machines reach first.
std::vector<std::string> own();

} // namespace WebAddress
