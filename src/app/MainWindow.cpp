#include "app/MainWindow.h"

#include "app/MainMenu.h"
#include "app/OfflineNotice.h"
#include "app/update/CheckForUpdatesViewModel.h"
#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/GlyphIcon.h"
#include "kit/QtTranslation.h"
#include "resolvers/ResolverTables.h"
#include "ui/accounts/AccountsView.h"
#include "ui/help/AboutWindow.h"
#include "ui/help/HelpWindowController.h"
#include "ui/notices/NoticeBar.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/settings/SettingsView.h"
#include "ui/shell/Sidebar.h"

#include <QApplication>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

MainWindow::MainWindow(const ViewPorts& ports, Updater& updater)
    : m_ports(ports)
    , m_splitter(new QSplitter(Qt::Horizontal, this))
    , m_sidebar(new Sidebar(settings(), this))
    , m_pages(new QStackedWidget(this))
    , m_queue(new DownloadQueueView(m_ports, m_pages))
    , m_help(new HelpWindowController(
          settings(), m_ports.manager.resolvers().profiles().of(SupportedHost::filestore).domain, *this))
{
    constexpr QSize minSize(700, 450);
    constexpr QSize usual(980, 640);
    setObjectName(u"mainWindow"_s);
    setWindowIcon(programIcon());
    setMinimumSize(minSize);
    resize(usual);
    new QtTranslation(settings(), this); // the window owns it
    layOut();
    buildMenu(updater);
    new OfflineNotice(m_ports.manager, m_ports.notices, this); // the window owns it
    openPage(Page::downloads);
    connect(m_sidebar, &Sidebar::pageChosen, this, &MainWindow::openPage);
    connect(m_queue, &DownloadQueueView::wanted, this, [this] { showPage(Page::downloads); });
    followLanguage(this, settings(), [this] { showTitle(); });
}

AppSettings& MainWindow::settings() const
{
    return m_ports.manager.settings();
}

void MainWindow::layOut()
{
    m_splitter->setObjectName(u"splitter"_s);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(1);
    m_splitter->addWidget(m_sidebar);
    auto* const side = new QWidget(m_splitter);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_pages, 1);
    column->addWidget(new NoticeBar(m_ports.notices, settings(), side));
    m_splitter->addWidget(side);
    m_splitter->handle(1)->setBackgroundRole(QPalette::Midlight);
    m_splitter->handle(1)->setAutoFillBackground(true); // a hairline in every style
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({Sidebar::idealWidth, width() - Sidebar::idealWidth});
    setCentralWidget(m_splitter);
}

void MainWindow::buildMenu(Updater& updater)
{
    auto* updates = new CheckForUpdatesViewModel(updater, this);
    const auto* menu = new MainMenu({*menuBar(), *m_queue, *updates, settings()}, this);
    connect(menu, &MainMenu::pageRequested, this, &MainWindow::showPage);
    connect(menu, &MainMenu::addRequested, this, [this] { showPage(Page::downloads); });
    connect(menu, &MainMenu::aboutRequested, this, &MainWindow::showAbout);
    connect(menu, &MainMenu::helpRequested, m_help, &HelpWindowController::showWindow);
}

void MainWindow::showAbout()
{
    QWidget* window = m_about;
    if (!window || !window->isVisible()) { // a closed one is deleted only after this turn of the event loop
        window = new AboutWindow({settings(), m_ports.tools, m_ports.web}, this);
        m_about = window;
    }
    window->show();
    window->raise();
    window->activateWindow();
}

Page MainWindow::page() const
{
    return m_sidebar->page();
}

void MainWindow::showPage(Page page)
{
    m_sidebar->setPage(page);
}

void MainWindow::showItem(const ItemId& id)
{
    if (QApplication::activeModalWidget())
        return; // what is open keeps its page
    showPage(Page::downloads);
    m_queue->goTo(id);
}

void MainWindow::offerLinks(const std::vector<Link>& links)
{
    m_queue->offerLinks(links);
}

void MainWindow::openPage(Page page)
{
    QWidget*& built = m_built.at(static_cast<std::size_t>(page));
    if (!built) {
        built = makePage(page);
        m_pages->addWidget(built);
    }
    m_pages->setCurrentWidget(built);
    showTitle();
}

QWidget* MainWindow::makePage(Page page)
{
    switch (page) {
    case Page::downloads: // is there from the beginning, as the menus need it
        return m_queue;
    case Page::accounts:
        return new AccountsView(m_ports, m_pages);
    case Page::settings:
        return new SettingsView(m_ports, m_pages);
    }
    Q_UNREACHABLE();
}

void MainWindow::showTitle()
{
    const AppLanguage language = settings().language.value();
    setWindowTitle(pageTitle(page(), language) + u" — Vormel"_s);
}

} // namespace vormel
