#include "model/ServicesClash.h"

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using Reason = ServicesProblem::Reason;

const QString terabytezWord = u"terabytez."_s;

/// A text that a service finds in the hosts of its links.
struct Claim
{
    enum class Owner
    {
        filestore,
        terabytez,
        otherHost,
        fileCrypt,
        lfileCrypt,
        keeplinks,
    };

    Owner owner = Owner::filestore;
    QString text;
    QString key;
    int line = 0;
};

int lineOf(const ServicesLines& lines, const QString& key, std::size_t place = 0)
{
    const auto found = lines.constFind(key);
    return found == lines.constEnd() ? 0 : found->at(place);
}

class Claims
{
public:
    Claims(const Services& services, const ServicesLines& lines)
        : m_lines(lines)
    {
        add(Claim::Owner::filestore, u"filestoreDomain"_s, {&services.filestoreDomain, 1});
        add(Claim::Owner::terabytez, {}, {&terabytezWord, 1});
        add(Claim::Owner::terabytez, u"terabytezDomain"_s, {&services.terabytezDomain, 1});
        add(Claim::Owner::terabytez, u"terabytezHostKey"_s, {&services.terabytezHostKey, 1});
        add(Claim::Owner::otherHost, u"otherFileHostDomains"_s, services.otherFileHostDomains);
        add(Claim::Owner::fileCrypt, u"fileCryptDomains"_s, services.fileCryptDomains);
        add(Claim::Owner::lfileCrypt, u"lfileCryptDomains"_s, services.lfileCryptDomains);
        add(Claim::Owner::keeplinks, u"keeplinksDomains"_s, services.keeplinksDomains);
    }

    [[nodiscard]] const std::vector<Claim>& all() const { return m_claims; }

private:
    void add(Claim::Owner owner, const QString& key, std::span<const QString> texts)
    {
        for (std::size_t i = 0; i < texts.size(); ++i)
            m_claims.push_back({owner, texts[i], key, lineOf(m_lines, key, i)});
    }

    const ServicesLines& m_lines;
    std::vector<Claim> m_claims;
};

std::optional<Reason> clashOf(const Claim& a, const Claim& b)
{
    // A list of Terabytez' domains is none: word, domain and key of one site are alike.
    if (a.owner == Claim::Owner::terabytez && b.owner == a.owner)
        return std::nullopt;
    if (a.text == b.text && a.key == b.key)
        return Reason::repeatedValue;
    if (a.owner == Claim::Owner::otherHost && b.owner == a.owner)
        return std::nullopt;
    return a.text.contains(b.text) || b.text.contains(a.text) ? std::optional(Reason::clash) : std::nullopt;
}

std::optional<ServicesProblem> clashOfClaims(const std::vector<Claim>& claims)
{
    for (auto later = claims.begin(); later != claims.end(); ++later) {
        for (auto earlier = claims.begin(); earlier != later; ++earlier) {
            const std::optional<Reason> reason = clashOf(*earlier, *later);
            const bool isLaterToBlame = later->line >= earlier->line;
            const Claim& blamed = isLaterToBlame ? *later : *earlier;
            const Claim& other = isLaterToBlame ? *earlier : *later;
            if (reason)
                return ServicesProblem{*reason, blamed.line, blamed.key, other.text};
        }
    }
    return std::nullopt;
}

/// A value by its key.
struct Named
{
    QString key;
    QString value;
};

/// Accounts and choices of hosts are told apart by such values.
std::optional<ServicesProblem> sameValue(const Named& a, const Named& b, const ServicesLines& lines)
{
    if (a.value != b.value)
        return std::nullopt;
    const int lineA = lineOf(lines, a.key);
    const int lineB = lineOf(lines, b.key);
    return ServicesProblem{Reason::repeatedValue, std::max(lineA, lineB), lineB >= lineA ? b.key : a.key, a.value};
}

std::optional<ServicesProblem> wrongRootAmong(const Services& services, const ServicesLines& lines)
{
    const QString host = services.keeplinksRootUrl.section(u'/', 2, 2);
    const bool isAtHome =
        std::any_of(services.keeplinksDomains.begin(), services.keeplinksDomains.end(),
                    [&host](const QString& domain) { return host == domain || host.endsWith(u'.' + domain); });
    if (isAtHome)
        return std::nullopt;
    const QString rootKey = u"keeplinksRootUrl"_s;
    const QString domainsKey = u"keeplinksDomains"_s;
    const bool isTold = lines.contains(rootKey);
    return ServicesProblem{
        Reason::foreignRoot, lineOf(lines, isTold ? rootKey : domainsKey), isTold ? rootKey : domainsKey, {}};
}

} // namespace

std::optional<ServicesProblem> clashAmong(const Services& services, const ServicesLines& lines)
{
    const QString hostKey = u"terabytezHostKey"_s;
    if (!services.terabytezHostKey.contains(terabytezWord))
        return ServicesProblem{Reason::noTerabytezWord, lineOf(lines, hostKey), hostKey, {}};
    if (auto problem = clashOfClaims(Claims(services, lines).all()))
        return problem;
    if (auto problem =
            sameValue({u"filestoreKey"_s, services.filestoreKey}, {hostKey, services.terabytezHostKey}, lines))
        return problem;
    if (auto problem = sameValue({u"filestoreDisplayName"_s, services.filestoreDisplayName},
                                 {u"terabytezDisplayName"_s, services.terabytezDisplayName}, lines))
        return problem;
    return wrongRootAmong(services, lines);
}

} // namespace vormel
