#include "ui/settings/SettingsView.h"

#include "archive/tools/ToolWatch.h"
#include "config/Services.h"
#include "engine/DownloadManager.h"
#include "kit/FocusInSight.h"
#include "platform/desktop/Terminal.h"
#include "ui/settings/CommandAlert.h"
#include "ui/settings/DownloadSection.h"
#include "ui/settings/ExtractionSection.h"
#include "ui/settings/InstallSection.h"
#include "ui/settings/LanguageSection.h"
#include "ui/settings/SupportSection.h"
#include "ui/settings/ToolsSection.h"

#include <QEvent>
#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

SettingsView::SettingsView(const ViewPorts& ports, QWidget* parent)
    : QScrollArea(parent)
    , m_ports(ports)
{
    setObjectName(u"settingsView"_s);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // everything wraps
    setFocusPolicy(Qt::NoFocus);
    layOut();
    keepFocusInSight(*this);
    connect(m_install, &InstallSection::asked, this, &SettingsView::ask);
}

QList<QWidget*> SettingsView::makeSections(QWidget* parent)
{
    AppSettings& settings = m_ports.manager.settings();
    m_install = new InstallSection(m_ports, QString(brewInstallerUrl), parent);
    return {new SupportSection(settings, m_ports.urlOpener, parent),
            new LanguageSection(settings, parent),
            new DownloadSection(m_ports, parent),
            new ExtractionSection(m_ports, parent),
            new ToolsSection(settings, m_ports.tools, parent),
            m_install};
}

void SettingsView::layOut()
{
    constexpr int widest = 640; // longer lines are hard to follow
    constexpr int margin = 20;
    auto* page = new QWidget(this);
    auto* column = new QWidget(page);
    column->setMaximumWidth(widest);
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, margin, 0, margin);
    rows->setSpacing(margin);
    const QList<QWidget*> sections = makeSections(column);
    for (QWidget* section : sections)
        rows->addWidget(section);
    rows->addStretch();
    auto* centred = new QHBoxLayout(page);
    centred->setContentsMargins(margin, 0, margin, 0);
    centred->addWidget(column);
    setWidget(page);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

void SettingsView::showEvent(QShowEvent* event)
{
    QScrollArea::showEvent(event);
    lookAgain();
}

void SettingsView::changeEvent(QEvent* event)
{
    QScrollArea::changeEvent(event);
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
