#pragma once

#include <QWidget>

class QPushButton;

namespace vormel {

class CodeLabel;
class StyledLabel;

/// A command that installs something, what that is, and a button that offers to run it.
class BrewInstallRow final : public QWidget
{
    Q_OBJECT

public:
    BrewInstallRow(const QString& name, QWidget* parent);

    void setCommand(const QString& command, const QString& description);
    [[nodiscard]] QString command() const;

Q_SIGNALS:
    void asked(const QString& command);

private:
    CodeLabel* m_command;
    StyledLabel* m_description;
    QPushButton* m_open;
};

} // namespace vormel
