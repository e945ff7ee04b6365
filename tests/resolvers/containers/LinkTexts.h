#pragma once

#include "text/Link.h"

#include <QString>

#include <string>
#include <vector>

namespace vormel::tests {

/// The link that this text is.
inline Link linkOf(const QString& text)
{
    return Link::parse(text).value();
}

/// One link per line, so that a difference can be read.
inline std::string textOf(const std::vector<Link>& links)
{
    std::string text;
    for (const Link& link : links)
        text += (text.empty() ? "" : "\n") + link.absoluteString().toStdString();
    return text;
}

} // namespace vormel::tests
