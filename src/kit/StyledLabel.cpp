#include "kit/StyledLabel.h"

#include "kit/TextStyle.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>

namespace vormel {

namespace {

QFont styled(const QFont& font, StyledLabel::Style style)
{
    switch (style) {
    case StyledLabel::Style::body:
        return font;
    case StyledLabel::Style::headline:
        return headlineFont(font);
    case StyledLabel::Style::caption:
        return captionFont(font);
    case StyledLabel::Style::boldCaption:
        return boldCaptionFont(font);
    case StyledLabel::Style::digits:
        return digitsFont(captionFont(font));
    case StyledLabel::Style::title:
        return titleFont(font);
    }
    Q_UNREACHABLE();
}

} // namespace

StyledLabel::StyledLabel(Style style, Tint tint, QWidget* parent)
    : QLabel(parent)
    , m_style(style)
    , m_tint(tint)
{
    setTextFormat(Qt::PlainText); // host and file names come from outside
    restyle();
}

void StyledLabel::setTint(Tint tint)
{
    m_tint = tint;
    restyle();
}

void StyledLabel::restyle()
{
    const QScopedValueRollback guard(m_isRestyling, true);
    setFont(styled(QApplication::font(), m_style));
    QPalette own;
    // Which role a label draws with depends on what it lies on.
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        own.setColor(role, Theme(QApplication::palette()).color(m_tint));
    setPalette(own);
}

bool StyledLabel::event(QEvent* event)
{
    const bool isDone = QLabel::event(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
        if (!m_isRestyling)
            restyle();
        break;
    default:
        break;
    }
    return isDone;
}

} // namespace vormel
