#include "engine/groups/GroupNames.h"

#include "platform/storage/UserDefaults.h"

#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString storeKey = u"vormel_group_names"_s;

} // namespace

GroupNames::GroupNames(UserDefaults& store)
    : m_store(store)
{
    const QJsonObject stored = store.objectForKey(storeKey).value_or(QJsonValue()).toObject();
    // Somebody else's map is no names at all.
    if (!std::all_of(stored.begin(), stored.end(), [](const QJsonValue& name) { return name.isString(); }))
        return;
    for (auto entry = stored.begin(); entry != stored.end(); ++entry)
        m_customGroupNames.insert(entry.key(), entry->toString());
}

void GroupNames::renameGroup(const QString& id, const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || trimmed == id)
        m_customGroupNames.remove(id);
    else
        m_customGroupNames.insert(id, trimmed);
    QJsonObject whole;
    for (auto entry = m_customGroupNames.cbegin(); entry != m_customGroupNames.cend(); ++entry)
        whole.insert(entry.key(), entry.value());
    m_store.setObject(storeKey, whole);
}

} // namespace vormel
