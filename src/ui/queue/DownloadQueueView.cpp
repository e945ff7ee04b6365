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

#include <QDragEnterEvent>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace vormel {

DownloadQueueView::DownloadQueueView(DownloadManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_manager(manager)
    , m_model(new QueueModel(manager, this))
    , m_list(new QueueView(*m_model, this))
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
    connect(&manager.settings(), &AppSettings::languageSet, this, &DownloadQueueView::retranslate);
    showListOrEmptyState();
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
