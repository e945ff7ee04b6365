#include "ui/web/HostLine.h"

#include "kit/BoundText.h"
#include "kit/ElidedLabel.h"
#include "kit/FocusRing.h"
#include "kit/GlyphLabel.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int lockSize = 16;

void installHostLineAccessibility()
{
    QAccessible::installFactory([](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
        auto* const line = qobject_cast<HostLine*>(object);
        return line ? new QAccessibleWidget(line, QAccessible::StaticText) : nullptr;
    });
}

} // namespace

HostLine::HostLine(const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_lock(new GlyphLabel(Glyph::lockFill, Tint::green, lockSize, this))
    , m_text(new ElidedLabel(StyledLabel::Style::body, Tint::text, this))
{
    setObjectName(u"hostLine"_s);
    m_text->setObjectName(u"pageHost"_s);
    setFocusPolicy(Qt::TabFocus);
    installHostLineAccessibility();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 4, 6, 4);
    row->setSpacing(6);
    row->addWidget(m_lock);
    row->addWidget(m_text, 1);
    QSizePolicy keepsPlace = m_lock->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_lock->setSizePolicy(keepsPlace);
    followLanguage(this, settings, [this] { showTexts(); });
}

void HostLine::showPage(const std::optional<Link>& url, WebPage::Connection connection)
{
    // Letters of other scripts that look alike are told apart by the encoded form.
    const QString host = url ? url->toUrl().host(QUrl::FullyEncoded) : QString();
    const bool isVerified = connection == WebPage::Connection::verified;
    if (host == m_shownHost && isVerified == m_isVerified)
        return;
    m_shownHost = host;
    m_isVerified = isVerified;
    showTexts();
}

void HostLine::showTexts()
{
    constexpr TextPair verified{u"Verified connection to %1", u"Connessione verificata a %1"};
    constexpr TextPair unverified{u"Connection not verified: %1", u"Connessione non verificata: %1"};
    const TextPair& text = m_isVerified ? verified : unverified;
    const QString words = m_shownHost.isEmpty() ? QString() : text.in(m_settings.language.value()).arg(m_shownHost);
    setEnabled(!words.isEmpty()); // or it would take the focus all the same
    m_lock->setVisible(!words.isEmpty());
    m_lock->setLook(m_isVerified ? Glyph::lockFill : Glyph::exclamationmarkTriangleFill,
                    m_isVerified ? Tint::green : Tint::orange);
    m_text->setTint(m_isVerified ? Tint::text : Tint::orange);
    m_text->setWhole(words);
    setAccessibleName(words);
}

void HostLine::paintEvent(QPaintEvent* /*event*/)
{
    constexpr qreal radius = 4;
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawFocusRing(painter, rect(), Theme(palette()), radius);
}

void HostLine::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

void HostLine::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

} // namespace vormel
