#include "app/MainMenu.h"

#include "app/update/CheckForUpdatesView.h"
#include "kit/BoundText.h"
#include "ui/queue/BulkCommands.h"
#include "ui/queue/DownloadQueueView.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace vormel {

MainMenu::MainMenu(const Ports& ports, QObject* parent)
    : QObject(parent)
    , m_ports(ports)
    , m_program(addMenu(u"vormelMenu"_s))
    , m_queue(addMenu(u"queueMenu"_s))
    , m_selection(addMenu(u"selectionMenu"_s))
    , m_pages(addMenu(u"pagesMenu"_s))
    , m_help(addMenu(u"helpMenu"_s))
{
    fillProgramMenu();
    fillQueueMenu();
    fillPagesMenu();
    fillHelpMenu();
    connect(m_selection, &QMenu::aboutToShow, this, &MainMenu::fillSelectionMenu);
    bindTexts();
}

QMenu* MainMenu::addMenu(const QString& name)
{
    QMenu* const menu = m_ports.bar.addMenu(QString());
    menu->setObjectName(name);
    return menu;
}

void MainMenu::fillProgramMenu()
{
    auto* check = new CheckForUpdatesView(m_ports.updates, this);
    check->setObjectName(u"checkForUpdates"_s);
    m_program->addAction(check);
    m_program->addSeparator();
    m_quit = m_program->addAction(QString(), QKeySequence(Qt::CTRL | Qt::Key_Q), qApp, &QCoreApplication::quit);
    m_quit->setObjectName(u"quit"_s);
    m_quit->setMenuRole(QAction::QuitRole);
}

void MainMenu::fillQueueMenu()
{
    constexpr qsizetype firstBlock = 3; // adding, starting and pausing; the others clear
    const QList<QAction*> commands = m_ports.queue.queueActions();
    BulkCommands& bulk = m_ports.queue.bulkCommands();
    m_queue->setToolTipsVisible(true);
    m_queue->addActions(commands.first(firstBlock));
    m_queue->addAction(bulk.tryFailedAgain());
    m_queue->addSeparator();
    m_queue->addActions(commands.sliced(firstBlock) + bulk.removals());
    m_queue->addSeparator();
    m_queue->addActions(bulk.undos());
    connect(m_queue, &QMenu::aboutToShow, &bulk, &BulkCommands::refresh);
    connect(commands.front(), &QAction::triggered, this, &MainMenu::addRequested);
}

void MainMenu::fillSelectionMenu()
{
    m_selection->clear();
    m_ports.queue.fillSelectionMenu(*m_selection);
    if (m_selection->isEmpty())
        m_selection->addAction(pair(m_ports.settings.language.value(), u"No Selection", u"Nessuna selezione"))
            ->setEnabled(false);
}

void MainMenu::fillPagesMenu()
{
    for (const Page page : allPages) {
        const auto number = static_cast<std::size_t>(page);
        const QKeySequence key(QKeyCombination(Qt::ControlModifier, static_cast<Qt::Key>(Qt::Key_1 + number)));
        m_pageActions.at(number) =
            m_pages->addAction(QString(), key, this, [this, page] { Q_EMIT pageRequested(page); });
    }
}

void MainMenu::fillHelpMenu()
{
    // In English only, like the command for updates.
    QAction* const help = m_help->addAction(u"Vormel Help"_s, this, &MainMenu::helpRequested);
    help->setObjectName(u"vormelHelp"_s);
    help->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Slash), QKeySequence(Qt::Key_F1)}); // the first is shown
    m_help->addSeparator();
    m_about = m_help->addAction(QString(), this, &MainMenu::aboutRequested);
    m_about->setObjectName(u"about"_s);
    m_about->setMenuRole(QAction::AboutRole);
}

void MainMenu::bindTexts()
{
    const AppSettings& settings = m_ports.settings;
    m_program->setTitle(u"&Vormel"_s);
    bindText(m_queue, &QMenu::setTitle, settings, {u"&Queue", u"&Coda"});
    bindText(m_selection, &QMenu::setTitle, settings, {u"&Selection", u"&Selezione"});
    bindText(m_pages, &QMenu::setTitle, settings, {u"&Go", u"V&ai"});
    bindText(m_help, &QMenu::setTitle, settings, {u"&Help", u"A&iuto"});
    bindText(m_quit, &QAction::setText, settings, {u"&Quit", u"&Esci"});
    bindText(m_about, &QAction::setText, settings, {u"About Vormel", u"Informazioni su Vormel"});
    followLanguage(this, settings, [this] {
        for (const Page page : allPages)
            m_pageActions.at(static_cast<std::size_t>(page))
                ->setText(pageLabel(page, m_ports.settings.language.value()));
    });
}

} // namespace vormel
