#include "host/validation/checkcontext.h"

#include "trivexplugininterface.h"

#include <QCborMap>
#include <QCborValue>
#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QMetaMethod>
#include <QPointer>
#include <QWidget>

/// The linker drops a static library's resources unless they are asked for by name.
static void initResources()
{
    Q_INIT_RESOURCE(validation);
}

namespace {

const QByteArray metadataMagic("QTMETADATA ");

QString tr(const char *text)
{
    return QCoreApplication::translate("LibraryChecks", text);
}

QString text(const QByteArray &latin)
{
    return QString::fromLatin1(latin);
}

/// Past the plug-in loader, as the platform sees the library.
QFunctionPointer entryPoint(const CheckContext &context, const char *name)
{
    const QFunctionPointer function = QLibrary::resolve(context.library(), name);
    expect(function, tr("the library does not export %1").arg(text(name)));
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
    QFile file(context.library());
    expect(file.open(QIODevice::ReadOnly), file.errorString());
    const QByteArray library = file.readAll();
    const int start = library.indexOf(metadataMagic);
    expect(start >= 0, tr("there is no metadata block"));
    // The magic is followed by "!" and four bytes: layout, Qt's major and minor version, kind of build.
    const QCborValue block = QCborValue::fromCbor(library.mid(start + metadataMagic.size() + 5, 4000));
    expect(block.isMap(), tr("the metadata block is not a map"));
    constexpr int identifierKey = 2;
    constexpr int classNameKey = 3;
    const QCborMap entries = block.toMap();
    const QString identifier = QString::fromLatin1(TRIVEX_PLUGIN_IID);
    expectEqual(tr("the interface identifier"), entries.value(identifierKey).toString(), identifier);
    expect(identifier.endsWith(QLatin1String("/v1.0")), tr("%1 does not end in /v1.0").arg(identifier));
    expectEqual(tr("the class name"), entries.value(classNameKey).toString(),
                QStringLiteral("RuvaloGaragePlugin"));
    expectEqual(tr("the number of metadata entries"), entries.size(), 2);
}

void checkEntryPoints(CheckContext &context)
{
    context.makeDatabase();
    const auto query = reinterpret_cast<const char *(*)()>(entryPoint(context, "qt_plugin_query_metadata"));
    expect(qstrncmp(query(), metadataMagic.constData(), uint(metadataMagic.size())) == 0,
           tr("qt_plugin_query_metadata does not return the metadata block"));
    const QPointer<QObject> first = instance(context);
    expect(first, tr("qt_plugin_instance returns nothing"));
    expect(!first->parent(), tr("the root object has a parent"));
    expect(instance(context) == first, tr("the second call makes another root object"));
    delete first;
    const QPointer<QObject> second = instance(context);
    expect(second, tr("after its end the root object is not made anew"));
    delete second;
}

void checkCasts(CheckContext &context)
{
    context.makeDatabase();
    QObject *root = instance(context);
    expect(root, tr("qt_plugin_instance returns nothing"));
    auto *interface = qobject_cast<TrivexPluginInterface *>(root);
    expect(interface, tr("qobject_cast to the interface gives nothing"));
    expect(static_cast<QObject *>(interface) == root, tr("the cast back gives another object"));
    for (const char *name : {TRIVEX_PLUGIN_IID, "TrivexPluginInterface"}) {
        expect(root->qt_metacast(name) == static_cast<void *>(interface),
               tr("qt_metacast(\"%1\") gives another address").arg(text(name)));
    }
    for (const char *name : {"TrivexPluginInterface", "RuvaloGaragePlugin"})
        expect(root->inherits(name), tr("the root object is no %1").arg(text(name)));
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
           tr("settingsPage() is not the page that \"settings_dialog\" names"));
    expect(!plugin.auxiliaryWidget(), tr("auxiliaryWidget() is not null"));
    expectEqual(tr("caption()"), plugin.caption(), QStringLiteral("Гараж"));
    expectEqual(tr("moduleName()"), plugin.moduleName(), QStringLiteral("garage_plugin"));
    expectEqual(tr("pluginOrder"), plugin.pluginOrder, 37);
    expectEqual(tr("fileName"), plugin.fileName, QStringLiteral("fileNameWin"));
}

