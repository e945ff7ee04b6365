#include "ui/queue/list/RowMenus.h"

#include "ui/queue/list/QueueView.h"
#include "ui/queue/list/RenamePopover.h"
#include "ui/queue/list/RowMenu.h"
#include "ui/queue/tree/QueueModel.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace vormel {

RowMenus::RowMenus(QueueView& view, const RowCommands& commands)
    : m_view(view)
    , m_commands(commands)
{}

void RowMenus::openBelow(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    m_view.setCurrentIndex(index); // it need not be selected yet
    m_view.scrollTo(index);
    const QRect row = m_view.visualRect(index);
    openAt(index, m_view.viewport()->mapToGlobal(QPoint(row.left() + RowMetrics::gutter, row.bottom())));
}

void RowMenus::openAt(const QModelIndex& index, QPoint globalPoint)
{
    auto* menu = new QMenu(&m_view);
    menu->setObjectName(u"rowMenu"_s);
    menu->setAccessibleName(index.data(QueueModel::nameRole).toString());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill(*menu, index);
    menu->popup(globalPoint);
}

void RowMenus::fill(QMenu& menu, const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const QueueModel& model = m_view.queue();
    const QString group = model.group(index).id;
    const QPersistentModelIndex kept = index; // the queue goes on while the menu is open
    RowMenuActions actions;
    actions.run = [this, kept](RowButton button) { m_view.run(kept, button); };
    actions.copyLinks = [&model, kept] {
        if (const ItemPtr item = model.item(kept))
            RowCommands::copyLinks({item});
        else if (kept.isValid())
            RowCommands::copyLinks(model.group(kept).items);
    };
    actions.move = [this, kept](bool isUp) { m_view.moveGroup(kept, isUp); };
    actions.rename = [this, kept] { rename(kept); };
    actions.resetName = [this, group] { m_commands.renameGroup(group, {}); };
    fillRowMenu(menu, rowMenu(model, index, m_commands.hasCustomName(group)), model.language(), actions);
}

void RowMenus::rename(const QModelIndex& header)
{
    const QueueModel& model = m_view.queue();
    if (!model.isHeader(header))
        return;
    m_view.scrollTo(header);
    auto* popover = new RenamePopover(header.data(QueueModel::nameRole).toString(), model.language(), &m_view);
    QObject::connect(popover, &RenamePopover::saved, &m_view,
                     [this, id = model.group(header).id](const QString& name) { m_commands.renameGroup(id, name); });
    popover->openBelow(*m_view.viewport(), m_view.visualRect(header));
}

} // namespace vormel
