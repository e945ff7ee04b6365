#include "model/DownloadItem.h"

#include "text/ByteCount.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString firstName(const Link& url)
{
    QString name = url.lastPathComponent();
    return name.isEmpty() ? u"download"_s : name;
}

QString hostText(const Link& url)
{
    return url.host().isEmpty() ? u"unknown"_s : url.host().toString();
}

} // namespace

DownloadItem::DownloadItem(Link originalUrl, ItemId id)
    : m_id(id)
    , m_originalURL(std::move(originalUrl))
    , m_filename(firstName(m_originalURL))
    , m_hostName(hostText(m_originalURL))
{}

void DownloadItem::setStatus(DownloadStatus status)
{
    if (m_status == status)
        return;
    // That it is fetched again stays true for as long as it is.
    const DownloadStatus::Kind kind = status.kind();
    const bool isOnItsWay =
        kind == DownloadStatus::queued || kind == DownloadStatus::resolving || kind == DownloadStatus::downloading;
    if (!isOnItsWay || m_verification.kind != VerificationResult::fetchedAgain)
        setVerification({});
    setWait({});
    set(m_status, std::move(status), ItemField::status);
}

void DownloadItem::setExtractionStatus(ExtractionStatus status)
{
    if (m_extractionStatus == status)
        return;
    setVerification({});
    set(m_extractionStatus, std::move(status), ItemField::extractionStatus);
}

QString DownloadItem::speedText() const
{
    return vormel::speedText(m_speedBytesPerSec);
}

QString DownloadItem::sizeText() const
{
    return m_totalBytes < 1 ? QString() : byteCountText(m_totalBytes);
}

bool isNamelessFile(QStringView filename)
{
    return filename.isEmpty() || filename == u"download";
}

} // namespace vormel
