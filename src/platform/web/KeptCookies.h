#pragma once

#include "platform/async/Lifetime.h"
#include "platform/async/SerialQueue.h"
#include "platform/async/SharedEventual.h"
#include "platform/web/WebBrowser.h"

#include <QByteArrayList>
#include <QCoroTask>
#include <QObject>

#include <functional>
#include <optional>

namespace vormel {

class CookieStore;
class SecretStore;

/// Lets sign-ins in the browser outlive the program, whatever ends it: those of its cookies that a rule picks are kept
/// in the secret store, where each change is noted at once, and brought back at the first need. UI thread only.
class KeptCookies final : public QObject
{
    Q_OBJECT

public:
    struct Ports
    {
        WebBrowser& browser;
        SecretStore& secrets;
        CookieStore& transfers; ///< the cookies of the transfers
    };
    /// Of a cookie's domain as the browser tells it, perhaps with a full stop before it.
    using Rule = std::function<bool(const QByteArray& domain)>;

    /// Asks the secret store nothing yet, as a keyring may ask the user.
    KeptCookies(const Ports& ports, Rule isKept);
    KeptCookies(const KeptCookies&) = delete;
    KeptCookies& operator=(const KeptCookies&) = delete;
    ~KeptCookies() override;

    /// What was kept is in the browser and among the cookies of the transfers when this ends; only the first call does
    /// anything. To be awaited before the first page is made, and before a transfer that wants a sign-in. Also ends
    /// with this object.
    [[nodiscard]] QCoro::Task<> restore();
    /// Signs out: nothing of what the rule picks is left in the browser, with the transfers, or in the secret store.
    [[nodiscard]] QCoro::Task<> forget();

private:
    [[nodiscard]] bool isRestored() const { return m_restored && m_restored->isThere(); }
    [[nodiscard]] QByteArrayList keptOf(const QByteArrayList& cookies) const;
    [[nodiscard]] QCoro::Task<> load(Lifetime::Watch lifetime);
    [[nodiscard]] QCoro::Task<> save(Lifetime::Watch lifetime);

    Ports m_ports;
    Rule m_isKept;
    std::optional<SharedEventual<bool>> m_restored; ///< there as soon as somebody has asked
    QByteArrayList m_saved;                         ///< what the secret store has
    SerialQueue m_turns;                            ///< at the secret store
    Lifetime m_lifetime;
};

} // namespace vormel
