#pragma once

#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace vormel {

/// The premium file hosts. What is stored, what is shown and the web domain are three different texts.
enum class SupportedHost
{
    filestore,
    terabytez,
};

[[nodiscard]] QString rawValue(SupportedHost host);
[[nodiscard]] QString displayName(SupportedHost host);
[[nodiscard]] std::optional<SupportedHost> supportedHostFromRawValue(QStringView value);

/// One login at a premium host. The password is kept elsewhere.
struct HostAccount
{
    QUuid id;
    SupportedHost host = SupportedHost::filestore;
    QString username;
    bool isEnabled = true; ///< a disabled account is never used to resolve

    friend bool operator==(const HostAccount&, const HostAccount&) = default;
};

/// The account that the host's links are resolved with: its first enabled one. Null without one; points into the list.
[[nodiscard]] const HostAccount* firstEnabledAccount(const std::vector<HostAccount>& accounts, SupportedHost host);

} // namespace vormel
