#include "ui/queue/DroppedLinks.h"

#include "text/HttpLinks.h"
#include "text/PercentCoding.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

namespace vormel {

bool mayHoldLinks(const QMimeData& data)
{
    return data.hasUrls() || data.hasText();
}

std::vector<std::vector<Link>> droppedLinks(const QMimeData& data)
{
    std::vector<std::vector<Link>> batches;
    // Read as text, since QUrl would lose the spelling of the hosts.
    for (const Link& link : httpLinks(lenientText(data.data(u"text/uri-list"_s))))
        batches.push_back({link});
    if (!batches.empty() || !data.hasText())
        return batches;
    std::vector<Link> links = httpLinks(data.text());
    if (!links.empty())
        batches.push_back(std::move(links));
    return batches;
}

} // namespace vormel
