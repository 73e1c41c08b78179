#pragma once

#include <QHash>
#include <QJsonObject>
#include <QSet>
#include <QString>

class Findings;

/// Judges each message of the host by docs/protocol, and which events came at all.
class MessageJudge final
{
public:
    explicit MessageJudge(Findings &findings) : m_findings(findings) { }

    void judge(const QString &event, const QJsonObject &data);
    void judgeEnd();
    /// How often the event came.
    int count(const QString &event) const { return m_counts.value(event); }

private:
    void judgeShape(const QString &event, const QJsonObject &data);
    void judgeCar(const QString &event, const QJsonValue &carId);
    void readCars(const QJsonObject &data);

    Findings &m_findings;
    QHash<QString, int> m_counts;
    QSet<int> m_cars;
};
