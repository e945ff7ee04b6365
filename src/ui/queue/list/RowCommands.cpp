#include "ui/queue/list/RowCommands.h"

#include "archive/pipeline/ExtractionFolder.h"
#include "engine/DownloadManager.h"
#include "model/DownloadPaths.h"
#include "model/SetName.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/UrlOpener.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

#include <algorithm>

namespace vormel {

RowCommands::RowCommands(const ViewPorts& ports)
    : m_ports(ports)
{}

void RowCommands::run(RowButton button,
                      ItemPtr item) const // NOLINT(performance-unnecessary-value-param): keeps it alive
{
    QueueCommands& commands = m_ports.manager.commands();
    switch (button) {
    case RowButton::pause:
        return commands.pauseItems({item});
    case RowButton::stop:
        return commands.stopItems({item});
    case RowButton::resume:
        return commands.resumeItem(*item);
    case RowButton::start:
        return commands.startItems({item});
    case RowButton::resync:
        return commands.resyncItems({item});
    case RowButton::retry:
        return commands.retryItem(*item);
    case RowButton::showInViewer:
        return showInViewer(*item);
    case RowButton::redownload:
        return commands.redownloadItem(*item);
    case RowButton::remove:
        return m_ports.manager.removed().remove({item->id()});
    case RowButton::retryExtraction:
    case RowButton::extract:
        return m_ports.manager.commands().retryExtraction(item->id());
    case RowButton::stopExtraction:
        return m_ports.manager.commands().stopExtraction(item->id());
    default:
        return; // a header's: the row was one when it was asked
    }
}

void RowCommands::run(RowButton button,
                      DownloadGroup group) const // NOLINT(performance-unnecessary-value-param): keeps it alive
{
    DownloadManager& manager = m_ports.manager;
    QueueCommands& commands = manager.commands();
    switch (button) {
    case RowButton::pauseGroup:
        return commands.pauseItems(group.items);
    case RowButton::stopGroup:
        return commands.stopItems(group.items);
    case RowButton::startStoppedGroup:
    case RowButton::startGroup:
        return commands.startItems(group.items);
    case RowButton::repairGroup:
        return manager.commands().retryWithRevFiles(group.items);
    case RowButton::verifyGroup:
        return manager.commands().verifyGroup(group.items);
    case RowButton::resyncGroup:
        return commands.resyncItems(group.items);
    case RowButton::removeGroup:
        return manager.removed().removeGroup(group.id);
    case RowButton::extract:
        return manager.commands().retryExtraction(group.items.front()->id());
    case RowButton::stopExtraction:
        return manager.commands().stopExtraction(group.items.front()->id());
    case RowButton::tryFailedAgain:
        return commands.tryFailedAgain(group.items);
    case RowButton::showGroup:
        return showInViewer(group);
    default:
        return; // a row's: the group had more items when it was asked
    }
}

bool RowCommands::hasCustomName(const QString& groupId) const
{
    return !m_ports.manager.groupNames().customName(groupId).isEmpty();
}

void RowCommands::renameGroup(const QString& groupId, const QString& name) const
{
    m_ports.manager.renameGroup(groupId, name);
}

void RowCommands::moveGroup(const QStringList& displayedIds, int row, int destination) const
{
    if (destination >= 0 && destination <= displayedIds.size())
        m_ports.manager.commands().moveGroups({row}, destination, displayedIds);
}

void RowCommands::showInViewer(const DownloadItem& item) const
{
    if (item.localPath())
        m_ports.fileViewer.show(*item.localPath());
}

void RowCommands::showInViewer(const DownloadGroup& group) const
{
    const auto finished = std::ranges::find_if(group.items, [](const ItemPtr& item) {
        return item->status() == DownloadStatus::completed && item->localPath();
    });
    const AppSettings& settings = m_ports.manager.settings();
    const QString folder = settings.paths().groupFolder(group.items.front()->filename());
    if (finished != group.items.end())
        m_ports.fileViewer.show(*(*finished)->localPath());
    else
        m_ports.urlOpener.open(
            QUrl::fromLocalFile(QFileInfo::exists(folder) ? folder : settings.downloadFolderPath.value()));
}

void RowCommands::open(const DownloadItem& item) const
{
    if (item.status() != DownloadStatus::completed)
        return;
    const QString target = unpackedTo(item).value_or(item.localPath().value_or(QString()));
    if (QFileInfo::exists(target))
        m_ports.urlOpener.open(QUrl::fromLocalFile(target));
}

std::optional<QString> RowCommands::unpackedTo(const DownloadItem& item) const
{
    DownloadManager& manager = m_ports.manager;
    const std::vector<ItemPtr> set = manager.visibleGroupOf(item).value_or(DownloadGroup()).items;
    const auto archive = std::ranges::find_if(set, [](const ItemPtr& member) {
        return member->extractionStatus() == ExtractionStatus::done && member->localPath();
    });
    if (archive == set.end())
        return std::nullopt;
    const QString path = *(*archive)->localPath();
    const QString folder =
        extractionFolder(manager.settings(), path, manager.groupNames().customName(setBaseName(item.filename())));
    // It had another name when it was unpacked, perhaps.
    return QFileInfo::exists(folder) ? folder : extractionFolder(manager.settings(), path, {});
}

void RowCommands::copyLinks(const std::vector<ItemPtr>& items)
{
    QStringList links;
    for (const ItemPtr& item : items)
        links << item->originalURL().absoluteString();
    copy(links.join(u'\n'));
}

void RowCommands::copy(const QString& text)
{
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

} // namespace vormel
