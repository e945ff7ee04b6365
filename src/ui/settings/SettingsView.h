#pragma once

#include "kit/ScrollPage.h"
#include "ui/ViewPorts.h"

#include <optional>

namespace vormel {

class InstallSection;

/// The page of the settings: a scrolling column of sections. Each control writes its setting at once and follows it
/// when it is set elsewhere. The ports outlive it.
class SettingsView final : public ScrollPage
{
    Q_OBJECT

public:
    explicit SettingsView(const ViewPorts& ports, QWidget* parent = nullptr);

    /// The command that the user is being asked about.
    [[nodiscard]] const std::optional<QString>& pendingCommand() const { return m_pendingCommand; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void addSections();
    void lookAgain();
    void ask(const QString& command);
    void answer(bool run);

    ViewPorts m_ports;
    InstallSection* m_install = nullptr;
    std::optional<QString> m_pendingCommand; ///< set while its alert is shown
};

} // namespace vormel
