#include "text/HttpLinks.h"

namespace vormel {

std::vector<Link> httpLinks(QStringView text)
{
    std::vector<Link> links;
    for (const QStringView line : text.tokenize(u'\n')) {
        const std::optional<Link> link = Link::parse(line.trimmed());
        if (link && link->isHttp())
            links.push_back(*link);
    }
    return links;
}

} // namespace vormel
