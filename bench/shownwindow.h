#pragma once

#include "bench/benchdata.h"
#include "garage/garageform.h"
#include "settings/garagesettingsform.h"

#include <QEventLoop>

#include <memory>

class QTreeView;

/// The garage window on the file of a shape, shown with its maintenance table and loaded.
class ShownWindow final
{
    Q_DISABLE_COPY(ShownWindow)
public:
    explicit ShownWindow(const BenchShape &shape);

    void reload();
    QTreeView *table() const;
    /// Shows the service log.
    QTreeView *openLog();
    GarageForm &form() const { return *m_form; }

private:
    void waitForReload();

    const BenchHome m_home;
    QEventLoop m_loop;
    int m_awaited = 0;
    std::unique_ptr<GarageSettingsForm> m_settings;
    std::unique_ptr<GarageForm> m_form;
};
