#pragma once

#include <QHash>
#include <QWidget>

class QVBoxLayout;

namespace vormel {

class AppSettings;
class NoticeLine;
class Notices;

/// Shows the notices below the pages, a line each, and nothing while there are none. A line keeps its place and the
/// focus in it while others come and go. Both must outlive it.
class NoticeBar final : public QWidget
{
    Q_OBJECT

public:
    NoticeBar(Notices& notices, const AppSettings& settings, QWidget* parent = nullptr);

private:
    void add(const QString& key);
    void remove(const QString& key);

    Notices& m_notices;
    const AppSettings& m_settings;
    QVBoxLayout* m_column;
    QHash<QString, NoticeLine*> m_lines;
};

} // namespace vormel
