#include "ui/settings/InstallSection.h"

#include "archive/tools/InstallAdvice.h"
#include "archive/tools/ToolWatch.h"
#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "ui/settings/BrewInstallRow.h"
#include "ui/settings/ManagerWarning.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString rarDescription(bool hasRar, AppLanguage language)
{
    if (hasRar)
        return pair(language, u"Installs rar + unrar — for RAR archives and .rev repair",
                    u"Installa rar + unrar — per archivi RAR e riparazione .rev");
    return pair(language, u"Installs unrar — for RAR archives", u"Installa unrar — per archivi RAR");
}

QString sevenZipDescription(const QString& program, AppLanguage language)
{
    return pair(language, u"Installs %1 — needed for 7-Zip archives", u"Installa %1 — necessario per gli archivi 7-Zip")
        .arg(program);
}

/// Debian does not call the two free, and only what it calls free is offered to everybody.
QString nonFreeNote(PackageManager manager, AppLanguage language)
{
    if (manager != PackageManager::apt)
        return {};
    return pair(language,
                u"Debian keeps both in its “non-free” component: free of charge, but not free software. Where apt does "
                u"not find them, switch it on first: add “non-free” behind “main” in /etc/apt/sources.list or "
                u"/etc/apt/sources.list.d/debian.sources, then run “sudo apt update”.",
                u"Debian li tiene nel componente “non-free”: gratuiti, ma non software libero. Se apt non li trova, "
                u"attivalo prima: aggiungi “non-free” dopo “main” in /etc/apt/sources.list o in "
                u"/etc/apt/sources.list.d/debian.sources, poi esegui “sudo apt update”.");
}

} // namespace

InstallSection::InstallSection(const ViewPorts& ports, const QString& installerUrl, QWidget* parent)
    : Card(ports.manager.settings(), u"installSection"_s, {u"Install missing tools", u"Installa strumenti mancanti"},
           parent)
    , m_ports(ports)
    , m_warning(new ManagerWarning(ports.manager.settings(), installerUrl, this))
    , m_rar(new BrewInstallRow(u"installRar"_s, this))
    , m_sevenZip(new BrewInstallRow(u"installSevenZip"_s, this))
{
    addRow(m_warning);
    addRow(m_rar);
    addRow(m_sevenZip);
    connect(m_warning, &ManagerWarning::asked, this, &InstallSection::asked);
    connect(m_rar, &BrewInstallRow::asked, this, &InstallSection::asked);
    connect(m_sevenZip, &BrewInstallRow::asked, this, &InstallSection::asked);
    connect(&m_ports.tools, &ToolWatch::toolsChanged, this, &InstallSection::look);
    followLanguage(this, ports.manager.settings(), [this] { look(); });
}

void InstallSection::look()
{
    const std::optional<PackageManager> manager = m_ports.packageManagers.present();
    const FoundTools& found = m_ports.tools.tools();
    const AppLanguage language = m_ports.manager.settings().language.value();
    if (manager) {
        const ToolPackages packages = toolPackages(*manager);
        m_rar->setCommand(packages.rarCommand, rarDescription(packages.hasRar, language));
        m_rar->setNote(nonFreeNote(*manager, language));
        m_sevenZip->setCommand(packages.sevenZipCommand, sevenZipDescription(packages.sevenZipProgram, language));
    }
    m_warning->setVisible(!manager);
    m_rar->setVisible(manager && !found.unrar);
    m_sevenZip->setVisible(manager && !found.sevenZip);
    setVisible(!manager || !found.unrar || !found.sevenZip);
}

} // namespace vormel
