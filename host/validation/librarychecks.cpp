#include "host/validation/checkcontext.h"

#include "data/qtcompatibility.h"
#include "host/plugin/pluginmetadata.h"
#include "trivexplugininterface.h"

#include <QCborStreamReader>
#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QMetaMethod>
#include <QPointer>
#include <QWidget>

/// The linker drops a static library's resources unless they are referenced by name.
static void initResources()
{
    Q_INIT_RESOURCE(validation);
}

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(LibraryChecks)
};

QString text(const QByteArray &latin)
{
    return QString::fromLatin1(latin);
}

/// Past the plug-in loader, as the platform sees the library.
QFunctionPointer entryPoint(const CheckContext &context, const char *name)
{
    const QFunctionPointer function = QLibrary::resolve(context.library(), name);
    expect(function, Text::tr("the library does not export %1").arg(text(name)));
    return function;
}

QObject *instance(const CheckContext &context)
{
    return reinterpret_cast<QObject *(*)()>(entryPoint(context, "qt_plugin_instance"))();
}

void checkLoading(CheckContext &context)
{
    context.makeDatabase();
    context.load();
}

void checkMetadata(CheckContext &context)
{
    const std::optional<PluginMetadata> metadata = readPluginMetadata(context.library());
    expect(metadata.has_value(), Text::tr("there is no metadata block"));
    constexpr int identifierKey = 2;
    constexpr int classNameKey = 3;
    const QCborMap &entries = metadata->entries;
    const QString identifier = QString::fromLatin1(TRIVEX_PLUGIN_IID);
    expectEqual(Text::tr("the interface identifier"), entries.value(identifierKey).toString(), identifier);
    expect(identifier.endsWith(QLatin1String("/v1.0")), Text::tr("%1 does not end in /v1.0").arg(identifier));
    expectEqual(Text::tr("the class name"), entries.value(classNameKey).toString(),
                QStringLiteral("RuvaloGaragePlugin"));
    expectEqual(Text::tr("the number of metadata entries"), entries.size(), 2);
}

void checkEntryPoints(CheckContext &context)
{
    context.makeDatabase();
    const char *name = QtCompatibility::metadataEntryPoint;
    const char *metadata = QtCompatibility::metadataMap(entryPoint(context, name));
    expect(QCborStreamReader(metadata, 1).isMap(),
           Text::tr("%1 does not return the metadata block").arg(text(name)));
    const QPointer<QObject> first = instance(context);
    expect(first, Text::tr("qt_plugin_instance returns null"));
    expect(!first->parent(), Text::tr("the root object has a parent"));
    expect(instance(context) == first, Text::tr("the second call creates another root object"));
    delete first;
    const QPointer<QObject> second = instance(context);
    expect(second, Text::tr("no new root object is created after the first one was deleted"));
    delete second;
}

void checkCasts(CheckContext &context)
{
    context.makeDatabase();
    QObject *root = instance(context);
    expect(root, Text::tr("qt_plugin_instance returns null"));
    auto *interface = qobject_cast<TrivexPluginInterface *>(root);
    expect(interface, Text::tr("qobject_cast to the interface returns null"));
    expect(static_cast<QObject *>(interface) == root, Text::tr("the cast back returns another object"));
    for (const char *name : {TRIVEX_PLUGIN_IID, "TrivexPluginInterface"}) {
        expect(root->qt_metacast(name) == static_cast<void *>(interface),
               Text::tr("qt_metacast(\"%1\") returns another address").arg(text(name)));
    }
    for (const char *name : {"TrivexPluginInterface", "RuvaloGaragePlugin"})
        expect(root->inherits(name), Text::tr("the root object does not inherit %1").arg(text(name)));
    delete root;
}

/// Each slot of the virtual table answers as the function that belongs there.
void checkVirtualOrder(CheckContext &context)
{
    context.makeDatabase();
    context.load();
    TrivexPluginInterface &plugin = context.plugin();
    QWidget *page = plugin.settingsPage();
    const QVector<HostMessage> answer = context.ask(QStringLiteral("send_settings_dialogs"));
    expectEvents(answer, {QStringLiteral("settings_dialog")});
    expect(page && page == &context.widget(answer.first(), "settingsPagePtr"),
           Text::tr("settingsPage() is not the page that \"settings_dialog\" names"));
    expect(!plugin.auxiliaryWidget(), Text::tr("auxiliaryWidget() is not null"));
    expectEqual(Text::tr("caption()"), plugin.caption(), QStringLiteral("Гараж"));
    expectEqual(Text::tr("moduleName()"), plugin.moduleName(), QStringLiteral("garage_plugin"));
    expectEqual(Text::tr("pluginOrder"), plugin.pluginOrder, 37);
    expectEqual(Text::tr("fileName"), plugin.fileName, QStringLiteral("fileNameWin"));
}

