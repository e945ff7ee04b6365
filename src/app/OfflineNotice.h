#pragma once

#include <QObject>

namespace vormel {

class DownloadManager;
class Notices;

/// Says that there is no network while downloads wait for it, and nothing otherwise. Both must outlive it.
class OfflineNotice final : public QObject
{
    Q_OBJECT

public:
    OfflineNotice(DownloadManager& manager, Notices& notices, QObject* parent = nullptr);

private:
    /// Changes come in swarms; they are looked at once.
    void lookLater();
    void look();

    DownloadManager& m_manager;
    Notices& m_notices;
    bool m_isLookDue = false;
};

} // namespace vormel
