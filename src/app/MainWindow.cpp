#include "app/MainWindow.h"

#include "engine/DownloadManager.h"
#include "ui/accounts/AccountsView.h"
#include "ui/kit/GlyphIcon.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/settings/SettingsView.h"
#include "ui/shell/Sidebar.h"

#include <QCoreApplication>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>

namespace vormel {

MainWindow::MainWindow(const ViewPorts& ports)
    : m_ports(ports)
    , m_sidebar(new Sidebar(settings(), this))
    , m_pages(new QStackedWidget(this))
{
    constexpr QSize smallest(700, 450);
    constexpr QSize usual(980, 640);
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(programIcon());
    setMinimumSize(smallest);
    resize(usual);
    layOut();
    buildMenu();
    openPage(Page::downloads);
    connect(m_sidebar, &Sidebar::pageChosen, this, &MainWindow::openPage);
    connect(&settings(), &AppSettings::languageSet, this, &MainWindow::retranslate);
}

AppSettings& MainWindow::settings() const
{
    return m_ports.manager.settings();
}

void MainWindow::layOut()
{
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(1);
    splitter->addWidget(m_sidebar);
    splitter->addWidget(m_pages);
    splitter->handle(1)->setBackgroundRole(QPalette::Midlight);
    splitter->handle(1)->setAutoFillBackground(true); // a hairline in every style
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({Sidebar::idealWidth, width() - Sidebar::idealWidth});
    setCentralWidget(splitter);
}

void MainWindow::buildMenu()
{
    m_menu = menuBar()->addMenu(QStringLiteral("&Vormel"));
    m_menu->setObjectName(QStringLiteral("vormelMenu"));
    m_quit = m_menu->addAction(QString(), QKeySequence(Qt::CTRL | Qt::Key_Q), qApp, &QCoreApplication::quit);
    m_quit->setObjectName(QStringLiteral("quit"));
    m_quit->setMenuRole(QAction::QuitRole);
}

Page MainWindow::page() const
{
    return m_sidebar->page();
}

void MainWindow::showPage(Page page)
{
    m_sidebar->setPage(page);
}

void MainWindow::openPage(Page page)
{
    QWidget*& built = m_built.at(static_cast<std::size_t>(page));
    if (!built) {
        built = makePage(page);
        m_pages->addWidget(built);
    }
    m_pages->setCurrentWidget(built);
    retranslate();
}

QWidget* MainWindow::makePage(Page page)
{
    switch (page) {
    case Page::downloads:
        return new DownloadQueueView(m_ports, m_pages);
    case Page::accounts:
        return new AccountsView(settings(), m_pages);
    case Page::settings:
        return new SettingsView(m_ports, m_pages);
    }
    Q_UNREACHABLE();
}

void MainWindow::retranslate()
{
    const AppLanguage language = settings().language.value();
    setWindowTitle(pageTitle(page(), language) + QStringLiteral(" — Vormel"));
    m_quit->setText(pair(language, u"&Quit", u"&Esci"));
}

} // namespace vormel
