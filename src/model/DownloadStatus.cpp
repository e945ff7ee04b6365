#include "model/DownloadStatus.h"

namespace vormel {

DownloadStatus DownloadStatus::failure(QString message)
{
    DownloadStatus status(failed);
    status.m_message = std::move(message);
    return status;
}

ExtractionStatus ExtractionStatus::failure(QString message)
{
    ExtractionStatus status(failed);
    status.m_message = std::move(message);
    return status;
}

QString statusLabel(const DownloadStatus& status, AppLanguage language)
{
    switch (status.kind()) {
    case DownloadStatus::queued:
        return pair(language, u"Queued", u"In coda");
    case DownloadStatus::resolving:
        return pair(language, u"Resolving...", u"Risoluzione...");
    case DownloadStatus::expanding:
        return pair(language, u"Reading container...", u"Lettura container...");
    case DownloadStatus::downloading:
        return pair(language, u"Downloading", u"Download");
    case DownloadStatus::paused:
        return pair(language, u"Paused", u"In pausa");
    case DownloadStatus::stopped:
        return pair(language, u"Stopped", u"Fermato");
    case DownloadStatus::completed:
        return pair(language, u"Completed", u"Completato");
    case DownloadStatus::failed:
        return pair(language, u"Error: ", u"Errore: ") + status.message();
    }
    Q_UNREACHABLE();
}

} // namespace vormel
