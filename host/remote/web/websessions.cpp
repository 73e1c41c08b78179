#include "host/remote/web/websessions.h"

#include "host/remote/web/webaddress.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace {

/// 256 bits that nobody can guess, as hexadecimal digits.
std::string makeToken()
{
    std::array<unsigned char, 32> bytes {};
    if (RAND_bytes(bytes.data(), int(bytes.size())) != 1)
        throw std::runtime_error("no random numbers");
    const char *digits = "0123456789abcdef";
    std::string token;
    for (const unsigned char byte : bytes) {
        token += digits[byte >> 4];
        token += digits[byte & 15];
    }
    return token;
}

/// Takes as long for every code of that length.
bool isEqual(const std::string &one, const std::string &other)
{
    return one.size() == other.size() && CRYPTO_memcmp(one.data(), other.data(), one.size()) == 0;
}

int secondsUntil(std::chrono::steady_clock::duration time)
{
    return int(std::chrono::ceil<std::chrono::seconds>(time).count());
}

} // namespace

RequestAllowance::RequestAllowance(int burst, int perSecond, Time now)
    : m_burst(burst), m_perSecond(perSecond), m_left(burst), m_since(now)
{
}

bool RequestAllowance::take(Time now)
{
    const double seconds = std::chrono::duration<double>(now - m_since).count();
    m_left = std::min(m_burst, m_left + seconds * m_perSecond);
    m_since = now;
    if (m_left < 1)
        return false;
    m_left -= 1;
    return true;
}

WebSessions::WebSessions(const WebLimits &limits, Clock clock) : m_limits(limits), m_clock(std::move(clock))
{
}

void WebSessions::setPeople(const std::vector<WebPerson> &people)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_people = people;
    for (auto session = m_sessions.begin(); session != m_sessions.end();) {
        const auto known = std::find_if(people.begin(), people.end(), [&](const WebPerson &person) {
            return person.id == session->second.person.id && person.code == session->second.person.code;
        });
        if (known == people.end()) {
            session = m_sessions.erase(session);
        } else {
            session->second.person = *known;
            ++session;
        }
    }
}

WebSessions::SignIn WebSessions::signIn(const std::string &address, const std::string &code)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Time now = m_clock();
    Stranger &stranger = strangerOf(address);
    SignIn result;
    if (now < stranger.lockedUntil) {
        result.seconds = secondsUntil(stranger.lockedUntil - now);
        return result;
    }
    const WebPerson *person = personWithCode(code);
    if (!person) {
        // Codes as old as a lock lasts count no more: waiting gains nothing over being locked.
        if (now - stranger.lastWrongCode >= m_limits.lockTime)
            stranger.wrongCodes = 0;
        stranger.lastWrongCode = now;
        ++stranger.wrongCodes;
        result.remaining = m_limits.wrongCodes - stranger.wrongCodes;
        result.outcome = SignIn::WrongCode;
        if (result.remaining > 0)
            return result;
        stranger.wrongCodes = 0;
        stranger.lockedUntil = now + m_limits.lockTime;
        result.outcome = SignIn::Locked;
        result.seconds = secondsUntil(m_limits.lockTime);
        return result;
    }
    // A right code does not undo wrong ones: who has a code could try out all others in between.
    forgetOldSessions();
    result.outcome = SignIn::Done;
    result.token = makeToken();
    result.person = *person;
    m_sessions.emplace(result.token,
                       Session {*person, address, now,
                                RequestAllowance(m_limits.requestBurst, m_limits.requestsPerSecond, now), 0});
    return result;
}

void WebSessions::signOut(const std::string &token)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sessions.erase(token);
}

std::optional<WebPerson> WebSessions::personOf(const std::string &token, Check &outcome)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Session *session = find(token);
    outcome = Check::SignedOut;
    if (!session)
        return std::nullopt;
    session->lastRequest = m_clock();
    outcome = Check::TooMany;
    if (!session->allowance.take(session->lastRequest))
        return std::nullopt;
    outcome = Check::Good;
    return session->person;
}

