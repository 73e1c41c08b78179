#pragma once

#include "host/remote/web/weblimits.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// A person who may sign in. A person without a code cannot.
struct WebPerson
{
    int id = -1;
    std::string name;
    std::string code;
};

/// Spends one unit per request and regains some per second.
class RequestAllowance final
{
public:
    using Time = std::chrono::steady_clock::time_point;

    RequestAllowance(int burst, int perSecond, Time now);

    /// False if there is none left.
    bool take(Time now);

private:
    const double m_burst;
    const double m_perSecond;
    double m_left;
    Time m_since;
};

/// Who is signed in, and which addresses are locked because of wrong codes. Safe to use from any thread.
class WebSessions final
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    struct SignIn
    {
        enum Outcome { Done, WrongCode, Locked };

        Outcome outcome = Locked;
        std::string token; // if done
        WebPerson person; // if done
        int remaining = 0; // codes that may be tried until the address is locked
        int seconds = 0; // until the address is unlocked
    };

    struct Client
    {
        std::string person;
        std::string address;
        int streams = 0; // pages that are open
    };

    enum class Check { Good, SignedOut, TooMany };

    explicit WebSessions(const WebLimits &limits, Clock clock = &std::chrono::steady_clock::now);
    WebSessions(const WebSessions &) = delete;
    WebSessions &operator=(const WebSessions &) = delete;

    /// Replaces the people. Ends the sessions of people who are gone or whose code is another one.
    void setPeople(const std::vector<WebPerson> &people);

    /// If several people have the code, the first of them.
    SignIn signIn(const std::string &address, const std::string &code);
    void signOut(const std::string &token);
    /// The person of the session, counting a request. `outcome` is the reason if there is none.
    std::optional<WebPerson> personOf(const std::string &token, Check &outcome);
    /// Counts no request.
    std::optional<WebPerson> personOfSession(const std::string &token);
    bool isSignedIn(const std::string &token) { return personOfSession(token).has_value(); }
    /// Counts a request without a session; false if there were too many.
    bool allowStranger(const std::string &address);

    /// A page of the session waits for events; false if there are too many, or no such session.
    bool openStream(const std::string &token);
    void closeStream(const std::string &token);

    /// Sessions with an open page, in the order of the people's names.
    std::vector<Client> clients();

private:
    using Time = std::chrono::steady_clock::time_point;

    struct Session
    {
        WebPerson person;
        std::string address;
        Time lastRequest;
        RequestAllowance allowance;
        int streams = 0;
    };

    struct Stranger
    {
        int wrongCodes = 0;
        Time lastWrongCode;
        Time lockedUntil;
        Time lastSeen;
        RequestAllowance allowance;
    };

    Session *find(const std::string &token);
    Stranger &strangerOf(const std::string &address);
    void forgetOldStrangers();
    void forgetOldSessions();
    const WebPerson *personWithCode(const std::string &code) const;

    const WebLimits m_limits;
    const Clock m_clock;
    std::mutex m_mutex;
    std::vector<WebPerson> m_people;
    std::map<std::string, Session> m_sessions; // by token
    std::map<std::string, Stranger> m_strangers; // by network, see WebAddress::network()
    int m_streams = 0;
};
