#include "platform/desktop/UrlOpener.h"

#include <QProcess>
#include <QUrl>

namespace vormel {

void DesktopUrlOpener::open(const QUrl& url)
{
    const QString address = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
    QProcess::startDetached(QStringLiteral("xdg-open"), {address});
}

} // namespace vormel
