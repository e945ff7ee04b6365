#pragma once

#include <QWidget>

class QPushButton;

namespace vormel {

class CodeLabel;
class StyledLabel;

/// A command that installs something, what that is, what it needs, and a button that offers to run it.
class BrewInstallRow final : public QWidget
{
    Q_OBJECT

public:
    BrewInstallRow(const QString& name, QWidget* parent);

    void setCommand(const QString& command, const QString& description);
    /// What must be so for the command to succeed; nothing by default.
    void setNote(const QString& note);
    [[nodiscard]] QString command() const;

Q_SIGNALS:
    void asked(const QString& command);

private:
    CodeLabel* m_command;
    StyledLabel* m_description;
    StyledLabel* m_note;
    QPushButton* m_open;
};

} // namespace vormel
