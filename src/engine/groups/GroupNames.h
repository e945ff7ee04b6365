#pragma once

#include <QHash>
#include <QString>

namespace vormel {

class UserDefaults;

/// The names that the user gave to groups, by group id. They outlive restarts, and the removal of the group. UI thread
/// only.
class GroupNames
{
public:
    /// The store must outlive this.
    explicit GroupNames(UserDefaults& store);

    /// Empty for a group that has none.
    [[nodiscard]] QString customName(const QString& id) const { return m_customGroupNames.value(id); }
    /// What the group is called on the screen.
    [[nodiscard]] QString displayName(const QString& id) const { return m_customGroupNames.value(id, id); }

    /// White space around the name goes; an empty name, or the id itself, takes the custom name away.
    void renameGroup(const QString& id, const QString& name);

private:
    UserDefaults& m_store;
    QHash<QString, QString> m_customGroupNames;
};

} // namespace vormel
