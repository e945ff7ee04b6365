#include "kit/ScrollPage.h"

#include "kit/FocusInSight.h"

#include <QHBoxLayout>

namespace vormel {

ScrollPage::ScrollPage(int widest, QWidget* parent)
    : QScrollArea(parent)
    , m_column(new QWidget)
{
    constexpr int margin = 20;
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // everything wraps
    setFocusPolicy(Qt::NoFocus);
    m_column->setMaximumWidth(widest);
    auto* parts = new QVBoxLayout(m_column);
    parts->setContentsMargins(0, margin, 0, margin);
    parts->setSpacing(margin);
    parts->addStretch();
    auto* page = new QWidget(this);
    auto* centred = new QHBoxLayout(page);
    centred->setContentsMargins(margin, 0, margin, 0);
    centred->addWidget(m_column);
    setWidget(page);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    keepFocusInSight(*this);
}

void ScrollPage::addPart(QWidget* part)
{
    auto* parts = static_cast<QVBoxLayout*>(m_column->layout());
    parts->insertWidget(parts->count() - 1, part);
}

} // namespace vormel
