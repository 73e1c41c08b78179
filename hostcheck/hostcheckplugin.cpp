#include "hostcheck/hostcheckplugin.h"

#include "hostcheck/protocol.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QThread>
#include <QTimer>

HostCheckPlugin::HostCheckPlugin()
    : m_startJudge(m_findings)
    , m_messageJudge(m_findings)
    , m_answerJudge(m_findings)
    , m_databaseJudge(m_findings)
    , m_endJudge(
          m_findings,
          [this] {
              judgeUse();
              deleteWidgets();
          },
          [this] {
              m_findings.blockSignals(true);
              judgeUse();
          })
{
    setObjectName(QStringLiteral("Host check"));
    if (!m_startJudge.judgeLoading())
        return;
    m_databaseJudge.judgeLoading();
    // Later the host may have deleted its windows, which hides the tab; Qt 6 closes them before that.
    qApp->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { m_answerJudge.judgeEnd(); });
    makeWidgets();
}

HostCheckPlugin::~HostCheckPlugin()
{
    blockSignals(true);
    // At the exit of the process, Qt's own data for widgets may be destroyed. They are not deleted then.
    if (m_endJudge.isProcessExiting())
        return;
    judgeUse();
    deleteWidgets();
    m_endJudge.judgeDestruction();
}

bool HostCheckPlugin::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::Quit)
        m_answerJudge.judgeQuit();
    return CastWatch::eventFilter(watched, event);
}

void HostCheckPlugin::makeWidgets()
{
    m_window = new FindingsWindow(m_findings);
    m_page = new MessagesPage;
    m_role = std::make_unique<GarageRole>(m_window, m_page, caption());
    m_windowJudge = std::make_unique<WidgetJudge>(*m_window, QStringLiteral("window"),
                                                  QLatin1String("widget-window-deleted"), m_findings);
    m_pageJudge = std::make_unique<WidgetJudge>(*m_page, QStringLiteral("settings page"),
                                                QLatin1String("widget-page-deleted"), m_findings);
    connect(m_role.get(), &GarageRole::message, this, &HostCheckPlugin::send);
    connect(m_window, &FindingsWindow::tabCheckRequested, this, &HostCheckPlugin::closeTab);
    connect(m_windowJudge.get(), &WidgetJudge::shown, m_role.get(), &GarageRole::reload);
    // Once, unasked: a user closes the tab sooner or later.
    connect(m_windowJudge.get(), &WidgetJudge::shown, this, [this] {
        if (!m_hasClosedTab)
            QTimer::singleShot(0, this, &HostCheckPlugin::closeTab);
        m_hasClosedTab = true;
    });
    connect(m_windowJudge.get(), &WidgetJudge::hidden, this, [this] {
        if (m_isTabClosing)
            QTimer::singleShot(0, this, &HostCheckPlugin::showTabAgain);
        m_isTabClosing = false;
    });
}

QWidget *HostCheckPlugin::settingsPage()
{
    return m_page;
}

QString HostCheckPlugin::caption()
{
    return QStringLiteral("Host check");
}

QString HostCheckPlugin::moduleName()
{
    return QStringLiteral("garage_plugin");
}

QStringList HostCheckPlugin::emittedEvents()
{
    return Protocol::emittedEvents();
}

QStringList HostCheckPlugin::subscribedEvents()
{
    return Protocol::subscribedEvents();
}

void HostCheckPlugin::pluginSlot(QString module, QString event, QJsonObject jsonData)
{
    Q_UNUSED(module)
    if (QThread::currentThread() == thread()) {
        handle(event, jsonData);
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this, event, jsonData] {
            m_findings.report(
                QLatin1String("thread-slot"),
                QStringLiteral("pluginSlot was called with %1 outside the GUI thread.").arg(event));
            handle(event, jsonData);
        },
        Qt::QueuedConnection);
}

void HostCheckPlugin::handle(const QString &event, const QJsonObject &data)
{
    m_startJudge.judgeMessage(event, hasReceiver());
    m_messageJudge.judge(event, data);
    if (event == QLatin1String("load_complete") || event == QLatin1String("run_saved_to_db"))
        m_databaseJudge.judgeContents();
    if (m_page)
        m_page->setCount(event, m_messageJudge.count(event));
    if (m_role)
        m_role->handle(event, data);
    m_answerJudge.check();
}

void HostCheckPlugin::send(const QString &event, const QJsonObject &data)
{
    if (!hasReceiver())
        return;
    expectAnswer(event);
    m_findings.noteSent(event);
    emit pluginSignal(Protocol::senderOf(event), event, data);
}

void HostCheckPlugin::expectAnswer(const QString &event)
{
    const QString cars = QStringLiteral("cars_list_changed");
    const auto hasCome = [this](const QString &answer) {
        return [this, answer, before = m_messageJudge.count(answer)] {
            return m_messageJudge.count(answer) > before;
        };
    };
    if (event == QLatin1String("read_cars_list"))
        m_answerJudge.expect(QLatin1String("answer-cars"),
                             QStringLiteral("read_cars_list was not answered by cars_list_changed."),
                             hasCome(cars));
    else if (event == QLatin1String("update_remote_service"))
        m_answerJudge.expect(QLatin1String("answer-remote"),
                             QStringLiteral("update_remote_service was not answered by remote_service_data."),
                             hasCome(QStringLiteral("remote_service_data")));
    else if (event == QLatin1String("update_cars"))
        m_answerJudge.expect(QLatin1String("answer-availability"),
                             QStringLiteral("update_cars was not answered by cars_list_changed."),
                             hasCome(cars));
    else if (event == QLatin1String("insert_tab"))
        m_answerJudge.expect(QLatin1String("answer-tab"),
                             QStringLiteral("The window of insert_tab did not become visible."),
                             [this] { return !m_window || m_window->isVisible(); });
    else if (event == QLatin1String("close_tab"))
        m_answerJudge.expect(QLatin1String("answer-close"),
                             QStringLiteral("The window of close_tab remained visible."),
                             [this] { return !m_window || !m_window->isVisible(); });
}

bool HostCheckPlugin::hasReceiver() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&TrivexPluginInterface::pluginSignal));
}

void HostCheckPlugin::closeTab()
{
    if (!m_window || !m_window->isVisible())
        return;
    m_isTabClosing = true;
    m_role->closeTab();
}

void HostCheckPlugin::showTabAgain()
{
    m_answerJudge.check();
    if (m_window)
        m_role->insertTab();
}

void HostCheckPlugin::judgeUse()
{
    if (m_isUseJudged)
        return;
    m_isUseJudged = true;
    if (!m_role)
        return;
    m_startJudge.judgeEnd();
    m_messageJudge.judgeEnd();
    m_answerJudge.judgeEnd();
}

void HostCheckPlugin::deleteWidgets()
{
    if (m_windowJudge)
        m_windowJudge->finish();
    if (m_pageJudge)
        m_pageJudge->finish();
    delete m_window;
    delete m_page;
}