void expectMethod(const QMetaObject &meta, int index, QMetaMethod::MethodType type, const char *signature)
{
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    expectEqual(Text::tr("method %1 of %2").arg(index).arg(text(meta.className())),
                text(method.methodSignature()), text(signature));
    expect(method.methodType() == type, Text::tr("%1 is of another kind").arg(text(signature)));
}

void checkMetaObject(CheckContext &context)
{
    context.makeDatabase();
    context.load();
    const QMetaObject &root = *context.plugin().metaObject();
    expectEqual(Text::tr("the class name"), text(root.className()), QStringLiteral("RuvaloGaragePlugin"));
    expectMethod(root, 0, QMetaMethod::Slot, "closeGarage()");
    expect(root.superClass() && qstrcmp(root.superClass()->className(), "TrivexPluginInterface") == 0,
           Text::tr("the class does not derive from TrivexPluginInterface"));
    const QMetaObject &interface = *root.superClass();
    expectMethod(interface, 0, QMetaMethod::Signal, "pluginSignal(QString,QString,QJsonObject)");
    expectMethod(interface, 1, QMetaMethod::Slot, "pluginSlot(QString,QString,QJsonObject)");
    const QByteArrayList names = interface.method(interface.methodOffset()).parameterNames();
    expectEqual(Text::tr("the names of the arguments"), text(names.join(' ')),
                QStringLiteral("module event jsonData"));
}

/// The names in one direction of the published catalogue, in its order.
QJsonArray catalogued(const QJsonObject &catalogue, QLatin1String direction)
{
    QJsonArray events;
    for (const auto &entry : catalogue.value(direction).toArray()) {
        if (entry.toObject().value(QLatin1String("subscribed")).toBool(true))
            events.append(entry.toObject().value(QLatin1String("event")));
    }
    return events;
}

void checkEventLists(CheckContext &context)
{
    context.makeDatabase();
    context.load();
    initResources();
    QFile file(QStringLiteral(":/host/events.json"));
    expect(file.open(QIODevice::ReadOnly), file.errorString());
    const QJsonObject catalogue = jsonObject(file.readAll().constData());
    expectEqual(Text::tr("emittedEvents()"), QJsonArray::fromStringList(context.plugin().emittedEvents()),
                catalogued(catalogue, QLatin1String("emitted")));
    expectEqual(Text::tr("subscribedEvents()"),
                QJsonArray::fromStringList(context.plugin().subscribedEvents()),
                catalogued(catalogue, QLatin1String("understood")));
}

/// The program ends after this check; resultOf() evaluates the exit code of the process.
void checkEndWithoutUnloading(CheckContext &context)
{
    context.makeDatabase();
    auto *plugin = qobject_cast<TrivexPluginInterface *>(instance(context));
    expect(plugin, Text::tr("qobject_cast to the interface returns null"));
    plugin->pluginSlot(QStringLiteral("host"), QStringLiteral("run_saved_to_db"), {});
    plugin->settingsPage()->show();
}

} // namespace

QVector<Check> libraryChecks()
{
    return {
        {QStringLiteral("loading"), Text::tr("the library loads as a plug-in of this host"), checkLoading},
        {QStringLiteral("metadata"),
         Text::tr("the metadata are the interface identifier and the class name only"), checkMetadata},
        {QStringLiteral("entry-points"),
         Text::tr("the entry points return one root object, and a new one after its deletion"),
         checkEntryPoints},
        {QStringLiteral("casts"), Text::tr("the root object casts to the interface and back"), checkCasts},
        {QStringLiteral("virtual-order"), Text::tr("the interface's functions and members are in order"),
         checkVirtualOrder},
        {QStringLiteral("meta-object"), Text::tr("signals and slots are found by name"), checkMetaObject},
        {QStringLiteral("event-lists"), Text::tr("the event lists are complete and in order"),
         checkEventLists},
        {QStringLiteral("ending"), Text::tr("a host that does not unload the library exits normally"),
         checkEndWithoutUnloading},
    };
}
