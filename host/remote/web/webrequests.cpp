#include "host/remote/web/webrequests.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

namespace {

using Json = nlohmann::json;

constexpr int deepest = 4; // levels of objects and arrays that any request needs

/// Nothing unless the body is an object. Deeper levels than a request needs end the parsing, because the
/// library destroys and copies them recursively.
std::optional<Json> objectOf(const std::string &body)
{
    bool isTooDeep = false;
    const auto watchDepth = [&](int depth, Json::parse_event_t, Json &) {
        if (depth > deepest)
            isTooDeep = true;
        return !isTooDeep;
    };
    Json json = Json::parse(body, watchDepth, false);
    if (isTooDeep || !json.is_object())
        return std::nullopt;
    return json;
}

std::optional<std::string> textOf(const Json &object, const char *key)
{
    const auto value = object.find(key);
    if (value == object.end() || !value->is_string())
        return std::nullopt;
    return value->get<std::string>();
}

std::optional<int> integerOf(const Json &object, const char *key)
{
    const auto value = object.find(key);
    if (value == object.end() || !value->is_number_integer())
        return std::nullopt;
    if (value->is_number_unsigned() && value->get<std::uint64_t>() > std::numeric_limits<int>::max())
        return std::nullopt;
    const auto wide = value->get<std::int64_t>();
    if (wide < -1 || wide > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(wide);
}

bool isControl(char letter)
{
    const auto code = static_cast<unsigned char>(letter);
    return (code < 0x20 && letter != '\n' && letter != '\t') || code == 0x7f;
}

std::size_t characterCount(const std::string &utf8)
{
    return std::size_t(std::count_if(utf8.begin(), utf8.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xc0) != 0x80;
    }));
}

bool isComment(const std::string &text)
{
    return characterCount(text) <= WebRequests::longestComment
        && std::none_of(text.begin(), text.end(), &isControl);
}

WebRequests::Service serviceOf(const Json &element)
{
    WebRequests::Service service;
    if (!element.is_object())
        return service;
    const std::optional<std::string> key = textOf(element, "key");
    if (!key || !WebRequests::isKey(*key))
        return service;
    service.key = *key;
    const auto carId = integerOf(element, "car_id");
    const auto opId = integerOf(element, "op_id");
    const auto localId = integerOf(element, "local_id");
    const auto doneTime = textOf(element, "done_time");
    const auto time = doneTime ? WebRequests::normalizedTime(*doneTime) : std::nullopt;
    const auto comment = textOf(element, "comment");
    if (!carId || *carId < 0 || !opId || !localId || !time || !comment || !isComment(*comment))
        return service;
    service.carId = *carId;
    service.opId = *opId;
    service.localId = *localId;
    service.doneTime = *time;
    service.comment = *comment;
    service.isValid = true;
    return service;
}

