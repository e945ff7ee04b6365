#include "ui/settings/ToolRow.h"

#include "kit/BoundText.h"
#include "kit/Card.h"
#include "kit/CodeLabel.h"
#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int iconSize = 18;

} // namespace

ToolRow::ToolRow(AppSettings& settings, const QString& name, bool builtIn, const TextPair& formats, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_isBuiltIn(builtIn)
    , m_there(new GlyphLabel(Glyph::checkmarkCircleFill, Tint::green, iconSize, this))
    , m_missing(new GlyphLabel(Glyph::xmarkCircleFill, Tint::red, iconSize, this))
    , m_name(new CodeLabel(this))
    , m_format(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_builtIn(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_state(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
{
    m_there->setObjectName(u"toolThere"_s);
    m_missing->setObjectName(u"toolMissing"_s);
    m_name->setObjectName(u"toolName"_s);
    m_format->setObjectName(u"toolFormats"_s);
    m_builtIn->setObjectName(u"toolBuiltIn"_s);
    m_state->setObjectName(u"toolState"_s);
    layOut(name);
    bindText(m_format, &QLabel::setText, settings, formats);
    bindText(this, &QWidget::setAccessibleDescription, settings, formats);
    bindText(m_builtIn, &QLabel::setText, settings, {u"built-in", u"integrato"});
    followLanguage(this, settings, [this] { showState(); });
}

void ToolRow::layOut(const QString& name)
{
    constexpr int air = 6;
    m_name->setText(name);
    // All rows have one width there, so that the next column stands straight.
    m_name->setMinimumWidth(QFontMetrics(m_name->font()).horizontalAdvance(u"7z / 7zz"_s) + air);
    m_format->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, Card::endOfRow, 0);
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
    showState();
}

void ToolRow::showState()
{
    const AppLanguage language = m_settings.language.value();
    m_there->setVisible(m_isAvailable);
    m_missing->setVisible(!m_isAvailable);
    m_builtIn->setVisible(m_isBuiltIn && m_isAvailable);
    m_state->setText(m_isAvailable ? pair(language, u"Available", u"Disponibile")
                                   : pair(language, u"Not installed", u"Non installato"));
    setAccessibleName(m_name->text() + u": "_s + m_state->text());
}

} // namespace vormel
