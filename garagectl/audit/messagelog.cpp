#include "garagectl/audit/messagelog.h"

#include "garagectl/exitcode.h"
#include "garagectl/wording.h"

#include <QFile>
#include <QJsonDocument>

namespace {

constexpr int longestAnswerSeconds = 10;

QString faultAt(int line, const QString &reason)
{
    return text("line %1: %2", "строка %1: %2").arg(QString::number(line), reason);
}

} // namespace

bool MessageLog::endsSoonAfter(const Message &message) const
{
    const QDateTime last = messages.isEmpty() ? QDateTime() : messages.last().time;
    return last.isValid() && message.time.isValid() && message.time.secsTo(last) < longestAnswerSeconds;
}

void MessageLog::addLine(int line, const QByteArray &content)
{
    const QByteArray bytes = content.trimmed();
    if (bytes.isEmpty())
        return;
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(bytes, &error).object();
    const QString event = object.value(QLatin1String("event")).toString();
    if (error.error != QJsonParseError::NoError) {
        malformedLines.append(faultAt(line, error.errorString()));
    } else if (event.isEmpty()) {
        malformedLines.append(faultAt(line, text("no event", "нет события")));
    } else {
        const QString time = object.value(QLatin1String("time")).toString();
        messages.append({line, QDateTime::fromString(time, Qt::ISODateWithMs), event,
                         object.value(QLatin1String("data")).toObject()});
    }
}

MessageLog MessageLog::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Failure {ExitCode::BadUsage,
                       text("cannot read the message log %1: %2", "журнал обмена %1 не прочитан: %2")
                           .arg(path, file.errorString())};
    }
    MessageLog log;
    for (int line = 1; !file.atEnd(); ++line)
        log.addLine(line, file.readLine());
    return log;
}
