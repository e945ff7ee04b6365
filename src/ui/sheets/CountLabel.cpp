#include "ui/sheets/CountLabel.h"

#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

CountLabel::CountLabel(Glyph glyph, Tint tint, const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_text(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
{
    constexpr int iconSize = 16;
    setObjectName(name);
    m_text->setObjectName(name + u"Text"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(5);
    row->addWidget(new GlyphLabel(glyph, tint, iconSize, this));
    row->addWidget(m_text);
}

void CountLabel::setText(const QString& text)
{
    m_text->setText(text);
    setAccessibleName(text);
}

} // namespace vormel
