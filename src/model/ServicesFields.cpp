#include "model/ServicesFields.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using Form = ServicesField::Form;
using Reason = ServicesProblem::Reason;

template <QString Services::*Member>
std::span<QString> one(Services& services)
{
    return {&(services.*Member), 1};
}

template <auto Member>
std::span<QString> list(Services& services)
{
    return services.*Member;
}

constexpr std::array allFields{
    ServicesField{"filestoreDomain"_L1, Form::domain, false, one<&Services::filestoreDomain>},
    ServicesField{"filestoreKey"_L1, Form::domain, false, one<&Services::filestoreKey>},
    ServicesField{"filestoreDisplayName"_L1, Form::name, false, one<&Services::filestoreDisplayName>},
    ServicesField{"terabytezDomain"_L1, Form::domain, false, one<&Services::terabytezDomain>},
    ServicesField{"terabytezHostKey"_L1, Form::domain, false, one<&Services::terabytezHostKey>},
    ServicesField{"terabytezDisplayName"_L1, Form::name, false, one<&Services::terabytezDisplayName>},
    ServicesField{"otherFileHostDomains"_L1, Form::domain, true, list<&Services::otherFileHostDomains>},
    ServicesField{"fileCryptDomains"_L1, Form::domain, true, list<&Services::fileCryptDomains>},
    ServicesField{"lfileCryptDomains"_L1, Form::domain, true, list<&Services::lfileCryptDomains>},
    ServicesField{"keeplinksDomains"_L1, Form::domain, true, list<&Services::keeplinksDomains>},
    ServicesField{"keeplinksRootUrl"_L1, Form::rootUrl, false, one<&Services::keeplinksRootUrl>},
};

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isLabel(QStringView label)
{
    constexpr qsizetype longest = 63;
    const auto isAllowed = [](QChar c) { return (c >= u'a' && c <= u'z') || isAsciiDigit(c) || c == u'-'; };
    return !label.isEmpty() && label.size() <= longest && !label.startsWith(u'-') && !label.endsWith(u'-') &&
           std::all_of(label.begin(), label.end(), isAllowed);
}

/// Readers of addresses take a host for a number as soon as its last part looks like one.
bool isNumeric(QStringView label)
{
    return label.startsWith(u"0x") || std::all_of(label.begin(), label.end(), isAsciiDigit);
}

bool isLocal(QStringView domain)
{
    const auto localNames = {u"localhost"_s, u"local"_s, u"localdomain"_s};
    return std::any_of(localNames.begin(), localNames.end(),
                       [domain](const QString& name) { return domain == name || domain.endsWith(u'.' + name); });
}

std::optional<Reason> wrongDomain(const QString& text)
{
    constexpr qsizetype longest = 253;
    const QString domain = text.toLower();
    const QList<QStringView> labels = QStringView(domain).split(u'.');
    if (domain.size() > longest || !std::all_of(labels.begin(), labels.end(), isLabel))
        return Reason::noDomain;
    if (isLocal(domain))
        return Reason::localDomain;
    if (labels.size() < 2)
        return Reason::noDomain;
    if (isNumeric(labels.back()))
        return Reason::ipAddress;
    return text == domain ? std::nullopt : std::optional(Reason::capitals);
}

std::optional<Reason> wrongName(const QString& text)
{
    constexpr qsizetype longest = 100;
    const bool isPlain = std::all_of(text.begin(), text.end(), [](QChar c) { return c.isPrint() || c.isSurrogate(); });
    return isPlain && !text.trimmed().isEmpty() && text.size() <= longest ? std::nullopt
                                                                          : std::optional(Reason::noName);
}

std::optional<Reason> wrongRoot(const QString& text)
{
    const QString scheme = u"https://"_s;
    const bool isRoot = text.startsWith(scheme) && text.endsWith(u'/') && text.size() > scheme.size() &&
                        !wrongDomain(text.sliced(scheme.size()).chopped(1));
    return isRoot ? std::nullopt : std::optional(Reason::noRootUrl);
}

} // namespace

std::span<const ServicesField> servicesFields()
{
    return allFields;
}

const ServicesField* servicesField(QStringView key)
{
    const auto* const found = std::find_if(allFields.begin(), allFields.end(),
                                           [key](const ServicesField& field) { return field.key == key; });
    return found == allFields.end() ? nullptr : &*found;
}

std::optional<Reason> wrongForm(const QString& text, Form form)
{
    switch (form) {
    case Form::name:
        return wrongName(text);
    case Form::domain:
        return wrongDomain(text);
    case Form::rootUrl:
        return wrongRoot(text);
    }
    Q_UNREACHABLE();
}

} // namespace vormel
