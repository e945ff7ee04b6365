#pragma once

#include "model/AppLanguage.h"
#include "text/Link.h"

#include <QString>

#include <optional>
#include <vector>

namespace vormel {

/// The links of a text file, or why there are none. A value.
struct LinkFile
{
    enum class Problem
    {
        missing,
        unreadable, ///< also what is no file, such as a folder or a pipe
        tooLarge,
        empty, ///< of links
    };
    static constexpr qint64 maxBytes = 4LL * 1024 * 1024;

    std::vector<Link> links;
    std::optional<Problem> problem;
};

/// Reads a text in UTF-8 with one link per line. Any thread; waits for the disk, but for nothing else.
[[nodiscard]] LinkFile readLinkFile(const QString& path);

/// Where an address of a file on this machine leads; nothing for any other address.
[[nodiscard]] std::optional<QString> pathOfFile(const Link& address);

/// Does it name something that is neither on the web nor in a folder here, as "smb://host/links.txt" does? The host may
/// be none that the web would know.
[[nodiscard]] bool isElsewhere(const QString& address);

/// "No such file", as it stands behind the name.
[[nodiscard]] TextPair problemText(LinkFile::Problem problem);

} // namespace vormel
