#include "ui/queue/DownloadQueueView.h"

#include "engine/DownloadManager.h"
#include "ui/kit/EmptyState.h"
#include "ui/kit/Separator.h"
#include "ui/queue/DropOverlay.h"
#include "ui/queue/DroppedLinks.h"
#include "ui/queue/QueueModel.h"
#include "ui/queue/QueueToolBar.h"
#include "ui/queue/QueueView.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"

#include <QDragEnterEvent>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace vormel {

DownloadQueueView::DownloadQueueView(const ViewPorts& ports, QWidget* parent)
    : QWidget(parent)
    , m_manager(ports.manager)
    , m_model(new QueueModel(ports.manager, ports.clock, this))
    , m_list(new QueueView(*m_model, RowCommands(ports), this))
    , m_empty(new EmptyState(Glyph::arrowDownCircle, this))
    , m_pages(new QStackedLayout)
    , m_overlay(new DropOverlay(this))
{
    setObjectName(QStringLiteral("downloadQueueView"));
    setAcceptDrops(true);
    layOut();
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model, signal, this, &DownloadQueueView::showListOrEmptyState);
    connect(m_model, &QAbstractItemModel::modelReset, this, &DownloadQueueView::showListOrEmptyState);
    connect(&m_manager, &DownloadManager::changed, this, &DownloadQueueView::showQuestions);
    connect(&m_manager.settings(), &AppSettings::languageSet, this, &DownloadQueueView::retranslate);
    showListOrEmptyState();
    showQuestions();
    retranslate();
}

void DownloadQueueView::layOut()
{
    auto* toolBar = new QueueToolBar(m_manager, this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolBar);
    column->addWidget(new Separator(Qt::Horizontal, this));
    column->addLayout(m_pages, 1);
    m_empty->setObjectName(QStringLiteral("queueEmptyState"));
    m_empty->setAutoFillBackground(true);
    m_empty->setBackgroundRole(QPalette::Base);
    m_pages->addWidget(m_list);
    m_pages->addWidget(m_empty);
    setTabOrder(toolBar, m_list);
    connect(toolBar, &QueueToolBar::addRequested, this, &DownloadQueueView::showAddURLs);
}

void DownloadQueueView::retranslate()
{
    const AppLanguage language = m_manager.settings().language.value();
    m_list->setAccessibleName(pair(language, u"Downloads", u"Download"));
    m_empty->setTexts(pair(language, u"No Downloads", u"Nessun download"),
                      pair(language, u"Press + to add URLs, or drag and drop links here.",
                           u"Premi + per aggiungere URL, o trascina i link qui."));
    m_overlay->setText(pair(language, u"Drop URLs to add", u"Trascina URL qui"));
}

void DownloadQueueView::showListOrEmptyState()
{
    if (m_model->rowCount() > 0)
        m_pages->setCurrentWidget(m_list);
    else
        m_pages->setCurrentWidget(m_empty);
}

void DownloadQueueView::showAddURLs()
{
    if (m_sheet)
        return;
    m_sheet = new AddURLView(m_manager.settings(), m_manager.resolvers(), this);
    m_sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_sheet, &AddURLView::added, &m_manager, &DownloadManager::addURLs);
    m_sheet->open();
}

void DownloadQueueView::showQuestions()
{
    const std::optional<PendingExtractionPassword> pending = m_manager.pendingExtractionPassword();
    if (pending == m_askedPassword)
        return;
    m_askedPassword = pending;
    if (m_passwordSheet) {
        m_passwordSheet->disconnect(this); // the question went by itself
        m_passwordSheet->close();
    }
    if (pending)
        askPassword(*pending);
}

void DownloadQueueView::askPassword(const PendingExtractionPassword& question)
{
    m_passwordSheet = new ArchivePasswordSheetView(question, m_manager.settings(), this);
    m_passwordSheet->setAttribute(Qt::WA_DeleteOnClose);
    // The same question may come again, and is to have a fresh form then.
    connect(m_passwordSheet, &ArchivePasswordSheetView::confirmed, this, [this](const QString& password) {
        m_askedPassword.reset();
        m_manager.submitExtractionPassword(password);
    });
    connect(m_passwordSheet, &ArchivePasswordSheetView::rejected, this, [this] {
        m_askedPassword.reset();
        m_manager.cancelExtractionPassword();
    });
    m_passwordSheet->open();
}

void DownloadQueueView::dragEnterEvent(QDragEnterEvent* event)
{
    if (droppedLinks(*event->mimeData()).empty())
        return;
    event->acceptProposedAction();
    m_overlay->raise(); // a change of list and empty state puts those in front
    m_overlay->show();
}

void DownloadQueueView::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    m_overlay->hide();
}

void DownloadQueueView::dropEvent(QDropEvent* event)
{
    m_overlay->hide();
    const std::vector<Link> links = droppedLinks(*event->mimeData());
    if (links.empty())
        return;
    event->acceptProposedAction();
    m_manager.addURLs(links, std::nullopt);
}

void DownloadQueueView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_overlay->setGeometry(rect());
}

} // namespace vormel
