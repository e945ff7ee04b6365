#include "ui/notices/NoticeLine.h"

#include "kit/BoundText.h"
#include "kit/GlyphIcon.h"
#include "kit/GlyphLabel.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "ui/notices/Notices.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int iconSize = 16;

/// The key by value: with the click the notice goes.
QPushButton* makeAction(const Notice& notice, std::size_t action, Notices& notices, const AppSettings& settings,
                        QWidget* parent)
{
    constexpr int air = 12;
    auto* button = new SheetButton(parent);
    button->setObjectName(u"noticeAction%1"_s.arg(action));
    button->setAir(air);
    bindText(button, &QPushButton::setText, settings, notice.actions[action].text);
    QObject::connect(button, &QPushButton::clicked, &notices,
                     [&notices, key = notice.key, action] { notices.run(key, action); });
    return button;
}

QToolButton* makeCross(const QString& key, Notices& notices, const AppSettings& settings, QWidget* parent)
{
    auto* cross = new QToolButton(parent);
    cross->setObjectName(u"closeNotice"_s);
    cross->setAutoRaise(true);
    cross->setFocusPolicy(Qt::StrongFocus);
    cross->setIcon(glyphIcon(Glyph::xmark));
    cross->setIconSize({iconSize, iconSize});
    bindText(cross, &QWidget::setAccessibleName, settings, {u"Close", u"Chiudi"});
    bindText(cross, &QWidget::setToolTip, settings, {u"Close", u"Chiudi"});
    QObject::connect(cross, &QToolButton::clicked, &notices, [&notices, key] { notices.takeBack(key); });
    return cross;
}

} // namespace

NoticeLine::NoticeLine(const Notice& notice, Notices& notices, const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(u"notice-"_s + notice.key);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 6, 10, 6);
    row->setSpacing(8);
    row->addWidget(new GlyphLabel(notice.glyph, Tint::secondary, iconSize, this));
    auto* text = new StyledLabel(StyledLabel::Style::body, Tint::text, this);
    text->setObjectName(u"noticeText"_s);
    text->setTextFormat(Qt::PlainText); // names come from outside
    text->setWordWrap(true);
    row->addWidget(text, 1);
    for (std::size_t action = 0; action < notice.actions.size(); ++action)
        row->addWidget(makeAction(notice, action, notices, settings, this));
    if (notice.canClose)
        row->addWidget(makeCross(notice.key, notices, settings, this));
    followLanguage(this, settings, [this, text, words = notice.text, &settings] {
        text->setText(words(settings.language.value()));
        setAccessibleName(text->text());
    });
    QAccessibleEvent said(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void NoticeLine::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.fillRect(QRect(0, 0, width(), 1), Theme(palette()).color(Tint::track));
}

} // namespace vormel
