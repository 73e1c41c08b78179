#pragma once

#include "bench/benchdata.h"
#include "garage/garageform.h"
#include "settings/garagesettingsform.h"

#include <QEventLoop>

#include <memory>

class QTreeView;

/// The garage window on the file of a shape, shown and loaded.
class ShownWindow final
{
    Q_DISABLE_COPY(ShownWindow)
public:
    explicit ShownWindow(const BenchShape &shape);

    void reload();
    QTreeView *table() const;

private:
    void waitForReload();

    const BenchHome m_home;
    QEventLoop m_loop;
    int m_awaited = 0;
    std::unique_ptr<GarageSettingsForm> m_settings;
    std::unique_ptr<GarageForm> m_form;
};
