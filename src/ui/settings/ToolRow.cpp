#include "ui/settings/ToolRow.h"

#include "ui/kit/GlyphLabel.h"
#include "ui/kit/StyledLabel.h"
#include "ui/settings/CodeLabel.h"
#include "ui/settings/SettingsSection.h"

#include <QHBoxLayout>

namespace vormel {

namespace {

constexpr int iconSize = 18;

} // namespace

ToolRow::ToolRow(AppSettings& settings, const QString& name, bool builtIn, const TextPair& formats, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_formats(formats)
    , m_isBuiltIn(builtIn)
    , m_there(new GlyphLabel(Glyph::checkmarkCircleFill, Tint::green, iconSize, this))
    , m_missing(new GlyphLabel(Glyph::xmarkCircleFill, Tint::red, iconSize, this))
    , m_name(new CodeLabel(this))
    , m_format(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_builtIn(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_state(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
{
    m_there->setObjectName(QStringLiteral("toolThere"));
    m_missing->setObjectName(QStringLiteral("toolMissing"));
    m_name->setObjectName(QStringLiteral("toolName"));
    m_format->setObjectName(QStringLiteral("toolFormats"));
    m_builtIn->setObjectName(QStringLiteral("toolBuiltIn"));
    m_state->setObjectName(QStringLiteral("toolState"));
    layOut(name);
    connect(&settings, &AppSettings::languageSet, this, &ToolRow::retranslate);
    setAvailable(true);
}

void ToolRow::layOut(const QString& name)
{
    constexpr int air = 6;
    m_name->setText(name);
    // All rows have one width there, so that the next column stands straight.
    m_name->setMinimumWidth(QFontMetrics(m_name->font()).horizontalAdvance(QStringLiteral("7z / 7zz")) + air);
    m_format->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, SettingsSection::endOfRow, 0);
    row->setSpacing(12);
    row->addWidget(m_there);
    row->addWidget(m_missing);
    row->addWidget(m_name);
    row->addWidget(m_format, 1);
    row->addWidget(m_builtIn);
    row->addWidget(m_state);
}

void ToolRow::setAvailable(bool available)
{
    m_isAvailable = available;
    m_there->setVisible(available);
    m_missing->setVisible(!available);
    m_builtIn->setVisible(m_isBuiltIn && available);
    retranslate();
}

void ToolRow::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    m_format->setText(m_formats.in(language));
    m_builtIn->setText(pair(language, u"built-in", u"integrato"));
    m_state->setText(m_isAvailable ? pair(language, u"Available", u"Disponibile")
                                   : pair(language, u"Not installed", u"Non installato"));
    setAccessibleName(m_name->text() + QStringLiteral(": ") + m_state->text());
    setAccessibleDescription(m_format->text());
}

} // namespace vormel
