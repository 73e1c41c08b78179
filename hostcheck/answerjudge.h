#pragma once

#include <QElapsedTimer>
#include <QLatin1String>
#include <QTimer>
#include <QVector>

#include <functional>

class Findings;

/// Waits for what the host must do after a message of the plug-in.
class AnswerJudge final
{
public:
    static constexpr int limit = 5000; // milliseconds
    static constexpr int limitAtEnd = 300; // milliseconds; a younger request may be unanswered at the end

    explicit AnswerJudge(Findings &findings);

    /// Reports the finding unless isMet returns true within the limit.
    void expect(QLatin1String id, const QString &seenOtherwise, std::function<bool()> isMet);
    void forget(QLatin1String id);
    /// Called after each message and regularly.
    void check();
    /// The application was asked to quit; it may decline.
    void judgeQuit();
    void judgeEnd();

private:
    struct Expectation
    {
        QLatin1String id;
        QString seenOtherwise;
        std::function<bool()> isMet;
        QElapsedTimer age;
    };

    void reportOlderThan(int milliseconds);

    Findings &m_findings;
    QVector<Expectation> m_expectations;
    QTimer m_timer;
};
