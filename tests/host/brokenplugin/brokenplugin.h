#pragma once

#include "trivexplugininterface.h"

#include <QPluginLoader>

/// The real plug-in behind a front with one fault, chosen by the build: a validator must find that fault.
/// Of the class only the name that the metadata carry is the real one's.
class RuvaloGaragePlugin final : public TrivexPluginInterface
{
    Q_OBJECT
    Q_INTERFACES(TrivexPluginInterface)
#ifdef FAULT_WRONG_IDENTIFIER
    Q_PLUGIN_METADATA(IID "trivex.TrivexPluginInterface/v0.9")
#else
    Q_PLUGIN_METADATA(IID TRIVEX_PLUGIN_IID)
#endif
public:
    RuvaloGaragePlugin();
    ~RuvaloGaragePlugin() override;

    QWidget *settingsPage() override
    {
        return m_real->settingsPage();
    }
    QWidget *auxiliaryWidget() override
    {
        return m_real->auxiliaryWidget();
    }
    QString caption() override
    {
        return m_real->caption();
    }
    QString moduleName() override
    {
        return m_real->moduleName();
    }
    QStringList emittedEvents() override
    {
        return m_real->emittedEvents();
    }
    QStringList subscribedEvents() override
    {
        return m_real->subscribedEvents();
    }
    void pluginSlot(QString module, QString event, QJsonObject jsonData) override;

public slots:
    void closeGarage();

private:
    QPluginLoader m_loader;
    TrivexPluginInterface *m_real;
};
