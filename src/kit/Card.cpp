#include "kit/Card.h"

#include "kit/BoundText.h"
#include "kit/TextStyle.h"
#include "kit/Theme.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QVBoxLayout>

namespace vormel {

namespace {

constexpr int inset = 16;   ///< between the card's edge and its rows
constexpr int rowGap = 20;  ///< between rows, with the hairline in its middle
constexpr int rowEdge = 11; ///< above the first row and below the last
constexpr int headingGap = 6;
constexpr qreal radius = 9;

} // namespace

Card::Card(const QString& name, QWidget* parent)
    : QGroupBox(parent)
    , m_rows(new QVBoxLayout(this))
{
    setObjectName(name);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    m_rows->setSpacing(rowGap);
    makeRoomForHeading();
}

Card::Card(const AppSettings& settings, const QString& name, const TextPair& heading, QWidget* parent)
    : Card(name, parent)
{
    bindText(this, &Card::setTitle, settings, heading);
    bindText(this, &Card::setAccessibleName, settings, heading);
    makeRoomForHeading();
}

void Card::addRow(QWidget* row)
{
    m_rows->addWidget(row);
}

void Card::insertRow(int place, QWidget* row)
{
    m_rows->removeWidget(row);
    m_rows->insertWidget(place, row);
}

QFont Card::headingFont() const
{
    return headlineFont(font());
}

void Card::makeRoomForHeading()
{
    const int heading = title().isEmpty() ? 0 : QFontMetrics(headingFont()).height() + headingGap;
    m_rows->setContentsMargins(inset, heading + rowEdge, inset - endOfRow, rowEdge);
}

QRect Card::card() const
{
    return rect().adjusted(0, m_rows->contentsMargins().top() - rowEdge, 0, 0);
}

bool Card::event(QEvent* event)
{
    const bool isDone = QGroupBox::event(event);
    if (event->type() == QEvent::ContentsRectChange && !contentsMargins().isNull())
        setContentsMargins({}); // the room that the style keeps for a frame that is not drawn here
    if (event->type() == QEvent::FontChange)
        makeRoomForHeading();
    if (event->type() == QEvent::LayoutRequest)
        update(); // a row came or went, and its hairline with it
    return isDone;
}

void Card::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(headingFont());
    painter.setPen(Theme(palette()).color(Tint::text));
    painter.drawText(rect().adjusted(inset, 0, -inset, 0), Qt::AlignLeading | Qt::AlignTop | Qt::TextSingleLine,
                     title());
    painter.setBrush(palette().color(QPalette::Base));
    painter.setPen(Theme(palette()).color(Tint::track));
    painter.drawRoundedRect(QRectF(card()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    bool isFirst = true;
    for (int i = 0; i < m_rows->count(); ++i) {
        const QWidget* row = m_rows->itemAt(i)->widget();
        if (!row->isVisibleTo(this))
            continue;
        if (!isFirst)
            painter.fillRect(QRect(inset, row->y() - rowGap / 2, width() - 2 * inset, 1),
                             Theme(palette()).color(Tint::hairline));
        isFirst = false;
    }
}

} // namespace vormel
