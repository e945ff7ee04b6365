#include "ui/queue/DroppedLinks.h"

#include "text/PercentCoding.h"
#include "ui/sheets/LinkPaste.h"

#include <QMimeData>

namespace vormel {

std::vector<Link> droppedLinks(const QMimeData& data)
{
    // Read as text, since QUrl would lose the spelling of the hosts.
    std::vector<Link> links = httpLinks(lenientText(data.data(QStringLiteral("text/uri-list"))));
    if (links.empty() && data.hasText())
        links = httpLinks(data.text());
    return links;
}

} // namespace vormel
