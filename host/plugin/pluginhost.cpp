#include "host/plugin/pluginhost.h"

#include "host/plugin/pluginmetadata.h"
#include "trivexplugininterface.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {
const QLatin1String hostModule("host");
} // namespace

PluginHost::PluginHost(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<HostMessage>();
}

PluginHost::~PluginHost()
{
    if (const Result result = unload(); !result)
        qWarning("%s", qPrintable(result.errorText()));
}

Result PluginHost::load(const QString &fileName)
{
    const QFileInfo library(fileName);
    if (!library.exists())
        return Result::error(tr("file %1 does not exist").arg(fileName));
    m_loader.setFileName(library.absoluteFilePath());
    // The loader of Qt 5 takes a plug-in of Qt 6 for a file without metadata.
    const std::optional<PluginMetadata> metadata = readPluginMetadata(library.absoluteFilePath());
    if (metadata && metadata->qtMajorVersion != QT_VERSION_MAJOR) {
        return Result::error(tr("%1 was built with Qt %2, this host with Qt %3")
                                 .arg(fileName)
                                 .arg(metadata->qtMajorVersion)
                                 .arg(QT_VERSION_MAJOR));
    }
    QObject *root = m_loader.instance();
    if (!root)
        return Result::error(m_loader.errorString());
    m_plugin = qobject_cast<TrivexPluginInterface *>(root);
    if (!m_plugin) {
        m_loader.unload();
        return Result::error(
            tr("%1 is not a plug-in with the interface %2")
                .arg(fileName, QString::fromLatin1(qobject_interface_iid<TrivexPluginInterface *>())));
    }
    connect(m_plugin, &TrivexPluginInterface::pluginSignal, this,
            [this](const QString &module, const QString &event, const QJsonObject &data) {
                emit received({module, event, data});
            });
    return Result::success();
}

Result PluginHost::unload()
{
    if (!m_plugin)
        return Result::success();
    m_plugin = nullptr;
    return m_loader.unload() ? Result::success() : Result::error(m_loader.errorString());
}

QString PluginHost::caption() const
{
    return m_plugin ? m_plugin->caption() : QString();
}

void PluginHost::send(const QString &event, const QJsonObject &data)
{
    send(HostMessage {hostModule, event, data});
}

void PluginHost::send(const HostMessage &message)
{
    if (!m_plugin)
        return;
    emit sent(message);
    m_plugin->pluginSlot(message.module, message.event, message.data);
}

QString PluginHost::defaultLibrary()
{
    const QString here = QCoreApplication::applicationDirPath();
    for (const QLatin1String folder :
         {QLatin1String("/../plugins"), QLatin1String("/plugins"), QLatin1String(GARAGE_INSTALLED_PLUGINS)}) {
        const QFileInfo library(here + folder + QLatin1String("/libruvalogarage.so"));
        if (library.exists())
            return library.canonicalFilePath();
    }
    return {};
}
