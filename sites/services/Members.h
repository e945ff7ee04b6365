#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace vormel::sites {

// Who may sign in at a site, and which sign-ins hold. Any thread.
class Members
{
public:
    void add(const std::string& username, const std::string& password);

    // The new session; nothing where the password is not this member's.
    [[nodiscard]] std::optional<std::string> signIn(const std::string& username, const std::string& password);
    [[nodiscard]] bool isSession(const std::string& session) const;
    void signOut(const std::string& session);
    void signEverybodyOut();
    // How often somebody has signed in.
    [[nodiscard]] int signIns() const;

private:
    mutable std::mutex m_mutex; // guards all below
    std::map<std::string, std::string> m_passwords;
    std::set<std::string> m_sessions;
    int m_signIns = 0;
};

} // namespace vormel::sites
