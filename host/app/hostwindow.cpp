#include "host/app/hostwindow.h"

#include "host/app/demohost.h"
#include "host/app/hostsettingsdialog.h"
#include "host/database/datafolder.h"
#include "host/fleet/fleetpanel.h"
#include "host/messages/messagelogpanel.h"
#include "host/remote/remotepanel.h"
#include "host/track/trackpanel.h"
#include "host/widgets/noticelabel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

QPixmap grabWithMenu(QWidget &window)
{
    QPixmap picture = window.grab();
    if (QWidget *menu = QApplication::activePopupWidget())
        QPainter(&picture).drawPixmap(window.mapFromGlobal(menu->pos()), menu->grab());
    return picture;
}

/// `part` is in the window's coordinates.
QPixmap partOf(const QPixmap &picture, const QRect &part)
{
    const qreal ratio = picture.devicePixelRatio();
    return picture.copy(QRectF(part.topLeft() * ratio, QSizeF(part.size()) * ratio).toRect());
}

} // namespace

HostWindow::HostWindow(DemoHost &host, const DataFolder &folder)
    : m_host(host), m_tabs(new QTabWidget), m_pluginTabs(host.plugin(), *m_tabs)
{
    setWindowTitle(tr("Kart track: garage module demo"));
    resize(QSize(1280, 800).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 9 / 10));
    setAnimated(false);
    m_tabs->setObjectName(QStringLiteral("hostTabWidget"));
    m_tabs->addTab(new TrackPanel(host.track(), host.fleet()), tr("Track"));
    m_tabs->addTab(new FleetPanel(host.fleet()), tr("Karts and people"));
    m_tabs->addTab(new RemotePanel(host.remote(), host.fleet(), host.web()), tr("Remote side"));
    m_tabs->addTab(new MessageLogPanel(host.messageLog(), host.plugin()), tr("Message log"));

    auto *central = new QWidget;
    auto *layout = new QVBoxLayout(central);
    auto *notice = new NoticeLabel("writeNoticeLabel");
    connect(&host.fleet(), &FleetController::writeNoticeChanged, notice,
            [notice](const QString &text) { notice->showText(text); });
    layout->addWidget(makeBanner(folder));
    layout->addWidget(notice);
    layout->addWidget(m_tabs, 1);
    setCentralWidget(central);
    makeToolBar();
}

HostWindow::~HostWindow()
{
    delete m_settings;
    m_pluginTabs.releaseWindows();
}

QWidget *HostWindow::makeBanner(const DataFolder &folder)
{
    const bool isReal = folder.isUserDocuments();
    auto *banner = new QLabel(
        isReal ? tr("Attention: these are the user's real documents. File: %1").arg(folder.databasePath())
               : tr("Demo data. File: %1").arg(folder.databasePath()));
    banner->setObjectName(QStringLiteral("bannerLabel"));
    banner->setTextInteractionFlags(Qt::TextSelectableByMouse);
    banner->setWordWrap(true);
    banner->setMargin(6);
    banner->setAutoFillBackground(true);
    banner->setBackgroundRole(isReal ? QPalette::Highlight : QPalette::ToolTipBase);
    banner->setForegroundRole(isReal ? QPalette::HighlightedText : QPalette::ToolTipText);
    return banner;
}

void HostWindow::makeToolBar()
{
    auto *bar = addToolBar(tr("Sections"));
    bar->setObjectName(QStringLiteral("sectionsToolBar"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction *garage =
        addSection(*bar, QStyle::SP_DirHomeIcon, QLatin1Char('&') + m_host.plugin().caption(), Qt::Key_F2);
    garage->setObjectName(QStringLiteral("openGarageAction"));
    QAction *settings = addSection(*bar, QStyle::SP_FileDialogDetailedView, tr("&Settings"), Qt::Key_F3);
    settings->setObjectName(QStringLiteral("openSettingsAction"));
    connect(garage, &QAction::triggered, this, &HostWindow::openGarage);
    connect(settings, &QAction::triggered, this, &HostWindow::openSettings);
}

QAction *HostWindow::addSection(QToolBar &bar, QStyle::StandardPixmap icon, const QString &text, Qt::Key key)
{
    QAction *action = bar.addAction(style()->standardIcon(icon), text);
    action->setIconText(text); // a tool button takes its mnemonic from this text only
    action->setShortcut(key);
    const QString plainText = QString(text).remove(QLatin1Char('&'));
    action->setToolTip(
        QStringLiteral("%1 (%2)").arg(plainText, action->shortcut().toString(QKeySequence::NativeText)));
    return action;
}

void HostWindow::start()
{
    if (const Result result = m_host.remote().prepare(); !result)
        QMessageBox::warning(this, tr("The remote side is not available"), result.errorText());
    show();
    m_host.fleet().sendStartSequence();
}

void HostWindow::openGarage()
{
    m_host.plugin().send(QStringLiteral("clicked"), {{QStringLiteral("key"), QStringLiteral("show_garage")}});
}

void HostWindow::openSettings()
{
    if (!m_settings) {
        m_settings = new HostSettingsDialog(m_host.plugin(), this);
        m_settings->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_settings->open();
}

void HostWindow::closeSettings()
{
    if (m_settings)
        m_settings->close();
}

Result HostWindow::saveScreenshot(const QString &folder, const QString &name, const QRect &part)
{
    QWidget *dialog = QApplication::activeModalWidget();
    const QPixmap picture = grabWithMenu(dialog ? *dialog : *this);
    const QString fileName = QDir(folder).filePath(name + QLatin1String(".png"));
    const bool isSaved =
        QDir().mkpath(folder) && (part.isNull() ? picture : partOf(picture, part)).save(fileName);
    return isSaved ? Result::success() : Result::error(tr("screenshot %1 not saved").arg(fileName));
}

void HostWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    emit closed();
}
