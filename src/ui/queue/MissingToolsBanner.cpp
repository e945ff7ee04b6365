#include "ui/queue/MissingToolsBanner.h"

#include "archive/tools/ToolWatch.h"
#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"
#include "model/AppSettings.h"

#include <QHBoxLayout>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace vormel {

QString missingToolsText(const FoundTools& tools, AppLanguage language)
{
    QStringList missing;
    if (!tools.unrar)
        missing << u"unrar"_s;
    if (!tools.sevenZip)
        missing << u"7-Zip (7zz)"_s;
    if (missing.isEmpty())
        return {};
    return missing.join(pair(language, u" and ", u" e ")) +
           pair(language, u" not installed — archive extraction won't work. Install in Settings → Available Tools.",
                u" non installato — l'estrazione degli archivi non funzionerà. Installa in Impostazioni → Strumenti "
                u"disponibili.");
}

MissingToolsBanner::MissingToolsBanner(const ToolWatch& tools, const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_tools(tools)
    , m_settings(settings)
    , m_text(new StyledLabel(StyledLabel::Style::caption, Tint::text, this))
{
    constexpr int iconSize = 16;
    setObjectName(u"missingToolsBanner"_s);
    m_text->setObjectName(u"missingToolsText"_s);
    m_text->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 8, 14, 8);
    row->setSpacing(8);
    row->addWidget(new GlyphLabel(Glyph::exclamationmarkTriangleFill, Tint::orange, iconSize, this));
    row->addWidget(m_text, 1);
    connect(&tools, &ToolWatch::toolsChanged, this, &MissingToolsBanner::showMissing);
    connect(&settings, &AppSettings::languageSet, this, &MissingToolsBanner::showMissing);
    showMissing();
}

void MissingToolsBanner::showMissing()
{
    const QString text = missingToolsText(m_tools.tools(), m_settings.language.value());
    m_text->setText(text);
    setAccessibleName(text);
    setHidden(text.isEmpty());
}

void MissingToolsBanner::paintEvent(QPaintEvent* /*event*/)
{
    constexpr float opacity = 0.12F;
    const Theme theme(palette());
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    QColor filling = theme.color(Tint::orange);
    filling.setAlphaF(opacity);
    painter.fillRect(rect(), filling);
    painter.fillRect(QRect(0, 0, width(), 1), theme.color(Tint::track));
}

} // namespace vormel
