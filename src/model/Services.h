#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace vormel {

/// Where the services are that the program knows, and what they are called. Such services move, so this is a value
/// that a file may replace. Domains are in small letters; labels, keys and domains have nothing to do with each other.
struct Services
{
    QString filestoreDomain;
    QString filestoreKey; ///< what its accounts are stored under; stays as it is when the service moves
    QString filestoreDisplayName;
    QString terabytezDomain;
    QString terabytezHostKey; ///< what its accounts are stored under, and one more domain of its links
    QString terabytezDisplayName;
    std::array<QString, 10> otherFileHostDomains;
    std::array<QString, 2> fileCryptDomains;
    std::array<QString, 4> lfileCryptDomains;
    std::array<QString, 2> keeplinksDomains;
    QString keeplinksRootUrl; ///< where a reader of Keeplinks is said to come from

    /// As the program was built.
    [[nodiscard]] static Services builtIn();

    /// The domains whose links count inside containers: the premium hosts' first, then the others in their order.
    [[nodiscard]] QStringList knownFileHostDomains() const;

    friend bool operator==(const Services&, const Services&) = default;
};

} // namespace vormel
