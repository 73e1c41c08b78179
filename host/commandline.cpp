#include "commandline.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("CommandLine", text);
}

const QCommandLineOption &helpOption()
{
    static const QCommandLineOption option({QStringLiteral("h"), QStringLiteral("help")},
                                           tr("Показать эту справку."));
    return option;
}

QList<QCommandLineOption> allOptions()
{
    return {
        helpOption(),
        {QStringLiteral("stdio"),
         tr("Без окна: каждая строка стандартного ввода {\"module\":…,\"event\":…,\"data\":{…}} передаётся "
            "плагину, каждое его событие печатается такой же строкой. Завершается в конце ввода.")},
        {QStringLiteral("due"), tr("Без окна: напечатать, какое обслуживание требуется, и завершиться.")},
        {QStringLiteral("play"),
         tr("Сыграть плагину события из файла: строки JSON как у --stdio, а также {\"wait\":миллисекунды}, "
            "{\"wait\":\"answer\"} и {\"screenshot\":\"имя\"}; годится и сохранённый журнал. События плагина "
            "печатаются. Завершается в конце файла."),
         tr("ФАЙЛ")},
        {QStringLiteral("screenshots"),
         tr("Пройти по окну, сохранить снимки в папку и завершиться; вместе с --play — только папка для "
            "снимков. Без экрана так и происходит, снимки ложатся в папку программы."),
         tr("ПАПКА")},
        {QStringLiteral("plugin"),
         tr("Библиотека плагина. По умолчанию libruvalogarage.so рядом с программой."), tr("ФАЙЛ")},
        {QStringLiteral("home"),
         tr("Папка, где программа держит свои данные. По умолчанию garage-host в папке данных пользователя."),
         tr("ПАПКА")},
        {QStringLiteral("documents"),
         tr("Работать с настоящими документами пользователя. Примеры данных туда не записываются.")},
        {QStringLiteral("data"),
         tr("Чем наполнить новую базу: empty (только таблицы), sample (24 карта, четыре недели) или season "
            "(60 картов, 3 000 000 кругов, 20 000 записей). По умолчанию sample."),
         tr("ВИД")},
        {QStringLiteral("seed"), tr("Число, из которого выводятся примеры данных. По умолчанию 1."),
         tr("ЧИСЛО")},
        {QStringLiteral("fresh"), tr("Сначала удалить прежнюю базу из папки программы.")},
    };
}

const QMap<QString, SampleKind> &sampleKinds()
{
    static const QMap<QString, SampleKind> kinds = {{QStringLiteral("empty"), SampleKind::Empty},
                                                    {QStringLiteral("sample"), SampleKind::Sample},
                                                    {QStringLiteral("season"), SampleKind::Season}};
    return kinds;
}

} // namespace

CommandLine::CommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Демонстрационное приложение для модуля «Гараж»: загружает плагин и разговаривает с ним, как это "
           "делает программа хронометража.\n\n"
           "Коды завершения: 0 — успех, 1 — неверные параметры, 2 — плагин не загружен, 3 — нет базы данных, "
           "4 — плагин не ответил, 5 — часть входных строк не разобрана, 6 — работа прервана."));
    parser.addOptions(allOptions());
    m_helpText = parser.helpText();
    if (!parser.parse(arguments)) {
        m_errorText = parser.errorText();
        return;
    }
    if (!parser.positionalArguments().isEmpty()) {
        m_errorText = tr("лишний параметр: %1").arg(parser.positionalArguments().first());
        return;
    }
    m_wantsHelp = parser.isSet(helpOption());
    read(parser);
}

void CommandLine::read(const QCommandLineParser &parser)
{
    m_options.stdio = parser.isSet(QStringLiteral("stdio"));
    m_options.due = parser.isSet(QStringLiteral("due"));
    m_options.documents = parser.isSet(QStringLiteral("documents"));
    m_options.fresh = parser.isSet(QStringLiteral("fresh"));
    m_options.playFile = parser.value(QStringLiteral("play"));
    m_options.screenshotsFolder = parser.value(QStringLiteral("screenshots"));
    m_options.pluginFile = parser.value(QStringLiteral("plugin"));
    m_options.homeFolder = parser.value(QStringLiteral("home"));

    const QString kind = parser.value(QStringLiteral("data"));
    if (!kind.isEmpty() && !sampleKinds().contains(kind))
        m_errorText = tr("неизвестный вид данных: %1 (есть empty, sample, season)").arg(kind);
    m_options.data = sampleKinds().value(kind, SampleKind::Sample);

    bool isNumber = true;
    if (parser.isSet(QStringLiteral("seed")))
        m_options.seed = parser.value(QStringLiteral("seed")).toUInt(&isNumber);
    if (!isNumber)
        m_errorText = tr("--seed должен быть целым числом от 0");
    if (m_errorText.isEmpty())
        checkCombination();
}

void CommandLine::checkCombination()
{
    if (m_options.documents && (m_options.fresh || !m_options.homeFolder.isEmpty()))
        m_errorText = tr("--documents не сочетается с --home и --fresh");
    const int ways = int(m_options.stdio) + int(m_options.due) + int(!m_options.playFile.isEmpty());
    if (ways > 1)
        m_errorText = tr("--stdio, --due и --play исключают друг друга");
    if ((m_options.stdio || m_options.due) && !m_options.screenshotsFolder.isEmpty())
        m_errorText = tr("--screenshots не сочетается с --stdio и --due");
}
