#include "platform/desktop/UrlOpener.h"

#include "platform/process/DetachedProgram.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

void DesktopUrlOpener::open(const QUrl& url)
{
    const QString address = url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
    startDetached(u"xdg-open"_s, {address});
}

} // namespace vormel
