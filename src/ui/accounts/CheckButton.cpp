#include "ui/accounts/CheckButton.h"

#include "kit/Contrast.h"
#include "kit/GlyphIcon.h"
#include "kit/SpinnerArc.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int indicatorSize = 16;
constexpr int indicatorGap = 6;

struct CheckLook
{
    TextPair text;
    Tint tint;
    QIcon icon;
};

CheckLook checkLook(AccountTestStatus::Kind kind)
{
    switch (kind) {
    case AccountTestStatus::idle:
        return {{u"Check", u"Verifica"}, Tint::text, glyphIcon(Glyph::checkmarkShield)};
    case AccountTestStatus::testing:
        return {{u"Checking...", u"Verifica in corso..."}, Tint::secondary, QIcon()};
    case AccountTestStatus::success:
        return {{u"Refresh", u"Aggiorna"}, Tint::green, glyphIcon(Glyph::arrowClockwiseCircleFill, Tint::green)};
    case AccountTestStatus::failed:
        return {{u"Retry", u"Riprova"}, Tint::red, QIcon()};
    }
    Q_UNREACHABLE();
}

} // namespace

CheckButton::CheckButton(QWidget* parent)
    : SheetButton(parent)
{
    constexpr int iconSize = 14; // no higher than the buttons beside it
    setObjectName(u"checkAccount"_s);
    setAutoDefault(true); // Return does what Space does
    setIconSize(QSize(iconSize, iconSize));
    connect(this, &QPushButton::clicked, this, [this] {
        if (!isTesting())
            Q_EMIT checkRequested();
    });
}

void CheckButton::showKind(AccountTestStatus::Kind kind, AppLanguage language)
{
    constexpr int stepMilliseconds = 40;
    m_kind = kind;
    const CheckLook look = checkLook(kind);
    setText(look.text.in(language));
    setIcon(look.icon);
    const bool mayTurn = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!isTesting())
        m_turning.stop();
    else if (mayTurn && !m_turning.isActive())
        m_turning.start(stepMilliseconds, this);
    updateGeometry();
}

QSize CheckButton::sizeHint() const
{
    const QSize usual = SheetButton::sizeHint();
    const int testing = fontMetrics().horizontalAdvance(text()) + indicatorSize + 2 * indicatorGap;
    return isTesting() ? QSize(testing, usual.height()) : usual;
}

/// Can be read on the button.
QColor CheckButton::textColor() const
{
    constexpr double spare = 0.5; // styles brighten what they fill buttons with
    const Theme theme(palette());
    const QList<QColor> grounds{palette().color(QPalette::Button), palette().color(QPalette::Base)};
    return standingOut(theme.color(checkLook(m_kind).tint), theme.color(Tint::text), grounds, readableContrast + spare);
}

void CheckButton::initStyleOption(QStyleOptionButton* option) const
{
    SheetButton::initStyleOption(option);
    option->palette.setColor(QPalette::ButtonText, textColor());
}

void CheckButton::paintEvent(QPaintEvent* event)
{
    if (isTesting())
        paintTesting();
    else
        SheetButton::paintEvent(event);
}

void CheckButton::paintTesting()
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionButton bare;
    initStyleOption(&bare);
    bare.features = QStyleOptionButton::Flat;
    bare.state.setFlag(QStyle::State_Sunken, false);
    bare.text.clear();
    style()->drawControl(QStyle::CE_PushButton, &bare, &painter, this); // the ring of the focus
    const QColor color = textColor();
    QRect indicator(indicatorGap, (height() - indicatorSize) / 2, indicatorSize, indicatorSize);
    const QRect words = rect().adjusted(indicator.right() + indicatorGap, 0, 0, 0);
    indicator = QStyle::visualRect(layoutDirection(), rect(), indicator);
    drawSpinner(painter, indicator, color, m_angle);
    painter.setPen(color);
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), words),
                     Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

void CheckButton::timerEvent(QTimerEvent* event)
{
    constexpr int stepDegrees = 12;
    if (event->timerId() != m_turning.timerId()) {
        SheetButton::timerEvent(event);
        return;
    }
    m_angle = (m_angle + stepDegrees) % 360;
    update(); // costs nothing out of sight
}

} // namespace vormel
