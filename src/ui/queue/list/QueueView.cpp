#include "ui/queue/list/QueueView.h"

#include "ui/queue/list/CountdownWake.h"
#include "ui/queue/list/GroupDrag.h"
#include "ui/queue/list/PlaceKeeper.h"
#include "ui/queue/list/QueueDelegate.h"
#include "ui/queue/list/RowMenu.h"
#include "ui/queue/list/RowMenus.h"
#include "ui/queue/list/RowMotion.h"
#include "ui/queue/list/ShownRow.h"
#include "ui/queue/rows/HeaderPresenter.h"
#include "ui/queue/tree/QueueModel.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace vormel {

QueueView::QueueView(QueueModel& model, const RowCommands& commands, QWidget* parent)
    : QTreeView(parent)
    , m_model(model)
    , m_commands(commands)
    , m_delegate(new QueueDelegate(model, this))
    , m_drag(new GroupDrag(*this))
    , m_menus(std::make_unique<RowMenus>(*this, m_commands))
    , m_countdowns(std::make_unique<CountdownWake>(*this, m_delegate->countdowns(), model.clock()))
    , m_motion(std::make_unique<RowMotion>(*this, *m_delegate))
{
    setUp();
    setItemDelegate(m_delegate);
    setModel(&model);
    connect(m_drag, &GroupDrag::dropped, this,
            [this](int row, int destination) { m_commands.moveGroup(m_model.groupIds(), row, destination); });
    m_place = std::make_unique<PlaceKeeper>(*this, model); // behind the view itself in hearing of the model
}

QueueView::~QueueView() = default;

void QueueView::setUp()
{
    setObjectName(u"queueView"_s);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(NoFrame);
    setHeaderHidden(true);
    setExpandsOnDoubleClick(false);
    // Rows stand in and show their triangle by themselves, so that plates and hairlines may go as they like.
    setRootIsDecorated(false);
    setIndentation(0);
    viewport()->setMouseTracking(true);
}

QList<QModelIndex> QueueView::rowsInSight() const
{
    QList<QModelIndex> rows;
    const int height = viewport()->height();
    int bottom = 0;
    for (QModelIndex index = indexAt(QPoint(0, 0)); index.isValid() && bottom < height; index = indexBelow(index)) {
        rows << index;
        bottom = visualRect(index).bottom() + 1;
    }
    return rows;
}

// QTreeView would tell assistive technology of rows by the numbers they have in a table of its own; AccessibleQueue has
// others and tells by itself. What else QTreeView does there is for lists of several columns.
void QueueView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QAbstractItemView::currentChanged(current, previous); // NOLINT(bugprone-parent-virtual-call)
}

/// Where the selected row goes, QAbstractItemView selects the next one; but only the user may, as Del acts on it.
void QueueView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    const QModelIndex before = currentIndex();
    QTreeView::rowsAboutToBeRemoved(parent, first, last);
    if (currentIndex() != before)
        clearSelection();
}

QModelIndex QueueView::selectedRow() const
{
    return selectionModel()->selectedIndexes().value(0);
}

void QueueView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected); // NOLINT(bugprone-parent-virtual-call)
}

void QueueView::dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles)
{
    if (roles.isEmpty() || roles.contains(Qt::SizeHintRole)) {
        QTreeView::dataChanged(first, last, roles);
        return;
    }
    const QModelIndex parent = first.parent();
    if (parent.isValid() && !isExpanded(parent))
        return;
    // QTreeView would ask for the heights again, and repaint everything for more than one row.
    for (const QModelIndex& row : rowsInSight()) {
        if (row.parent() == parent && row.row() >= first.row() && row.row() <= last.row()) {
            // NOLINTNEXTLINE(bugprone-parent-virtual-call): to pass over QTreeView is what this is about
            QAbstractItemView::dataChanged(row, row, roles);
        }
    }
}

void QueueView::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    constexpr double draggedOpacity = 0.45;
    const bool isDragged = m_drag->isDragged(index);
    // QTreeView would draw the style's panel and branches beneath.
    QStyleOptionViewItem row = option;
    // A highlight that fades would take the texts on it along.
    row.state.setFlag(QStyle::State_Selected, !isDragged && selectionModel()->isSelected(index));
    row.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
    row.state.setFlag(QStyle::State_MouseOver, index == m_pointedRow);
    painter->setOpacity(isDragged ? draggedOpacity : 1);
    m_delegate->paint(painter, row, index);
    painter->setOpacity(1);
}

