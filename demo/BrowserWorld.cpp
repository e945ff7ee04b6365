#include "demo/BrowserWorld.h"

#include "sites/BrowserEnvironment.h"

#include <stdexcept>

namespace vormel::demo {

BrowserWorld::BrowserWorld(const QString& folder)
    : m_authority(QString::fromStdString(m_certificates.writeAuthority(folder.toStdString()).string()))
{
    try {
        sites::setEnvironment(sites::browserEnvironment(folder.toStdString(), m_certificates, m_switchboard));
    } catch (const std::runtime_error& error) {
        m_objection = QString::fromUtf8(error.what());
    }
}

QStringList BrowserWorld::unknownPlaces() const
{
    QStringList places;
    for (const std::string& place : m_switchboard.unknownPlaces())
        places << QString::fromStdString(place);
    return places;
}

} // namespace vormel::demo
