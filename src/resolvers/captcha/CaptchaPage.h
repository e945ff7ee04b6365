#pragma once

#include "text/Link.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace vormel {

/// What a container's page, once its CAPTCHA is solved, tells of its files.
struct CaptchaPage
{
    QString html;
    std::vector<Link> calls;      ///< files of known hosts, by https, that the page's scripts hand over
    std::vector<Link> field;      ///< the links of a field that is to be posted
    std::optional<Link> textList; ///< where a text with links is
    std::vector<Link> linkPages;  ///< pages of the container's site, each of which leads on to one file
};

/// Run in the page, gives the text that readCaptchaPage() reads.
[[nodiscard]] QString captchaPageScript();

// Pure; any thread.

/// Nothing for what is no such text.
[[nodiscard]] std::optional<CaptchaPage> readCaptchaPage(const QString& told, const Link& containerURL,
                                                         const QStringList& knownFileHosts);

/// The http and https links of a text in which they stand between spaces, tabs and ends of lines; each once.
[[nodiscard]] std::vector<Link> parseLinkList(QStringView text);

/// The addresses below /Link/ of the container's site that the page has in its links; each once. Letter case counts.
[[nodiscard]] std::vector<Link> extractLinkPages(const QString& html, const Link& containerURL);

} // namespace vormel
