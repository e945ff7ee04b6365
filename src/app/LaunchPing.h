#pragma once

#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace vormel {

class HttpClient;
class UserDefaults;

/// Counts an installation once, anonymously: tells the endpoint the program's name and version and the system's name.
/// Silent in every case. UI thread only; client and preferences must outlive it.
class LaunchPing
{
public:
    struct Facts
    {
        QString endpoint;               ///< without one, nothing is ever sent
        std::optional<QString> version; ///< sent as an empty text when it is not known
        QString system;                 ///< the operating system in words
    };

    LaunchPing(HttpClient& client, UserDefaults& defaults, Facts facts);

    /// Sends the ping unless an earlier start has; returns at once. An answer of any kind means that it is never sent
    /// again, an error that the next start tries anew.
    void start();

private:
    QCoro::Task<> send();

    HttpClient& m_client;
    UserDefaults& m_defaults;
    Facts m_facts;
    Lifetime m_lifetime;
};

} // namespace vormel