void QueueView::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    QTreeView::scrollTo(index, hint);
    // It leaves the last line of pixels of a row at the bottom out.
    if (visualRect(index).bottom() == viewport()->height())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + 1);
}

void QueueView::paintEvent(QPaintEvent* event)
{
    followPointer();
    QTreeView::paintEvent(event);
    if (m_drag->isDragging()) {
        QPainter painter(viewport());
        m_drag->paint(painter);
    }
    m_countdowns->await();
    m_motion->await();
}

bool QueueView::isMoving() const
{
    return m_motion->isGoing();
}

std::vector<ButtonPlace> QueueView::buttonsOf(const QModelIndex& index) const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    return m_delegate->buttons(option, index);
}

RowHit QueueView::hitAt(QPoint point) const
{
    const QModelIndex index = indexAt(point);
    if (!index.isValid())
        return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    return m_delegate->hitTest(option, index, point);
}

/// Shows the pointer on a row and one of its buttons, or on none.
void QueueView::point(const QModelIndex& index, const RowHit& hit, bool isPressed)
{
    const std::optional<RowButton> button = hit.isButton() ? std::optional(hit.button) : std::nullopt;
    if (m_pointedRow == index && m_pointed == button && m_isPressed == isPressed)
        return;
    update(m_pointedRow);
    m_pointedRow = index;
    m_pointed = button;
    m_isPressed = isPressed;
    m_delegate->setHot(m_pointedRow, {button, isPressed});
    update(m_pointedRow);
}

void QueueView::pointNowhere()
{
    point({}, {}, false);
}

void QueueView::notePointer(QPoint point)
{
    m_pointer = viewport()->rect().contains(point) ? std::optional(point) : std::nullopt;
}

/// Rows also come below a pointer that rests: the list scrolls, and rows come, go and grow.
void QueueView::followPointer()
{
    if (!m_pointer || m_isPressed || m_drag->isDragging())
        return;
    const QModelIndex index = indexAt(*m_pointer);
    if (index != m_pointedRow)
        point(index, hitAt(*m_pointer), false);
}

void QueueView::mousePressEvent(QMouseEvent* event)
{
    if (m_drag->isPressed() && event->button() != Qt::LeftButton)
        return; // what it calls up calls the drag off
    const RowHit hit = hitAt(event->pos());
    const QModelIndex index = indexAt(event->pos());
    const bool isOnButton = event->button() == Qt::LeftButton && hit.isButton();
    const bool isOnDisclosure = event->button() == Qt::LeftButton && hit.part == RowHit::Part::disclosure;
    if (!isOnButton && !isOnDisclosure)
        return pressRow(event);
    selectPressed(index);
    if (isOnButton)
        point(index, hit, true);
    else
        setExpanded(index, !isExpanded(index));
}

/// Without scrolling, so that what is pressed stays below the pointer.
void QueueView::selectPressed(const QModelIndex& index)
{
    setAutoScroll(false);
    setCurrentIndex(index);
    setAutoScroll(true);
}

void QueueView::pressRow(QMouseEvent* event)
{
    QTreeView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        m_drag->press(event->pos());
}

void QueueView::mouseMoveEvent(QMouseEvent* event)
{
    notePointer(event->pos());
    if (m_isPressed)
        return; // the button keeps the mouse until it is up
    if (event->buttons().testFlag(Qt::LeftButton)) {
        if (m_drag->move(event->pos())) // QTreeView would select what the pointer passes
            pointNowhere();
        return;
    }
    point(indexAt(event->pos()), hitAt(event->pos()), false);
    QTreeView::mouseMoveEvent(event);
}

void QueueView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_isPressed || event->button() != Qt::LeftButton) {
        QTreeView::mouseReleaseEvent(event);
        m_drag->release();
        return;
    }
    const RowHit hit = hitAt(event->pos());
    const QPersistentModelIndex index = indexAt(event->pos());
    const bool isSame = hit.isButton() && m_pointedRow == index && m_pointed == hit.button;
    point(index, hit, false);
    if (isSame)
        run(index, hit.button);
}

