#include "platform/desktop/UrlOpener.h"

#include "platform/process/DetachedProgram.h"

#include <QUrl>

namespace vormel {

void DesktopUrlOpener::open(const QUrl& url)
{
    const QString address = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
    startDetached(QStringLiteral("xdg-open"), {address});
}

} // namespace vormel
