// A host that ends without unloading its plug-ins, right after it handed them work.

#include "trivexplugininterface.h"

#include <QApplication>
#include <QPluginLoader>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QPluginLoader loader(QStringLiteral(GARAGE_PLUGIN_FILE)); // its end does not unload
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    if (!plugin)
        return 2;
    plugin->pluginSlot(QString(), QStringLiteral("clicked"),
                       {{QStringLiteral("key"), QStringLiteral("show_garage")}});
    plugin->pluginSlot(QString(), QStringLiteral("run_saved_to_db"), {});
    plugin->pluginSlot(QString(), QStringLiteral("remote_service_data"),
                       {{QStringLiteral("data"), QStringLiteral("[{\"id\":40,\"carId\":1,\"opId\":2}]")}});
    return 0;
}
