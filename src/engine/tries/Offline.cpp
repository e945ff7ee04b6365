#include "engine/tries/Offline.h"

#include "engine/tries/AskedHost.h"
#include "platform/desktop/NetworkState.h"

namespace vormel {

bool Offline::isOffline() const
{
    return !m_isDoubted && !m_state.isOnline();
}

bool Offline::holdsBack(const Link& address) const
{
    return isOffline() && !isOnThisMachine(address);
}

} // namespace vormel
