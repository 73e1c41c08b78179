#pragma once

#include "hostcheck/answerjudge.h"
#include "hostcheck/castwatch.h"
#include "hostcheck/databasejudge.h"
#include "hostcheck/endjudge.h"
#include "hostcheck/findings.h"
#include "hostcheck/findingswindow.h"
#include "hostcheck/garagerole.h"
#include "hostcheck/messagejudge.h"
#include "hostcheck/messagespage.h"
#include "hostcheck/startjudge.h"
#include "hostcheck/widgetjudge.h"

#include <QPointer>

#include <memory>

/// Root object of hostcheck: plays the garage module's part and shows the host's messages and actions to the
/// judges. Without widgets if the host loads it where none can be made.
class HostCheckPlugin final : public CastWatch
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TRIVEX_PLUGIN_IID)
public:
    HostCheckPlugin();
    ~HostCheckPlugin() override;

    QWidget *settingsPage() override;
    QWidget *auxiliaryWidget() override { return nullptr; }
    QString caption() override;
    QString moduleName() override;
    QStringList emittedEvents() override;
    QStringList subscribedEvents() override;
    /// Notices calls in another thread than the plug-in's; they are then handled in the plug-in's thread.
    void pluginSlot(QString module, QString event, QJsonObject jsonData) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void noteCast() override { m_startJudge.noteCast(); }

private:
    void makeWidgets();
    void handle(const QString &event, const QJsonObject &data);
    void send(const QString &event, const QJsonObject &data);
    void expectAnswer(const QString &event);
    bool hasReceiver() const;
    void closeTab();
    void showTabAgain();
    void judgeUse();
    void deleteWidgets();

    Findings m_findings;
    StartJudge m_startJudge;
    MessageJudge m_messageJudge;
    AnswerJudge m_answerJudge;
    DatabaseJudge m_databaseJudge;
    std::unique_ptr<GarageRole> m_role;
    QPointer<FindingsWindow> m_window; ///< owned; null if the host deleted it
    QPointer<MessagesPage> m_page; ///< owned; null if the host deleted it
    std::unique_ptr<WidgetJudge> m_windowJudge;
    std::unique_ptr<WidgetJudge> m_pageJudge;
    bool m_hasClosedTab = false;
    bool m_isTabClosing = false;
    bool m_isUseJudged = false;
    EndJudge m_endJudge; ///< last: it may be called from the first moment on
};
