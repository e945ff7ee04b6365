#include "kit/EmptyState.h"

#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

EmptyState::EmptyState(Glyph glyph, QWidget* parent)
    : QWidget(parent)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
{
    constexpr int iconSize = 48;
    m_title->setObjectName(u"emptyTitle"_s);
    m_text->setObjectName(u"emptyText"_s);
    for (StyledLabel* label : {m_title, m_text}) {
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(8);
    column->addStretch(2);
    column->addWidget(new GlyphLabel(glyph, Tint::tertiary, iconSize, this), 0, Qt::AlignHCenter);
    column->addSpacing(8);
    column->addWidget(m_title);
    column->addWidget(m_text);
    column->addStretch(3); // a little above the middle looks centred
}

void EmptyState::setTitle(const QString& title)
{
    m_title->setText(title);
    setAccessibleName(title);
}

void EmptyState::setText(const QString& text)
{
    m_text->setText(text);
    setAccessibleDescription(text);
}

} // namespace vormel