void expectMethod(const QMetaObject &meta, int index, QMetaMethod::MethodType type, const char *signature)
{
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    expectEqual(tr("method %1 of %2").arg(index).arg(text(meta.className())), text(method.methodSignature()),
                text(signature));
    expect(method.methodType() == type, tr("%1 is of another kind").arg(text(signature)));
}

void checkMetaObject(CheckContext &context)
{
    context.makeDatabase();
    context.load();
    const QMetaObject &root = *context.plugin().metaObject();
    expectEqual(tr("the class name"), text(root.className()), QStringLiteral("RuvaloGaragePlugin"));
    expectMethod(root, 0, QMetaMethod::Slot, "closeGarage()");
    expect(root.superClass() && qstrcmp(root.superClass()->className(), "TrivexPluginInterface") == 0,
           tr("the class does not derive from TrivexPluginInterface"));
    const QMetaObject &interface = *root.superClass();
    expectMethod(interface, 0, QMetaMethod::Signal, "pluginSignal(QString,QString,QJsonObject)");
    expectMethod(interface, 1, QMetaMethod::Slot, "pluginSlot(QString,QString,QJsonObject)");
    const QByteArrayList names = interface.method(interface.methodOffset()).parameterNames();
    expectEqual(tr("the names of the arguments"), text(names.join(' ')),
                QStringLiteral("module event jsonData"));
}

/// The names in one direction of the published catalogue, in its order.
QJsonArray catalogued(const QJsonObject &catalogue, QLatin1String direction)
{
    QJsonArray events;
    for (const QJsonValue &entry : catalogue.value(direction).toArray()) {
        if (entry[QLatin1String("subscribed")].toBool(true))
            events.append(entry[QLatin1String("event")]);
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
    expectEqual(tr("emittedEvents()"), QJsonArray::fromStringList(context.plugin().emittedEvents()),
                catalogued(catalogue, QLatin1String("emitted")));
    expectEqual(tr("subscribedEvents()"), QJsonArray::fromStringList(context.plugin().subscribedEvents()),
                catalogued(catalogue, QLatin1String("understood")));
}

/// The program ends after this check; resultOf() evaluates the exit code of the process.
void checkEndWithoutUnloading(CheckContext &context)
{
    context.makeDatabase();
    auto *plugin = qobject_cast<TrivexPluginInterface *>(instance(context));
    expect(plugin, tr("qobject_cast to the interface gives nothing"));
    plugin->pluginSlot(QStringLiteral("host"), QStringLiteral("run_saved_to_db"), {});
    plugin->settingsPage()->show();
}

} // namespace

QVector<Check> libraryChecks()
{
    return {
        {QStringLiteral("loading"), tr("the library loads as a plug-in of this host"), checkLoading},
        {QStringLiteral("metadata"),
         tr("its metadata are the interface's identifier and the class name only"), checkMetadata},
        {QStringLiteral("entry-points"),
         tr("its entry points give one root object, and a new one after its end"), checkEntryPoints},
        {QStringLiteral("casts"), tr("its root object is cast to the interface and back"), checkCasts},
        {QStringLiteral("virtual-order"), tr("the interface's functions and members stand in order"),
         checkVirtualOrder},
        {QStringLiteral("meta-object"), tr("its messages and its slot are visible by name"), checkMetaObject},
        {QStringLiteral("event-lists"), tr("it lists its events, all and in order"), checkEventLists},
        {QStringLiteral("ending"), tr("a host that never unloads it ends well"), checkEndWithoutUnloading},
    };
}
