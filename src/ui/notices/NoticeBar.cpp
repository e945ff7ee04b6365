#include "ui/notices/NoticeBar.h"

#include "ui/notices/NoticeLine.h"
#include "ui/notices/Notices.h"

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
    connect(&notices, &Notices::went, this, &NoticeBar::remove);
}

void NoticeBar::add(const QString& key)
{
    auto* line = new NoticeLine(*m_notices.find(key), m_notices, m_settings, this);
    m_lines.insert(key, line);
    m_column->addWidget(line);
    show();
}

void NoticeBar::remove(const QString& key)
{
    NoticeLine* const line = m_lines.take(key);
    if (!line)
        return;
    line->hide();
    line->deleteLater(); // one of its own buttons may be at work
    setVisible(!m_lines.isEmpty());
}

} // namespace vormel
