#include "ui/shell/Sidebar.h"

#include "model/AppSettings.h"
#include "ui/kit/GlyphIcon.h"
#include "ui/shell/SidebarDelegate.h"

namespace vormel {

Sidebar::Sidebar(AppSettings& settings, QWidget* parent)
    : QListWidget(parent)
    , m_settings(settings)
{
    constexpr int margin = 8;
    setObjectName(QStringLiteral("sidebar"));
    setItemDelegate(new SidebarDelegate(this));
    setMinimumWidth(smallestWidth);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(margin, margin, margin, margin);
    setSpacing(1);
    viewport()->setBackgroundRole(QPalette::Window);
    setBackgroundRole(QPalette::Window);
    setMouseTracking(true);
    for (const Page page : allPages)
        new QListWidgetItem(glyphIcon(pageGlyph(page), Tint::secondary), QString(), this); // the list owns it
    retranslate();
    setPage(Page::downloads);
    connect(this, &QListWidget::currentRowChanged, this, [this] { Q_EMIT pageChosen(page()); });
    connect(&settings, &AppSettings::languageSet, this, &Sidebar::retranslate);
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

void Sidebar::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    setAccessibleName(pair(language, u"Pages", u"Pagine"));
    for (const Page page : allPages)
        item(static_cast<int>(page))->setText(pageLabel(page, language));
}

} // namespace vormel
