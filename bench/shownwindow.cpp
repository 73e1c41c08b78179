#include "bench/shownwindow.h"

#include <QTabWidget>
#include <QTreeView>

ShownWindow::ShownWindow(const BenchShape &shape) : m_home(shape)
{
    m_home.enter();
    m_settings = std::make_unique<GarageSettingsForm>();
    m_form = std::make_unique<GarageForm>();
    m_form->setReglament(m_settings->reglamentModel());
    m_form->resize(1920, 1080);
    m_form->findChild<QTabWidget *>()->setCurrentIndex(1);
    QObject::connect(m_form.get(), &GarageForm::reloadGarageStats, &m_loop, [this] { ++m_awaited; });
    // After the window's own slot, so that what it changed is painted next.
    QObject::connect(
        &m_form->updater(), &GarageUpdater::garageStatsUpdated, &m_loop, [this] { --m_awaited; },
        Qt::QueuedConnection);
    m_form->show();
    waitForReload();
}

void ShownWindow::reload()
{
    m_form->requestReload();
    waitForReload();
}

QTreeView *ShownWindow::table() const
{
    return m_form->findChild<QTreeView *>(QStringLiteral("tvMaintainanceTable"));
}

QTreeView *ShownWindow::openLog()
{
    auto *log = m_form->findChild<QTreeView *>(QStringLiteral("tvServiceLog"));
    m_form->findChild<QTabWidget *>()->setCurrentIndex(2);
    m_loop.processEvents();
    return log;
}

void ShownWindow::waitForReload()
{
    while (m_awaited > 0)
        m_loop.processEvents(QEventLoop::WaitForMoreEvents);
    m_loop.processEvents();
}
