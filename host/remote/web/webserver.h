#pragma once

#include "host/remote/web/webaddress.h"
#include "host/remote/web/weblimits.h"
#include "host/remote/web/webrequests.h"
#include "host/remote/web/websessions.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class WebFeed;

/// How the web server is reached.
struct WebAccess
{
    WebAddress::Endpoint endpoint {"127.0.0.1", 8080};
    /// Files in PEM format; without them the server speaks plain HTTP.
    std::string certificateFile;
    std::string keyFile;
    /// Addresses of reverse proxies whose "X-Forwarded-For" is believed.
    std::vector<std::string> trustedProxies;
    /// The address under which a reverse proxy shows the page, like "https://garage.example"; else empty.
    std::string publicUrl;

    bool hasCertificate() const { return !certificateFile.empty(); }
    /// Whether browsers reach the page by an encrypted connection.
    bool isEncrypted() const { return hasCertificate() || publicUrl.compare(0, 8, "https://") == 0; }
};

/// The HTTP side of the remote side, in threads of its own. It knows sessions, requests and limits; what a
/// request means is decided by the functions that it is given.
class WebServer final
{
public:
    struct ServiceResult
    {
        std::string key;
        int id = -1; // of the stored record
        std::string state; // as in WebState::Record
        std::string error; // "invalid", "unknown_car", "unknown_op"; empty if stored
    };

    /// Called in threads of the server. Nothing means: not answered in time, or not possible at the moment.
    struct Actions
    {
        std::function<std::optional<std::vector<ServiceResult>>(const WebPerson &,
                                                                const std::vector<WebRequests::Service> &)>
            recordServices;
        /// The outer optional as above; false if there is no such car.
        std::function<std::optional<bool>(int carId, bool available)> setAvailable;
    };

    struct File
    {
        std::string type; // Content-Type
        std::string content;
    };
    /// By path, such as "/page.js".
    using Files = std::map<std::string, File>;

    WebServer(const WebAccess &access, const WebLimits &limits, Files files, WebFeed &feed,
              WebSessions &sessions, Actions actions);
    /// Stops the server.
    ~WebServer();
    WebServer(const WebServer &) = delete;
    WebServer &operator=(const WebServer &) = delete;

    /// Listens and starts the threads. Returns why it cannot, or an empty text.
    std::string start();
    /// Ends all connections and threads. Waits for the requests that are being handled.
    void stop();

    /// Where it listens; the port is known after start().
    WebAddress::Endpoint endpoint() const;

private:
    class Private;
    const std::unique_ptr<Private> m_private;
};
