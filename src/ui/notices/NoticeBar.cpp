#include "ui/notices/NoticeBar.h"

#include "ui/notices/NoticeLine.h"
#include "ui/notices/Notices.h"

#include <QApplication>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

NoticeBar::NoticeBar(Notices& notices, const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_notices(notices)
    , m_settings(settings)
    , m_column(new QVBoxLayout(this))
{
    setObjectName(u"noticeBar"_s);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    hide();
    connect(&notices, &Notices::appeared, this, &NoticeBar::add);
    connect(&notices, &Notices::renewed, this, &NoticeBar::renew);
    connect(&notices, &Notices::went, this, &NoticeBar::remove);
    connect(qApp, &QApplication::focusChanged, this, &NoticeBar::noteFocus);
}

NoticeBar::~NoticeBar()
{
    disconnect(qApp, nullptr, this, nullptr); // lines that go with it may have the focus
}

void NoticeBar::noteFocus(QWidget* before, QWidget* now)
{
    // Another window has no say in where the focus is in this one.
    if (before && before->window() == window() && !isAncestorOf(before) && isAncestorOf(now))
        m_before = before;
}

NoticeLine* NoticeBar::makeLine(const QString& key)
{
    auto* line = new NoticeLine(*m_notices.find(key), m_notices, m_settings, this);
    m_lines.insert(key, line);
    return line;
}

void NoticeBar::add(const QString& key)
{
    m_column->addWidget(makeLine(key));
    show();
}

void NoticeBar::renew(const QString& key)
{
    NoticeLine* const before = m_lines.value(key);
    NoticeLine* const now = makeLine(key);
    m_column->insertWidget(m_column->indexOf(before), now);
    now->show(); // or nothing in it takes the focus
    const QWidget* const focused = focusedIn(*before);
    if (auto* const same = focused ? now->findChild<QWidget*>(focused->objectName()) : nullptr)
        same->setFocus();
    drop(*before);
}

void NoticeBar::remove(const QString& key)
{
    NoticeLine* const line = m_lines.take(key);
    if (!line)
        return;
    drop(*line);
    setVisible(!m_lines.isEmpty());
}

void NoticeBar::drop(NoticeLine& line)
{
    giveFocusBack(line);
    line.hide();
    line.deleteLater(); // one of its own buttons may be at work
}

QWidget* NoticeBar::focusedIn(const NoticeLine& line) const
{
    QWidget* const focused = window()->focusWidget();
    return focused && line.isAncestorOf(focused) ? focused : nullptr;
}

/// Qt would hand it to the next button: whoever meant to press this one would press that.
void NoticeBar::giveFocusBack(const NoticeLine& line)
{
    QWidget* const focused = focusedIn(line);
    if (!focused)
        return;
    QWidget* const before = m_before.data();
    if (before && before->isVisible() && before->isEnabled())
        before->setFocus();
    else
        focused->clearFocus();
}

} // namespace vormel