int daysOf(int year, int month)
{
    constexpr std::array<int, 12> days {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return days[std::size_t(month - 1)] + (month == 2 && isLeap ? 1 : 0);
}

/// The digits there as a number; -1 if one of them is none.
int numberAt(const std::string &text, std::size_t position, std::size_t digits)
{
    int number = 0;
    for (const char letter : text.substr(position, digits)) {
        if (letter < '0' || letter > '9')
            return -1;
        number = number * 10 + (letter - '0');
    }
    return number;
}

bool isDateTime(const std::string &text)
{
    constexpr std::string_view form = "0000-00-00T00:00:00";
    for (std::size_t at = 0; at < form.size(); ++at) {
        const bool isDigit = text[at] >= '0' && text[at] <= '9';
        if (form[at] == '0' ? !isDigit : text[at] != form[at])
            return false;
    }
    const int year = numberAt(text, 0, 4);
    const int month = numberAt(text, 5, 2);
    const int day = numberAt(text, 8, 2);
    return year >= 2000 && month >= 1 && month <= 12 && day >= 1 && day <= daysOf(year, month)
        && numberAt(text, 11, 2) < 24 && numberAt(text, 14, 2) < 60 && numberAt(text, 17, 2) < 60;
}

std::string lowered(std::string text)
{
    for (char &letter : text) {
        if (letter >= 'A' && letter <= 'Z')
            letter = char(letter - 'A' + 'a');
    }
    return text;
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

std::optional<std::string> WebRequests::code(const std::string &body)
{
    const std::optional<Json> json = objectOf(body);
    std::optional<std::string> code = json ? textOf(*json, "code") : std::nullopt;
    if (!code || code->empty() || code->size() > longestCode)
        return std::nullopt;
    return code;
}

std::optional<std::vector<WebRequests::Service>> WebRequests::services(const std::string &body)
{
    const std::optional<Json> json = objectOf(body);
    if (!json)
        return std::nullopt;
    const auto array = json->find("services");
    if (array == json->end() || !array->is_array() || array->empty() || array->size() > mostServices)
        return std::nullopt;
    std::vector<Service> services;
    for (const Json &element : *array)
        services.push_back(serviceOf(element));
    return services;
}

std::optional<bool> WebRequests::availability(const std::string &body)
{
    const std::optional<Json> json = objectOf(body);
    if (!json)
        return std::nullopt;
    const auto value = json->find("available");
    if (value == json->end() || !value->is_boolean())
        return std::nullopt;
    return value->get<bool>();
}

std::optional<int> WebRequests::idAfter(const std::string &prefix, const std::string &path)
{
    if (path.compare(0, prefix.size(), prefix) != 0)
        return std::nullopt;
    int id = 0;
    const char *first = path.data() + prefix.size();
    const char *end = path.data() + path.size();
    if (first == end || *first == '-')
        return std::nullopt;
    const auto [last, error] = std::from_chars(first, end, id);
    if (error != std::errc() || last != end)
        return std::nullopt;
    return id;
}

bool WebRequests::isKey(const std::string &text)
{
    return text.size() >= 8 && text.size() <= 64 && std::all_of(text.begin(), text.end(), [](char letter) {
               return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z')
                   || (letter >= 'A' && letter <= 'Z') || letter == '-';
           });
}

std::optional<std::string> WebRequests::normalizedTime(const std::string &text)
{
    constexpr std::size_t toSeconds = 19;
    constexpr std::size_t longest = 30;
    if (text.size() <= toSeconds || text.size() > longest || text.back() != 'Z' || !isDateTime(text))
        return std::nullopt;
    std::string fraction = text.substr(toSeconds, text.size() - toSeconds - 1);
    if (fraction.empty())
        fraction = ".";
    const bool isFraction = fraction.front() == '.' && numberAt(fraction, 1, 3) >= 0
        && std::all_of(fraction.begin() + 1, fraction.end(),
                       [](char letter) { return letter >= '0' && letter <= '9'; });
    if (!isFraction)
        return std::nullopt;
    fraction.resize(4, '0');
    return text.substr(0, toSeconds) + fraction + 'Z';
}

std::string WebRequests::cookie(std::string_view header, std::string_view name)
{
    while (!header.empty()) {
        const auto end = header.find(';');
        const std::string_view pair = trimmed(header.substr(0, end));
        const auto equal = pair.find('=');
        if (equal != std::string_view::npos && pair.substr(0, equal) == name)
            return std::string(pair.substr(equal + 1));
        header = end == std::string_view::npos ? std::string_view() : header.substr(end + 1);
    }
    return {};
}

bool WebRequests::isOwnPage(const Provenance &provenance)
{
    if (provenance.origin.empty() && provenance.fetchSite.empty())
        return false;
    if (!provenance.fetchSite.empty() && provenance.fetchSite != "same-origin")
        return false;
    if (provenance.origin.empty())
        return true;
    // Behind a proxy the scheme is that of the proxy.
    const std::string host = lowered(provenance.host);
    const std::string origin = lowered(provenance.origin);
    return !host.empty() && (origin == "http://" + host || origin == "https://" + host);
}
