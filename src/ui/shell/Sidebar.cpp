#include "ui/shell/Sidebar.h"

#include "kit/BoundText.h"
#include "kit/GlyphIcon.h"
#include "ui/shell/SidebarDelegate.h"

using namespace Qt::StringLiterals;

namespace vormel {

Sidebar::Sidebar(const AppSettings& settings, QWidget* parent)
    : QListWidget(parent)
{
    constexpr int margin = 8;
    setObjectName(u"sidebar"_s);
    setItemDelegate(new SidebarDelegate(this));
    setMinimumWidth(minWidth);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(margin, margin, margin, margin);
    setSpacing(1);
    viewport()->setBackgroundRole(QPalette::Window);
    setBackgroundRole(QPalette::Window);
    setMouseTracking(true);
    for (const Page page : allPages)
        new QListWidgetItem(glyphIcon(pageGlyph(page), Tint::secondary), QString(), this); // the list owns it
    bindText(this, &QWidget::setAccessibleName, settings, {u"Pages", u"Pagine"});
    followLanguage(this, settings, [this, &settings] {
        for (const Page page : allPages)
            item(static_cast<int>(page))->setText(pageLabel(page, settings.language.value()));
    });
    setPage(Page::downloads);
    connect(this, &QListWidget::currentRowChanged, this, [this] { Q_EMIT pageChosen(page()); });
}

Page Sidebar::page() const
{
    return static_cast<Page>(qMax(0, currentRow()));
}

/// There is always a page, so no key and no click takes the selection away.
QItemSelectionModel::SelectionFlags Sidebar::selectionCommand(const QModelIndex& index, const QEvent* /*event*/) const
{
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

} // namespace vormel
