#pragma once

#include "sites/Switchboard.h"
#include "sites/TestCertificates.h"

#include <QString>
#include <QStringList>

namespace vormel::demo {

/// What the browser engine of this process is told before it starts: whose certificates count, and where every name
/// leads, so that nothing can leave this computer. UI thread only.
class BrowserWorld
{
public:
    /// Sets the environment of the process, its home included, which is made below the folder: before the application
    /// is made, and with it any thread that may look there.
    explicit BrowserWorld(const QString& folder);

    /// Why the engine will not trust the certificates; empty if it will.
    [[nodiscard]] const QString& objection() const { return m_objection; }
    [[nodiscard]] const sites::TestCertificates& certificates() const { return m_certificates; }
    /// The file that makes others trust them.
    [[nodiscard]] const QString& authority() const { return m_authority; }

    void lead(const sites::Switchboard::Places& places) { m_switchboard.lead(places); }
    /// What the engine has asked for beyond these places.
    [[nodiscard]] QStringList unknownPlaces() const;

private:
    sites::TestCertificates m_certificates;
    sites::Switchboard m_switchboard;
    QString m_authority;
    QString m_objection;
};

} // namespace vormel::demo
