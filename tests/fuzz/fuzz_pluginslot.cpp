// Feeds the module with messages, clicks and changes of its database, all made of the fuzzer's bytes. The
// database is the same before each input; one instance of the module runs a number of inputs, as creating
// its windows takes most of the time. The inputs of the current instance are written to the folder
// GARAGE_FUZZ_HISTORY: after a crash, those files in order are the reproducer.

#include "bytereader.h"
#include "fuzzeddatabase.h"
#include "fuzzedjson.h"
#include "fuzzeduser.h"
#include "plugin/ruvalogarageplugin.h"

#include <QApplication>
#include <QFile>

#include <memory>

extern "C" {
int LLVMFuzzerInitialize(int *argc, char ***argv);
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
}

namespace {

constexpr int inputsPerLife = 200;
constexpr int mostActs = 16;

/// Messages of the platform plug-in, and of the view of a hidden page, which keeps its editor.
bool isNoise(const QString &text)
{
    return text.startsWith(QLatin1String("This plugin does not support "))
        || text == QLatin1String("edit: editing failed");
}

/// Qt's other warnings count as findings.
void judgeOutput(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg || isNoise(text))
        return;
    std::fprintf(stderr, "Qt said: %s\n", qPrintable(text));
    std::abort();
}

/// The inputs of the current instance of the module, one file per input, if the run requests them.
class History final
{
public:
    void append(const uint8_t *data, size_t size)
    {
        if (m_folder.isEmpty())
            return;
        QFile file(pathOf(m_count++));
        if (file.open(QIODevice::WriteOnly))
            file.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    void clear()
    {
        while (m_count > 0)
            QFile::remove(pathOf(--m_count));
    }

private:
    QString pathOf(int number) const
    {
        return QStringLiteral("%1/%2").arg(m_folder).arg(number, 4, 10, QLatin1Char('0'));
    }

    const QString m_folder = qEnvironmentVariable("GARAGE_FUZZ_HISTORY");
    int m_count = 0;
};

History history;

/// Painting takes most of the time and finds little: windows come up unseen but for few inputs.
class Curtain final : public QObject
{
public:
    void open(bool seen) { m_seen = seen; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched->isWidgetType() && event->type() == QEvent::Polish)
            static_cast<QWidget *>(watched)->setAttribute(Qt::WA_DontShowOnScreen, !m_seen);
        return event->type() == QEvent::UpdateRequest && !m_seen;
    }

private:
    bool m_seen = false;
};

/// The module and its host. Each request to the loader is completed at once, so that an input always runs the
/// same way.
class FuzzedModule final
{
    Q_DISABLE_COPY(FuzzedModule)
public:
    FuzzedModule() : m_user([this](ByteReader &bytes) { actAsHost(bytes); })
    {
        qApp->installEventFilter(&m_curtain);
        begin();
    }

    void run(ByteReader &bytes)
    {
        m_user.follow(bytes);
        const int setting = bytes.byte();
        const bool seen = setting % 16 == 1;
        m_curtain.open(seen);
        m_form->setAttribute(Qt::WA_DontShowOnScreen, !seen);
        m_plugin->settingsPage()->setAttribute(Qt::WA_DontShowOnScreen, !seen);
        if (m_database.restore())
            m_form->requestReload();
        if (setting % 4 < 2)
            m_form->show();
        for (int act = 0; act < mostActs && !bytes.atEnd(); ++act) {
            step(bytes);
            if (bytes.below(4) == 0)
                QCoreApplication::processEvents();
        }
        bytes.drop(); // what still opens is dismissed
        QCoreApplication::processEvents();
        m_database.check();
        m_form->hide();
        m_plugin->settingsPage()->hide();
        if (++m_inputs % inputsPerLife == 0)
            renew();
    }

private:
    void begin()
    {
        m_plugin = std::make_unique<RuvaloGaragePlugin>();
        QObject::connect(m_plugin.get(), &TrivexPluginInterface::pluginSignal, m_plugin.get(),
                         [this](const QString &, const QString &event, const QJsonObject &data) {
                             if (!m_plugin->emittedEvents().contains(event))
                                 qFatal("Not announced: %s", qPrintable(event));
                             if (event == QLatin1String("insert_tab"))
                                 m_form = reinterpret_cast<GarageForm *>(quintptr(
                                     data.value(QLatin1String("tabWidget")).toVariant().toLongLong()));
                         });
        m_plugin->pluginSlot(QStringLiteral("host"), QStringLiteral("clicked"),
                             {{QStringLiteral("key"), QStringLiteral("show_garage")}});
        m_form->resize(700, 300);
        GarageUpdater *loader = &m_form->updater();
        const auto settle = [loader] {
            QMetaObject::invokeMethod(
                loader, [] {}, Qt::BlockingQueuedConnection);
        };
        QObject::connect(m_form, &GarageForm::reloadGarageStats, m_form, settle);
        QObject::connect(m_form, &GarageForm::updateServiceTable, m_form, settle);
        QObject::connect(m_form, &GarageForm::deleteOperation, m_form, settle);
        m_form->requestReload();
        QCoreApplication::processEvents();
    }

    void end()
    {
        m_plugin.reset();
        QCoreApplication::processEvents();
    }

    void renew()
    {
        end();
        if (QSqlDatabase::connectionNames().size() != 1)
            qFatal("A connection was left");
        m_database.restore();
        history.clear();
        begin();
    }

    void step(ByteReader &bytes)
    {
        const int kind = bytes.below(16);
        if (kind < 10) {
            actAsHost(bytes);
        } else if (kind < 14) {
            m_user.act(*m_form);
        } else {
            QWidget *page = m_plugin->settingsPage();
            if (bytes.below(8) == 0)
                page->show();
            m_user.act(*page);
        }
    }

    void actAsHost(ByteReader &bytes)
    {
        if (bytes.below(12) == 11) {
            m_database.change(bytes);
            return;
        }
        const QString event = FuzzedJson::eventName(bytes);
        m_plugin->pluginSlot(QStringLiteral("host"), event, FuzzedJson::object(bytes));
    }

    FuzzedDatabase m_database;
    std::unique_ptr<RuvaloGaragePlugin> m_plugin;
    GarageForm *m_form = nullptr;
    Curtain m_curtain;
    FuzzedUser m_user;
    int m_inputs = 0;
};

FuzzedModule *module = nullptr;

} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(judgeOutput);
    static int arguments = 1; // the fuzzer's options are none of Qt's
    Q_UNUSED(argc)
    new QApplication(arguments, *argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // Never deleted: when the fuzzer ends the process, Qt's own statics go first.
    module = new FuzzedModule;
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    history.append(data, size);
    ByteReader bytes(data, size);
    module->run(bytes);
    return 0;
}
