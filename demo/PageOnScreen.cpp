#include "demo/PageOnScreen.h"

#include "demo/Hands.h"
#include "platform/async/Spawn.h"
#include "platform/web/WebPage.h"
#include "ui/web/PageFrame.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

/// The middle of the element on the screen, in the screen's own points.
QString placeScript(const QString& selector)
{
    return u"(() => { const element = document.querySelector('%1'); if (!element) return null;"
           "const box = element.getBoundingClientRect(); const scale = window.devicePixelRatio;"
           "return [(box.left + box.width / 2) * scale, (box.top + box.height / 2) * scale]; })()"_s.arg(selector);
}

} // namespace

PageOnScreen::PageOnScreen(const QWidget& window)
    : m_window(window)
{}

PageFrame* PageOnScreen::frame() const
{
    auto* const frame = partInSight<PageFrame>(m_window, u"pageFrame"_s);
    return frame && frame->page() ? frame : nullptr;
}

bool PageOnScreen::holds(const QString& condition)
{
    if (condition != m_condition) {
        m_condition = condition;
        m_holds = false;
    }
    if (!frame())
        m_holds = false;
    else if (!m_isAsking)
        spawn(ask(condition, m_lifetime.watch()));
    return m_holds;
}

QCoro::Task<> PageOnScreen::ask(QString condition, Lifetime::Watch lifetime)
{
    m_isAsking = true;
    const QVariant answer = co_await frame()->page()->run(condition);
    if (lifetime.isOver())
        co_return;
    m_isAsking = false;
    m_holds = answer.toBool() && condition == m_condition;
}

void PageOnScreen::click(const QString& selector)
{
    if (frame())
        spawn(clickOn(selector, m_lifetime.watch()));
}

QCoro::Task<> PageOnScreen::clickOn(QString selector, Lifetime::Watch lifetime)
{
    const QPointer<QWidget> view = frame()->page()->widget();
    const QString script = placeScript(selector);
    const QVariant answer = co_await frame()->page()->run(script);
    const QVariantList place = answer.toList();
    if (lifetime.isOver() || !view || place.size() != 2)
        co_return;
    const QPointF point = QPointF(place[0].toDouble(), place[1].toDouble()) / view->devicePixelRatioF();
    demo::click(view, point.toPoint());
}

} // namespace vormel::demo
