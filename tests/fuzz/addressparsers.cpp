#include "host/remote/web/webaddress.h"
#include "parsers.h"

#include <netdb.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string rest(ByteReader &bytes)
{
    return bytes.take(std::numeric_limits<int>::max()).toStdString();
}

/// By the function that also looks names up, which is told not to.
bool isReadByTheResolver(const std::string &address)
{
    addrinfo hints {};
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo *found = nullptr;
    const bool isRead = getaddrinfo(address.c_str(), nullptr, &hints, &found) == 0;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, &freeaddrinfo);
    return isRead;
}

QByteArray shown(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

} // namespace

void Parsers::endpoint(ByteReader &bytes)
{
    const std::string text = rest(bytes);
    const auto endpoint = WebAddress::parse(text);
    if (!endpoint)
        return;
    require(WebAddress::isAddress(endpoint->address), "an address of numbers", shown(text));
    const auto again = WebAddress::parse(endpoint->text());
    require(again && again->address == endpoint->address && again->port == endpoint->port,
            "the same address and port again", shown(text));
    require(isReadByTheResolver(endpoint->address), "an address that the resolver reads", shown(text));
}

void Parsers::clientAddress(ByteReader &bytes)
{
    static const std::vector<std::string> proxies {"10.0.0.1", "fd00::1"};
    const std::string peer = bytes.below(2) == 0 ? proxies.at(size_t(bytes.below(2))) : rest(bytes);
    const std::string header = rest(bytes);
    const std::string client = WebAddress::client(peer, header, proxies);
    require(client == peer || WebAddress::isAddress(client), "the peer or an address", shown(header));
    require(WebAddress::isOneOf(peer, proxies) || client == peer || WebAddress::isOneOf(client, {peer}),
            "the peer, if it is no proxy", shown(header));
    const std::string network = WebAddress::network(client);
    require(WebAddress::isAddress(client) || network == client, "another text as it is", shown(header));
    require(WebAddress::network(network) == network, "itself, once shortened", shown(header));
}
