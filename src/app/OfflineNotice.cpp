#include "app/OfflineNotice.h"

#include "engine/DownloadManager.h"
#include "ui/notices/Notices.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString key = u"offline"_s;

QString text(AppLanguage language)
{
    return pair(language, u"No network. Downloads go on by themselves when it is back.",
                u"Nessuna rete. I download riprenderanno da soli appena torna.");
}

} // namespace

OfflineNotice::OfflineNotice(DownloadManager& manager, Notices& notices, QObject* parent)
    : QObject(parent)
    , m_manager(manager)
    , m_notices(notices)
{
    connect(&manager, &DownloadManager::networkChanged, this, &OfflineNotice::lookLater);
    connect(&manager, &DownloadManager::itemsRemoved, this, &OfflineNotice::lookLater);
    connect(&manager, &DownloadManager::itemsInserted, this, &OfflineNotice::lookLater);
    connect(&manager, &DownloadManager::itemsPutBack, this, &OfflineNotice::lookLater);
    connect(&manager, &DownloadManager::itemChanged, this, [this](const ItemId&, ItemField field) {
        if (field == ItemField::status)
            lookLater();
    });
    lookLater();
}

void OfflineNotice::lookLater()
{
    if (std::exchange(m_isLookDue, true))
        return;
    QMetaObject::invokeMethod(this, &OfflineNotice::look, Qt::QueuedConnection);
}

void OfflineNotice::look()
{
    m_isLookDue = false;
    const bool isShown = m_notices.find(key) != nullptr;
    if (m_manager.isWaitingForNetwork() == isShown)
        return;
    if (isShown)
        return m_notices.takeBack(key);
    Notice notice;
    notice.key = key;
    notice.glyph = Glyph::globe;
    notice.text = text;
    // A desktop may be wrong, for example where another program looks after the network.
    notice.actions = {{{u"Try Anyway", u"Prova comunque"}, [this] { m_manager.goOnThoughOffline(); }}};
    notice.canClose = false;
    m_notices.show(std::move(notice));
}

} // namespace vormel
