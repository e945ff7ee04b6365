#include "sites/services/Members.h"

namespace vormel::sites {

void Members::add(const std::string& username, const std::string& password)
{
    const std::lock_guard guard(m_mutex);
    m_passwords[username] = password;
}

std::optional<std::string> Members::signIn(const std::string& username, const std::string& password)
{
    const std::lock_guard guard(m_mutex);
    const auto account = m_passwords.find(username);
    if (account == m_passwords.end() || account->second != password)
        return std::nullopt;
    return *m_sessions.insert("s" + std::to_string(++m_signIns)).first;
}

bool Members::isSession(const std::string& session) const
{
    const std::lock_guard guard(m_mutex);
    return m_sessions.contains(session);
}

void Members::signOut(const std::string& session)
{
    const std::lock_guard guard(m_mutex);
    m_sessions.erase(session);
}

void Members::signEverybodyOut()
{
    const std::lock_guard guard(m_mutex);
    m_sessions.clear();
}

int Members::signIns() const
{
    const std::lock_guard guard(m_mutex);
    return m_signIns;
}

} // namespace vormel::sites
