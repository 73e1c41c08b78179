#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a page may ask for, read from the bodies of its requests. Pure functions for any thread; nothing is
/// returned for a body that is not what it must be.
namespace WebRequests {

constexpr std::size_t mostServices = 100;
constexpr std::size_t longestComment = 1000; // characters
constexpr std::size_t longestCode = 64; // bytes

/// A piece of work that somebody has done.
struct Service
{
    std::string key; // of the page; empty if that is no key
    bool isValid = false; // else only the key holds
    int carId = -1;
    int opId = -1; // -1: a complaint
    int localId = -1; // the open record that it completes; -1: none
    std::string doneTime; // UTC, "yyyy-MM-ddThh:mm:ss.zzzZ"
    std::string comment;
};

/// {"code": "1234"}
std::optional<std::string> code(const std::string &body);
/// {"services": [...]}: 1 to mostServices elements.
std::optional<std::vector<Service>> services(const std::string &body);
/// {"available": true}
std::optional<bool> availability(const std::string &body);

/// The number of a path such as "/api/karts/17" after its prefix: decimal digits alone, 32 bits.
std::optional<int> idAfter(const std::string &prefix, const std::string &path);

/// Of the letters, digits and hyphens that a page makes keys of, 8 to 64.
bool isKey(const std::string &text);
/// An existing moment, "yyyy-MM-ddThh:mm:ss[.z…]Z", as "yyyy-MM-ddThh:mm:ss.zzzZ".
std::optional<std::string> normalizedTime(const std::string &text);
/// The value of the cookie in a header "Cookie"; empty if it is not there.
std::string cookie(std::string_view header, std::string_view name);

/// What the browser says about where a request was made.
struct Provenance
{
    std::string host; // header "Host"
    std::string origin; // header "Origin"; empty if missing
    std::string fetchSite; // header "Sec-Fetch-Site"; empty if missing
};
/// Whether the request was made by a page of this server.
bool isOwnPage(const Provenance &provenance);

} // namespace WebRequests
