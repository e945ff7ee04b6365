#include "ui/sheets/captcha/HostGroupModel.h"

#include "kit/GlyphIcon.h"
#include "ui/sheets/FileCount.h"

using namespace Qt::StringLiterals;

namespace vormel {

HostGroupModel::HostGroupModel(QObject* parent)
    : QAbstractListModel(parent)
    , m_icon(glyphIcon(Glyph::serverRack, Tint::blue))
{}

void HostGroupModel::setGroups(const Groups& groups)
{
    beginResetModel();
    m_groups = groups;
    endResetModel();
}

int HostGroupModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_groups.size());
}

QVariant HostGroupModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const PendingHostSelection::HostGroup& group = m_groups[static_cast<std::size_t>(index.row())];
    const QString count = fileCountText(group.urls.size());
    switch (role) {
    case Qt::DisplayRole:
        return QString(group.displayName + u'\n' + count);
    case Qt::AccessibleTextRole:
        return QString(group.displayName + u", "_s + count);
    case Qt::ToolTipRole:
        return group.displayName.toHtmlEscaped(); // else a host could be taken for rich text
    case Qt::DecorationRole:
        return m_icon;
    default:
        return {};
    }
}

} // namespace vormel
