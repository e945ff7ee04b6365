#pragma once

#include <QWidget>

class QPushButton;

namespace vormel {

class AppSettings;
class StyledLabel;

/// Says that there is no package manager, and offers to install one where it is known from where. The settings must
/// outlive it.
class ManagerWarning final : public QWidget
{
    Q_OBJECT

public:
    /// Without an address nothing is offered.
    ManagerWarning(const AppSettings& settings, const QString& installerUrl, QWidget* parent);

Q_SIGNALS:
    void asked(const QString& command);

private:
    void layOut();
    void bindTexts(const AppSettings& settings);

    StyledLabel* m_title;
    StyledLabel* m_text;
    QPushButton* m_install;
};

} // namespace vormel
