#include "ui/queue/DownloadQueueView.h"

#include "engine/DownloadManager.h"
#include "kit/AcceptCopy.h"
#include "kit/BoundText.h"
#include "kit/EmptyState.h"
#include "kit/Separator.h"
#include "ui/queue/BulkCommands.h"
#include "ui/queue/DropOverlay.h"
#include "ui/queue/DroppedLinks.h"
#include "ui/queue/MissingToolsBanner.h"
#include "ui/queue/QueueNotices.h"
#include "ui/queue/QueueSheets.h"
#include "ui/queue/QueueToolBar.h"
#include "ui/queue/accessibility/AccessibleQueue.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/list/RowMenus.h"
#include "ui/queue/tree/QueueModel.h"

#include <QDragEnterEvent>
#include <QStackedLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Assistive technology may ask for the list as soon as it is there, and keeps what it gets.
QueueView* makeList(QueueModel& model, const ViewPorts& ports, QWidget* parent)
{
    installQueueAccessibility();
    return new QueueView(model, RowCommands(ports), parent);
}

} // namespace

DownloadQueueView::DownloadQueueView(const ViewPorts& ports, QWidget* parent)
    : QWidget(parent)
    , m_manager(ports.manager)
    , m_model(new QueueModel(ports.manager, ports.clock, this))
    , m_toolBar(new QueueToolBar(ports, this))
    , m_list(makeList(*m_model, ports, this))
    , m_empty(new EmptyState(Glyph::arrowDownCircle, this))
    , m_pages(new QStackedLayout)
    , m_overlay(new DropOverlay(this))
    , m_sheets(new QueueSheets(ports, *this))
    , m_bulk(new BulkCommands(
          ports.manager, [sheets = m_sheets](QDialog* sheet) { sheets->show(sheet); }, this))
{
    setObjectName(u"downloadQueueView"_s);
    setAcceptDrops(true);
    layOut(ports);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model, signal, this, &DownloadQueueView::showListOrEmptyState);
    connect(m_model, &QAbstractItemModel::modelReset, this, &DownloadQueueView::showListOrEmptyState);
    connect(m_sheets, &QueueSheets::pageWanted, this, &DownloadQueueView::wanted);
    new QueueNotices(m_manager, ports.notices, this);
    connect(&m_manager.additions(), &Additions::told, this, [this](const Addition& addition) {
        if (addition.isFirst) // containers are read later on, when the user may be elsewhere in the list
            m_list->reveal(addition.items);
    });
    bindTexts(m_manager.settings());
    showListOrEmptyState();
}

void DownloadQueueView::layOut(const ViewPorts& ports)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_toolBar);
    column->addWidget(new Separator(Qt::Horizontal, this));
    column->addLayout(m_pages, 1);
    column->addWidget(new MissingToolsBanner(ports.tools, m_manager.settings(), this));
    m_empty->setObjectName(u"queueEmptyState"_s);
    m_empty->setAutoFillBackground(true);
    m_empty->setBackgroundRole(QPalette::Base);
    m_pages->addWidget(m_list);
    m_pages->addWidget(m_empty);
    connect(m_toolBar, &QueueToolBar::addRequested, this, &DownloadQueueView::showAddURLs);
}

void DownloadQueueView::bindTexts(const AppSettings& settings)
{
    bindText(m_list, &QWidget::setAccessibleName, settings, {u"Downloads", u"Download"});
    bindText(m_empty, &EmptyState::setTitle, settings, {u"No Downloads", u"Nessun download"});
    bindText(
        m_empty, &EmptyState::setText, settings,
        {u"Press + to add URLs, or drag and drop links here.", u"Premi + per aggiungere URL, o trascina i link qui."});
    bindText(m_overlay, &DropOverlay::setText, settings, {u"Drop URLs to add", u"Trascina URL qui"});
}

void DownloadQueueView::showListOrEmptyState()
{
    if (m_model->rowCount() > 0)
        m_pages->setCurrentWidget(m_list);
    else
        m_pages->setCurrentWidget(m_empty);
}

void DownloadQueueView::goTo(const ItemId& id)
{
    m_list->goTo(id);
    m_list->setFocus();
}

void DownloadQueueView::showAddURLs()
{
    m_sheets->showAddURLs();
}

void DownloadQueueView::offerLinks(const std::vector<Link>& links)
{
    m_sheets->offerLinks(links);
}

QList<QAction*> DownloadQueueView::queueActions() const
{
    return m_toolBar->commands();
}

void DownloadQueueView::fillSelectionMenu(QMenu& menu)
{
    m_list->menus().fill(menu, m_list->selectedRow());
}

void DownloadQueueView::dragEnterEvent(QDragEnterEvent* event)
{
    if (!mayHoldLinks(*event->mimeData()) || !acceptCopy(*event))
        return;
    m_overlay->raise(); // a change of list and empty state puts those in front
    m_overlay->show();
}

void DownloadQueueView::dragMoveEvent(QDragMoveEvent* event)
{
    acceptCopy(*event); // only what was let in gets so far
}

void DownloadQueueView::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    m_overlay->hide();
}

void DownloadQueueView::dropEvent(QDropEvent* event)
{
    m_overlay->hide();
    if (!acceptCopy(*event))
        return;
    for (const std::vector<Link>& links : droppedLinks(*event->mimeData()))
        m_manager.addURLs(links, std::nullopt);
}

void DownloadQueueView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_overlay->setGeometry(rect());
}

} // namespace vormel