void QueueView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const RowHit hit = hitAt(event->pos());
    const QModelIndex index = indexAt(event->pos());
    if (event->button() == Qt::LeftButton && hit.isButton())
        return; // after the first click another button, or another row, may have come under the pointer
    if (event->button() != Qt::LeftButton || !m_model.isHeader(index)) {
        const ItemPtr item = event->button() == Qt::LeftButton ? m_model.item(index) : nullptr;
        mousePressEvent(event); // quick clicks are clicks
        if (item)
            m_commands.open(*item);
    } else if (hit.part == RowHit::Part::title) {
        m_menus->rename(index);
    } else {
        setExpanded(index, !isExpanded(index));
    }
}

bool QueueView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave) {
        m_pointer.reset();
        if (!m_isPressed)
            pointNowhere();
    }
    return QTreeView::viewportEvent(event);
}

bool QueueView::event(QEvent* event)
{
    // A sheet, another window or another page takes the mouse away without its button having come up here.
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowDeactivate ||
        event->type() == QEvent::Hide) {
        m_drag->cancel();
        pointNowhere();
    }
    return QTreeView::event(event);
}

void QueueView::run(const QModelIndex& index, RowButton button)
{
    if (!index.isValid())
        return;
    if (const ItemPtr item = m_model.item(index))
        m_commands.run(button, item);
    else
        m_commands.run(button, m_model.group(index));
}

void QueueView::removeRow(const QModelIndex& index)
{
    run(index, m_model.isHeader(index) ? RowButton::removeGroup : RowButton::remove);
}

void QueueView::moveGroup(const QModelIndex& index, bool isUp)
{
    if (!index.isValid())
        return;
    // In front of the one above, or of the one behind the next.
    const int row = rowOfGroup(index);
    m_commands.moveGroup(m_model.groupIds(), row, isUp ? row - 1 : row + 2);
    scrollTo(currentIndex());
}

void QueueView::activate(const QModelIndex& index)
{
    if (m_model.isHeader(index))
        setExpanded(index, !isExpanded(index));
    else if (const ItemPtr item = m_model.item(index))
        m_commands.open(*item);
}

void QueueView::reveal(const std::vector<ItemId>& items)
{
    if (m_isPressed || m_drag->isPressed())
        return;
    for (const ItemId& id : items) {
        if (const QModelIndex row = shownRow(*this, m_model.indexOf(id)); row.isValid())
            return scrollTo(row, PositionAtTop);
    }
}

void QueueView::goTo(const ItemId& id)
{
    const QModelIndex row = shownRow(*this, m_model.indexOf(id));
    if (!row.isValid())
        return;
    // The whole group is selected only by the user, as it can be removed by one key.
    selectionModel()->setCurrentIndex(row, m_model.isHeader(row) ? QItemSelectionModel::Clear
                                                                 : QItemSelectionModel::ClearAndSelect);
    scrollTo(row);
}

void QueueView::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex current = currentIndex();
    const bool isUp = event->key() == Qt::Key_Up;
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape && m_drag->isDragging())
        m_drag->cancel();
    else if (event->key() == Qt::Key_Delete)
        removeRow(selectedRow());
    else if (event->matches(QKeySequence::Copy))
        RowCommands::copy(selectedRow().data(QueueModel::copyRole).toString());
    else if (event->key() == Qt::Key_F2)
        m_menus->rename(current);
    else if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        m_menus->openBelow(current);
    else if (event->modifiers().testFlag(Qt::AltModifier) && (isUp || event->key() == Qt::Key_Down))
        moveGroup(current, isUp);
    else if (isEnter && event->isAutoRepeat())
        return; // a key that is held would open a program with each repetition
    else if (isEnter && !(event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)))
        activate(current);
    else
        QTreeView::keyPressEvent(event);
}

void QueueView::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_drag->isPressed())
        return m_drag->cancel();
    if (event->reason() == QContextMenuEvent::Keyboard)
        return m_menus->openBelow(currentIndex());
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    m_menus->openAt(index, event->globalPos());
}

} // namespace vormel
