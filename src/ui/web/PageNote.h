#pragma once

#include <QWidget>

class QPushButton;

namespace vormel {

class AppSettings;
class CodeLabel;
class StyledLabel;

/// Says in place of a page why there is none, and what can be done about it. The settings must outlive it.
class PageNote final : public QWidget
{
    Q_OBJECT

public:
    enum class Reason
    {
        notInstalled, ///< with the command that installs the engine
        doesNotStart,
        failed, ///< nothing came, or the page's process has died; it can be loaded again
    };

    PageNote(const AppSettings& settings, QWidget* parent);

    void say(Reason reason);

Q_SIGNALS:
    void reloadRequested();

private:
    void layOut();
    void showTexts();

    const AppSettings& m_settings;
    Reason m_reason = Reason::notInstalled;
    StyledLabel* m_text;
    CodeLabel* m_command;
    QPushButton* m_reload;
};

} // namespace vormel
