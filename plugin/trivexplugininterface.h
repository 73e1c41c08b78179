#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

/// The host's identifier for the interface; host and plug-in must be built with the same one.
#ifndef TRIVEX_PLUGIN_IID
#define TRIVEX_PLUGIN_IID "trivex.TrivexPluginInterface/v1.0"
#endif

/// The host's interface to a plug-in: its pages, its names, and one message channel in each direction.
///
/// A message is a module name, an event name and a JSON object. Everything here is called and emitted in
/// the host's GUI thread. The declaration order of members and virtual functions is part of the contract.
class TrivexPluginInterface : public QObject
{
    Q_OBJECT
public:
    /// Position of the plug-in among the host's plug-ins.
    qint32 pluginOrder = 0;
    /// For the host's own use; a module reads none of them.
    QString pluginVersion;
    QString pluginDescription;
    QString fileName = QStringLiteral("fileNameWin");

    /// The module's page for the host's settings dialog; owned by the plug-in.
    virtual QWidget *settingsPage() = 0;
    /// A second widget of the module, or null; owned by the plug-in.
    virtual QWidget *auxiliaryWidget() = 0;
    /// The title of the module's tab and settings page.
    virtual QString caption() = 0;
    /// The name under which the module sends its messages.
    virtual QString moduleName() = 0;
    /// Names of the events that the plug-in sends.
    virtual QStringList emittedEvents() = 0;
    /// Names of the events that the plug-in receives.
    virtual QStringList subscribedEvents() = 0;

public slots:
    /// Sends one message to the plug-in. Unknown events and missing keys are ignored.
    virtual void pluginSlot(QString module, QString event, QJsonObject jsonData) = 0;

signals:
    /// One message from the plug-in to the host.
    void pluginSignal(QString module, QString event, QJsonObject jsonData);
};

Q_DECLARE_INTERFACE(TrivexPluginInterface, TRIVEX_PLUGIN_IID)
