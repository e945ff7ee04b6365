#include "ui/help/HelpFeatureRow.h"

#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"
#include "ui/help/HelpFeatures.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

HelpFeatureRow::HelpFeatureRow(const HelpFeature& feature, QWidget* parent)
    : QWidget(parent)
    , m_title(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_detail(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
{
    constexpr int iconSize = 22;
    m_title->setObjectName(u"featureTitle"_s);
    m_detail->setObjectName(u"featureDetail"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(14);
    row->addWidget(new GlyphLabel(feature.icon, feature.color, iconSize, this), 0, Qt::AlignTop);
    row->addLayout(textColumn({m_title, m_detail}), 1);
    setTexts(feature);
}

void HelpFeatureRow::setTexts(const HelpFeature& feature)
{
    m_title->setText(feature.title);
    m_detail->setText(feature.detail);
    setAccessibleName(feature.title);
    setAccessibleDescription(feature.detail);
}

} // namespace vormel
