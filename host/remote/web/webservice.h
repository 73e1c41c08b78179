#pragma once

#include "host/database/hostconnection.h"
#include "host/remote/remoteside.h"
#include "host/remote/web/webserver.h"
#include "host/remote/web/websessions.h"
#include "host/remote/web/webstate.h"
#include "host/result.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

class FleetController;
class WebBridge;
class WebFeed;

/// The page of the remote side: shows what RemoteSide and the fleet hold, and hands what people do to
/// RemoteSide. GUI thread; the server's threads see copies and queued calls only.
class WebService final : public QObject
{
    Q_OBJECT
public:
    /// `trackPath` is the shared database file.
    WebService(RemoteSide &remote, FleetController &fleet, const QString &trackPath,
               const WebLimits &limits = {}, QObject *parent = nullptr);
    ~WebService() override;

    /// Why it cannot listen, if it cannot. Stops a server that runs.
    Result start(const WebAccess &access);
    void stop();
    bool isRunning() const { return m_server != nullptr; }
    /// The address of the page; empty unless it runs.
    QString url() const;
    /// Whether what phones and the page exchange is encrypted, here or by a reverse proxy.
    bool isEncrypted() const { return m_access.isEncrypted(); }
    /// Who has the page open.
    std::vector<WebSessions::Client> clients() { return m_sessions.clients(); }

signals:
    /// The server has been started or stopped.
    void runningChanged();

private:
    WebServer::Actions makeActions();
    /// Nothing if it is not possible at the moment.
    std::optional<std::vector<WebServer::ServiceResult>>
    recordServices(int personId, const std::vector<WebRequests::Service> &services);
    void publishPeople();
    void readDueList();
    /// Publishes the state soon, at most four times a second.
    void schedulePublication();
    void publish();
    WebState makeState();

    RemoteSide &m_remote;
    FleetController &m_fleet;
    HostConnection m_track;
    const WebLimits m_limits;
    WebAccess m_access;
    WebSessions m_sessions;
    std::vector<WebState::Due> m_due; // what was read with the latest due list
    bool m_isDueComplete = false; // else the track's file was locked
    QTimer m_publicationTimer;
    QTimer m_minuteTimer; // a new day begins; a limit was changed
    QElapsedTimer m_sincePublication;
    // The server is destroyed first; its threads use the others.
    std::unique_ptr<WebFeed> m_feed;
    std::unique_ptr<WebBridge> m_bridge;
    std::unique_ptr<WebServer> m_server;
};
