// A host that ends without unloading its plug-ins, right after it handed them work.

#include "trivexplugininterface.h"

#include <QApplication>
#include <QPluginLoader>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QPluginLoader loader(GARAGE_PLUGIN_FILE); // its end does not unload
    auto *plugin = qobject_cast<TrivexPluginInterface *>(loader.instance());
    if (!plugin)
        return 2;
    plugin->pluginSlot(QString(), "clicked", {{"key", "show_garage"}});
    plugin->pluginSlot(QString(), "run_saved_to_db", {});
    plugin->pluginSlot(QString(), "remote_service_data", {{"data", "[{\"id\":40,\"carId\":1,\"opId\":2}]"}});
    return 0;
}
