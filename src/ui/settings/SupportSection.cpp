#include "ui/settings/SupportSection.h"

#include "config/Services.h"
#include "kit/BoundText.h"
#include "kit/GlyphIcon.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"
#include "platform/desktop/UrlOpener.h"

#include <QHBoxLayout>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

SupportSection::SupportSection(AppSettings& settings, UrlOpener& opener, QWidget* parent)
    : Card(settings, u"supportSection"_s, {u"Support", u"Supporto"}, parent)
    , m_free(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_please(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_fees(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_beer(new SheetButton(this))
{
    constexpr int iconSize = 18;
    m_free->setObjectName(u"supportFree"_s);
    m_please->setObjectName(u"supportPlease"_s);
    m_fees->setObjectName(u"supportFees"_s);
    m_beer->setObjectName(u"buyBeer"_s);
    m_beer->setIconSize(QSize(iconSize, iconSize));
    m_beer->setIcon(glyphIcon(Glyph::mugFill, Tint::beer));
    addRow(makeRow());
    connect(m_beer, &QPushButton::clicked, this, [&opener] { opener.open(QUrl(QString(donationUrl))); });
    bindTexts(settings);
}

QWidget* SupportSection::makeRow()
{
    auto* row = new QWidget(this);
    auto* columns = new QHBoxLayout(row);
    columns->setContentsMargins(0, 0, endOfRow, 0);
    columns->setSpacing(16);
    columns->addLayout(textColumn({m_free, m_please, m_fees}), 1);
    columns->addWidget(m_beer, 0, Qt::AlignVCenter);
    return row;
}

void SupportSection::bindTexts(const AppSettings& settings)
{
    constexpr TextPair beer{u"Buy me a beer", u"Offrimi una birra"};
    bindText(m_free, &QLabel::setText, settings,
             {u"Vormel is free and ad-free.", u"Vormel è gratuito e senza pubblicità."});
    bindText(m_please, &QLabel::setText, settings,
             {u"If it saves you time, buy me a beer!", u"Se ti fa risparmiare tempo, offrimi una birra!"});
    bindText(m_beer, &QPushButton::setText, settings, beer);
    bindText(m_beer, &QPushButton::setAccessibleName, settings, beer);
    bindText(m_fees, &QLabel::setText, settings,
             {u"Sending as “Friends & Family” means 100% reaches me.",
              u"Inviando come “Amici e familiari” ricevo il 100%."});
}

} // namespace vormel
