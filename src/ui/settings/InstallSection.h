#pragma once

#include "kit/Card.h"
#include "ui/ViewPorts.h"

namespace vormel {

class BrewInstallRow;
class ManagerWarning;

/// Helps to install what is missing of package manager and tools; hidden while nothing is. The ports
/// outlive it.
class InstallSection final : public Card
{
    Q_OBJECT

public:
    /// The address of the script that installs a package manager; empty where there is none to offer.
    InstallSection(const ViewPorts& ports, const QString& installerUrl, QWidget* parent);

    /// Asks again what there is.
    void look();

Q_SIGNALS:
    void asked(const QString& command); ///< by the user, to run it

private:
    ViewPorts m_ports;
    ManagerWarning* m_warning;
    BrewInstallRow* m_rar;
    BrewInstallRow* m_sevenZip;
};

} // namespace vormel
