#pragma once

#include <QHash>
#include <QPointer>
#include <QWidget>

class QVBoxLayout;

namespace vormel {

class AppSettings;
class NoticeLine;
class Notices;

/// Shows the notices below the pages, a line each, and nothing while there are none. A line keeps its place and the
/// focus in it while others come and go, and when it is renewed; when it goes, the focus returns to where it came from.
/// Both must outlive it.
class NoticeBar final : public QWidget
{
    Q_OBJECT

public:
    NoticeBar(Notices& notices, const AppSettings& settings, QWidget* parent = nullptr);
    ~NoticeBar() override;

private:
    [[nodiscard]] NoticeLine* makeLine(const QString& key);
    void add(const QString& key);
    void renew(const QString& key);
    void remove(const QString& key);
    void noteFocus(QWidget* before, QWidget* now);
    void drop(NoticeLine& line);
    [[nodiscard]] QWidget* focusedIn(const NoticeLine& line) const;
    void giveFocusBack(const NoticeLine& line);

    Notices& m_notices;
    const AppSettings& m_settings;
    QVBoxLayout* m_column;
    QHash<QString, NoticeLine*> m_lines;
    QPointer<QWidget> m_before; ///< had the focus before it came in here
};

} // namespace vormel
