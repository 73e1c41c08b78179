#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Reports that the program is asked to end by SIGINT or SIGTERM. The second signal ends it at once.
class EndSignal final : public QObject
{
    Q_OBJECT
public:
    explicit EndSignal(QObject *parent = nullptr);
    ~EndSignal() override;

signals:
    void received();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
