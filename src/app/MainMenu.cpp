#include "app/MainMenu.h"

#include "app/update/CheckForUpdatesView.h"
#include "model/AppSettings.h"
#include "ui/queue/DownloadQueueView.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace vormel {

MainMenu::MainMenu(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_program(addMenu(QStringLiteral("vormelMenu")))
    , m_queue(addMenu(QStringLiteral("queueMenu")))
    , m_selection(addMenu(QStringLiteral("selectionMenu")))
    , m_pages(addMenu(QStringLiteral("pagesMenu")))
    , m_help(addMenu(QStringLiteral("helpMenu")))
{
    fillProgramMenu();
    fillQueueMenu();
    fillPagesMenu();
    fillHelpMenu();
    connect(m_selection, &QMenu::aboutToShow, this, &MainMenu::fillSelectionMenu);
    connect(&m_parts.settings, &AppSettings::languageSet, this, &MainMenu::retranslate);
    retranslate();
}

QMenu* MainMenu::addMenu(const QString& name)
{
    QMenu* const menu = m_parts.bar.addMenu(QString());
    menu->setObjectName(name);
    return menu;
}

void MainMenu::fillProgramMenu()
{
    auto* check = new CheckForUpdatesView(m_parts.updates, this);
    check->setObjectName(QStringLiteral("checkForUpdates"));
    m_program->addAction(check);
    m_program->addSeparator();
    m_quit = m_program->addAction(QString(), QKeySequence(Qt::CTRL | Qt::Key_Q), qApp, &QCoreApplication::quit);
    m_quit->setObjectName(QStringLiteral("quit"));
    m_quit->setMenuRole(QAction::QuitRole);
}

void MainMenu::fillQueueMenu()
{
    constexpr int lastOfFirstBlock = 2; // adding, starting and pausing; the others clear
    const QList<QAction*> commands = m_parts.queue.queueActions();
    m_queue->addActions(commands);
    m_queue->insertSeparator(commands.at(lastOfFirstBlock + 1));
    connect(commands.front(), &QAction::triggered, this, &MainMenu::addRequested);
}

void MainMenu::fillSelectionMenu()
{
    m_selection->clear();
    m_parts.queue.fillSelectionMenu(*m_selection);
    if (m_selection->isEmpty())
        m_selection->addAction(pair(m_parts.settings.language.value(), u"No Selection", u"Nessuna selezione"))
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
    QAction* const help = m_help->addAction(QStringLiteral("Vormel Help"), QKeySequence(Qt::CTRL | Qt::Key_Slash), this,
                                            &MainMenu::helpRequested);
    help->setObjectName(QStringLiteral("vormelHelp"));
}

void MainMenu::retranslate()
{
    const AppLanguage language = m_parts.settings.language.value();
    m_program->setTitle(QStringLiteral("&Vormel"));
    m_queue->setTitle(pair(language, u"&Queue", u"&Coda"));
    m_selection->setTitle(pair(language, u"&Selection", u"&Selezione"));
    m_pages->setTitle(pair(language, u"&Go", u"V&ai"));
    m_help->setTitle(pair(language, u"&Help", u"A&iuto"));
    m_quit->setText(pair(language, u"&Quit", u"&Esci"));
    for (const Page page : allPages)
        m_pageActions.at(static_cast<std::size_t>(page))->setText(pageLabel(page, language));
}

} // namespace vormel
