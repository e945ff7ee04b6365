#pragma once

#include "text/BoundedRegex.h"
#include "text/Link.h"

#include <QStringList>

#include <vector>

namespace vormel {

/// How a service writes the addresses of files into its pages: all in which FileCrypt and LFileCrypt differ.
struct HrefScan
{
    BoundedRegex pattern;
    int group = 0;
    QString droppedAtEnd; ///< each of these characters, as often as it stands there

    /// Values of href in either kind of quotes.
    [[nodiscard]] static const HrefScan& fileCrypt();
    /// Anything that looks like an address, in scripts and prose too; punctuation behind it is no part of it.
    [[nodiscard]] static const HrefScan& lfileCrypt();
};

/// What a container's page tells of its files, before anything else is fetched.
struct PageLinks
{
    std::vector<Link> cnl;
    std::vector<Link> go; ///< pages of the container's site that lead on to files
    std::vector<Link> hrefs;
};

/// The page of the container at that address. Files are links of the known hosts, by https.
[[nodiscard]] PageLinks readPageLinks(const QString& html, const Link& url, const HrefScan& scan,
                                      const QStringList& knownFileHosts);

/// Addresses of the container's site whose path is /go/ and a word of letters and digits; each once. Those in href
/// first, then those that a script opens.
[[nodiscard]] std::vector<Link> extractGoLinks(const QString& html, const Link& url);

/// Files of known hosts; each once, by http where the page says so.
[[nodiscard]] std::vector<Link> extractHrefLinks(const QString& html, const HrefScan& scan,
                                                 const QStringList& knownFileHosts);

/// The same address with https in place of http; any other as it is.
[[nodiscard]] Link upgradeToHTTPS(const Link& url);

/// Of links that are the same, the first stays.
[[nodiscard]] std::vector<Link> withoutDuplicates(std::vector<Link> links);

/// All that the container holds: those of the calls, then those that the go links led to, then those in plain sight;
/// each once.
[[nodiscard]] std::vector<Link> joinedLinks(const PageLinks& page, const std::vector<Link>& followed);

} // namespace vormel
