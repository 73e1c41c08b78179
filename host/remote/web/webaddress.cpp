#include "host/remote/web/webaddress.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>

namespace {

using Bytes = std::array<unsigned char, 16>;

/// An IPv4 address as its IPv4-mapped IPv6 address.
std::optional<Bytes> bytesOf(const std::string &address)
{
    Bytes bytes {};
    if (inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1)
        return bytes;
    bytes[10] = bytes[11] = 0xff;
    if (inet_pton(AF_INET, address.c_str(), bytes.data() + 12) == 1)
        return bytes;
    return std::nullopt;
}

bool isFour(const Bytes &bytes)
{
    constexpr Bytes mapped {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 0, 0, 0, 0};
    return std::equal(bytes.begin(), bytes.begin() + 12, mapped.begin());
}

std::string textOf(const Bytes &bytes)
{
    char text[INET6_ADDRSTRLEN] = "";
    if (isFour(bytes))
        inet_ntop(AF_INET, bytes.data() + 12, text, sizeof text);
    else
        inet_ntop(AF_INET6, bytes.data(), text, sizeof text);
    return text;
}

std::string trimmed(const std::string &text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

std::string WebAddress::Endpoint::text() const
{
    const bool isSix = address.find(':') != std::string::npos;
    return (isSix ? '[' + address + ']' : address) + ':' + std::to_string(port);
}

std::optional<WebAddress::Endpoint> WebAddress::parse(const std::string &text)
{
    const auto colon = text.rfind(':');
    if (colon == std::string::npos)
        return std::nullopt;
    Endpoint endpoint;
    endpoint.address = text.substr(0, colon);
    const bool hasBrackets =
        endpoint.address.size() > 2 && endpoint.address.front() == '[' && endpoint.address.back() == ']';
    if (hasBrackets)
        endpoint.address = endpoint.address.substr(1, endpoint.address.size() - 2);
    const bool isSix = endpoint.address.find(':') != std::string::npos;
    const char *end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data() + colon + 1, end, endpoint.port);
    if (error != std::errc() || last != end || isSix != hasBrackets || !isAddress(endpoint.address))
        return std::nullopt;
    return endpoint;
}

bool WebAddress::isAddress(const std::string &text)
{
    return bytesOf(text).has_value();
}

bool WebAddress::isOneOf(const std::string &address, const std::vector<std::string> &list)
{
    const std::optional<Bytes> bytes = bytesOf(address);
    return bytes && std::any_of(list.begin(), list.end(), [&](const std::string &other) {
               return bytesOf(other) == bytes;
           });
}

std::string WebAddress::network(const std::string &address)
{
    std::optional<Bytes> bytes = bytesOf(address);
    if (!bytes)
        return address;
    if (!isFour(*bytes))
        std::fill(bytes->begin() + 8, bytes->end(), static_cast<unsigned char>(0));
    return textOf(*bytes);
}

std::string WebAddress::client(const std::string &peer, const std::string &forwardedFor,
                               const std::vector<std::string> &trustedProxies)
{
    // Each proxy appends the address that asked it, so the last one that is no proxy of ours is the client.
    std::string client = peer;
    std::string rest = forwardedFor;
    while (isOneOf(client, trustedProxies) && !rest.empty()) {
        const auto comma = rest.rfind(',');
        const std::string last = trimmed(comma == std::string::npos ? rest : rest.substr(comma + 1));
        if (!isAddress(last))
            return client;
        client = last;
        rest = comma == std::string::npos ? std::string() : rest.substr(0, comma);
    }
    const std::optional<Bytes> bytes = bytesOf(client);
    return bytes ? textOf(*bytes) : client;
}

std::string WebAddress::authority(const std::string &url)
{
    for (const std::string scheme : {"http://", "https://"}) {
        if (url.compare(0, scheme.size(), scheme) == 0)
            return url.substr(scheme.size(), url.find_first_of("/?#", scheme.size()) - scheme.size());
    }
    return {};
}

std::string WebAddress::machineName()
{
    std::array<char, 256> name {};
    return gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

std::vector<std::string> WebAddress::own()
{
    ifaddrs *first = nullptr;
    if (getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, &freeifaddrs);
    std::vector<std::string> reachable;
    std::vector<std::string> local;
    for (const ifaddrs *one = first; one; one = one->ifa_next) {
        if (!one->ifa_addr || one->ifa_addr->sa_family != AF_INET || !(one->ifa_flags & IFF_UP))
            continue;
        sockaddr_in address {};
        std::memcpy(&address, one->ifa_addr, sizeof address);
        char text[INET_ADDRSTRLEN] = "";
        inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
        ((one->ifa_flags & IFF_LOOPBACK) != 0 ? local : reachable).emplace_back(text);
    }
    reachable.insert(reachable.end(), local.begin(), local.end());
    return reachable;
}
