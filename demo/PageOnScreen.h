#pragma once

#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QString>

class QWidget;

namespace vormel {

class PageFrame;

} // namespace vormel

namespace vormel::demo {

/// The page of the browser in the sheet that is open, as a person sees and uses it. The window must outlive it.
class PageOnScreen
{
public:
    explicit PageOnScreen(const QWidget& window);

    /// Did this condition, a script, hold when the page was last asked? Each call has it asked anew. False while there
    /// is no page, or another condition was the last.
    [[nodiscard]] bool holds(const QString& condition);
    /// Clicks with the mouse in the middle of the first element that is so described. Nothing without one.
    void click(const QString& selector);

private:
    [[nodiscard]] PageFrame* frame() const;
    [[nodiscard]] QCoro::Task<> ask(QString condition, Lifetime::Watch lifetime);
    [[nodiscard]] QCoro::Task<> clickOn(QString selector, Lifetime::Watch lifetime);

    const QWidget& m_window;
    QString m_condition;
    bool m_isAsking = false;
    bool m_holds = false;
    Lifetime m_lifetime;
};

} // namespace vormel::demo