std::optional<WebPerson> WebSessions::personOfSession(const std::string &token)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Session *session = find(token);
    return session ? std::make_optional(session->person) : std::nullopt;
}

bool WebSessions::allowStranger(const std::string &address)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return strangerOf(address).allowance.take(m_clock());
}

bool WebSessions::openStream(const std::string &token)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Session *session = find(token);
    if (!session || m_streams >= m_limits.streams)
        return false;
    ++session->streams;
    ++m_streams;
    return true;
}

void WebSessions::closeStream(const std::string &token)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_streams;
    const auto session = m_sessions.find(token);
    if (session == m_sessions.end())
        return;
    --session->second.streams;
    session->second.lastRequest = m_clock();
}

std::vector<WebSessions::Client> WebSessions::clients()
{
    std::vector<Client> clients;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto &[token, session] : m_sessions) {
            if (session.streams > 0)
                clients.push_back({session.person.name, session.address, session.streams});
        }
    }
    std::sort(clients.begin(), clients.end(), [](const Client &one, const Client &other) {
        return std::tie(one.person, one.address) < std::tie(other.person, other.address);
    });
    return clients;
}

/// Null if there is none, or if it is too old and no page waits for events.
WebSessions::Session *WebSessions::find(const std::string &token)
{
    const auto found = m_sessions.find(token);
    if (found == m_sessions.end())
        return nullptr;
    if (found->second.streams > 0 || m_clock() - found->second.lastRequest < m_limits.sessionTime)
        return &found->second;
    m_sessions.erase(found);
    return nullptr;
}

WebSessions::Stranger &WebSessions::strangerOf(const std::string &address)
{
    const std::string network = WebAddress::network(address);
    const Time now = m_clock();
    const auto known = m_strangers.find(network);
    if (known != m_strangers.end()) {
        known->second.lastSeen = now;
        return known->second;
    }
    if (int(m_strangers.size()) >= m_limits.strangers)
        forgetOldStrangers();
    Stranger stranger {0, Time(), Time(), now,
                       RequestAllowance(m_limits.unsignedBurst, m_limits.unsignedPerSecond, now)};
    return m_strangers.emplace(network, stranger).first->second;
}

/// Those who mean nothing any more; if there are none, the one that was seen longest ago.
void WebSessions::forgetOldStrangers()
{
    const Time now = m_clock();
    for (auto stranger = m_strangers.begin(); stranger != m_strangers.end();) {
        const bool isOld = now - stranger->second.lastSeen >= m_limits.lockTime;
        stranger = isOld ? m_strangers.erase(stranger) : std::next(stranger);
    }
    if (int(m_strangers.size()) < m_limits.strangers)
        return;
    m_strangers.erase(
        std::min_element(m_strangers.begin(), m_strangers.end(), [](const auto &one, const auto &other) {
            return one.second.lastSeen < other.second.lastSeen;
        }));
}

/// Makes room for one.
void WebSessions::forgetOldSessions()
{
    const Time now = m_clock();
    for (auto session = m_sessions.begin(); session != m_sessions.end();) {
        const bool isOld =
            session->second.streams == 0 && now - session->second.lastRequest >= m_limits.sessionTime;
        session = isOld ? m_sessions.erase(session) : std::next(session);
    }
    if (int(m_sessions.size()) < m_limits.sessions)
        return;
    m_sessions.erase(
        std::min_element(m_sessions.begin(), m_sessions.end(), [](const auto &one, const auto &other) {
            return one.second.lastRequest < other.second.lastRequest;
        }));
}

const WebPerson *WebSessions::personWithCode(const std::string &code) const
{
    const WebPerson *found = nullptr;
    for (const WebPerson &person : m_people) {
        if (!code.empty() && !found && isEqual(person.code, code))
            found = &person;
    }
    return found;
}
