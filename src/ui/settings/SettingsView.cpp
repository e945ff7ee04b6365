#include "ui/settings/SettingsView.h"

#include "archive/tools/ToolWatch.h"
#include "config/Services.h"
#include "engine/DownloadManager.h"
#include "platform/desktop/Terminal.h"
#include "ui/settings/CommandAlert.h"
#include "ui/settings/DesktopSection.h"
#include "ui/settings/DownloadSection.h"
#include "ui/settings/ExtractionSection.h"
#include "ui/settings/InstallSection.h"
#include "ui/settings/LanguageSection.h"
#include "ui/settings/SupportSection.h"
#include "ui/settings/ToolsSection.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int widest = 640; // longer lines are hard to follow

} // namespace

SettingsView::SettingsView(const ViewPorts& ports, QWidget* parent)
    : ScrollPage(widest, parent)
    , m_ports(ports)
{
    setObjectName(u"settingsView"_s);
    addSections();
    connect(m_install, &InstallSection::asked, this, &SettingsView::ask);
}

void SettingsView::addSections()
{
    AppSettings& settings = m_ports.manager.settings();
    addPart(new SupportSection(settings, m_ports.urlOpener, column()));
    addPart(new LanguageSection(settings, column()));
    addPart(new DownloadSection(m_ports, column()));
    addPart(new ExtractionSection(m_ports, column()));
    addPart(new ToolsSection(settings, m_ports.tools, column()));
    m_install = new InstallSection(m_ports, QString(brewInstallerUrl), column());
    addPart(m_install);
    addPart(new DesktopSection(settings, column()));
}

void SettingsView::showEvent(QShowEvent* event)
{
    ScrollPage::showEvent(event);
    lookAgain();
}

void SettingsView::changeEvent(QEvent* event)
{
    ScrollPage::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        lookAgain(); // the user comes back from a terminal, perhaps
}

void SettingsView::lookAgain()
{
    m_ports.tools.look();
    m_install->look();
}

void SettingsView::ask(const QString& command)
{
    if (m_pendingCommand)
        return;
    m_pendingCommand = command;
    auto* alert = new CommandAlert(command, m_ports.manager.settings().language.value(), this);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    connect(alert, &CommandAlert::accepted, this, [this] { answer(true); });
    connect(alert, &CommandAlert::rejected, this, [this] { answer(false); });
    alert->open();
}

void SettingsView::answer(bool run)
{
    const std::optional<QString> command = std::exchange(m_pendingCommand, std::nullopt);
    if (run && command)
        m_ports.terminal.run(*command);
}

} // namespace vormel
