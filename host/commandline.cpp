#include "host/commandline.h"

#include "host/validation/check.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>

namespace {

constexpr int longestTimeLimit = 3600; // seconds

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

/// The validator starts this program with it for each check.
QCommandLineOption inThisProcessOption()
{
    QCommandLineOption option(QStringLiteral("in-this-process"));
    option.setFlags(QCommandLineOption::HiddenFromHelp);
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
        {QStringLiteral("validate"),
         tr("Без окна: испытать плагин снаружи, как его видит программа хронометража. Каждая проверка идёт в "
            "своём процессе со своей временной базой; печатается строка PASSED, FAILED или SKIPPED с "
            "причиной "
            "и в конце итог."),
         tr("ФАЙЛ")},
        {QStringLiteral("json"), tr("Вместе с --validate: напечатать итог одним объектом JSON.")},
        {QStringLiteral("check"),
         tr("Вместе с --validate: только эта проверка, названная как в итоге. Можно повторять."), tr("ИМЯ")},
        {QStringLiteral("time-limit"),
         tr("Вместе с --validate: сколько секунд даётся каждой проверке. По умолчанию 30."), tr("СЕКУНДЫ")},
        inThisProcessOption(),
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
           "4 — плагин не ответил, 5 — часть входных строк не разобрана, 6 — работа прервана, "
           "7 — плагин не прошёл проверку, 8 — снимок не записан."));
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
    for (const QCommandLineOption &option : allOptions()) {
        if (!option.valueName().isEmpty() && parser.values(option).contains(QString()))
            m_errorText = tr("у --%1 пустое значение").arg(option.names().first());
    }
    if (!m_errorText.isEmpty())
        return;
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
    readValidation(parser);
    if (m_errorText.isEmpty())
        checkCombination();
}

void CommandLine::readValidation(const QCommandLineParser &parser)
{
    Validation::Request &request = m_options.validation;
    request.library = parser.value(QStringLiteral("validate"));
    request.asJson = parser.isSet(QStringLiteral("json"));
    request.checkNames = parser.values(QStringLiteral("check"));
    m_options.checksHere = parser.isSet(inThisProcessOption());
    for (const QString &name : request.checkNames) {
        if (!findCheck(name))
            m_errorText = tr("неизвестная проверка: %1").arg(name);
    }
    if (parser.isSet(QStringLiteral("time-limit")))
        request.timeLimit = parser.value(QStringLiteral("time-limit")).toInt();
    if (request.timeLimit < 1 || request.timeLimit > longestTimeLimit)
        m_errorText = tr("--time-limit должен быть целым числом от 1 до %1").arg(longestTimeLimit);
    const bool hasDetails = request.asJson || !request.checkNames.isEmpty() || m_options.checksHere
        || parser.isSet(QStringLiteral("time-limit"));
    if (hasDetails && request.library.isEmpty())
        m_errorText = tr("--json, --check и --time-limit нужны только вместе с --validate");
    if (m_options.checksHere && (request.checkNames.size() != 1 || m_options.homeFolder.isEmpty()))
        m_errorText = tr("проверке в этом процессе нужны --check и --home");
}

void CommandLine::checkCombination()
{
    if (m_options.documents && (m_options.fresh || !m_options.homeFolder.isEmpty()))
        m_errorText = tr("--documents не сочетается с --home и --fresh");
    const int ways = int(m_options.stdio) + int(m_options.due) + int(!m_options.playFile.isEmpty())
        + int(!m_options.validation.library.isEmpty());
    if (ways > 1)
        m_errorText = tr("--stdio, --due, --play и --validate исключают друг друга");
    if ((m_options.stdio || m_options.due) && !m_options.screenshotsFolder.isEmpty())
        m_errorText = tr("--screenshots не сочетается с --stdio и --due");
}
