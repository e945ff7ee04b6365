#pragma once

#include <QHashFunctions>
#include <QString>
#include <QUuid>

#include <functional>

namespace vormel {

/// Identity of one item of the queue.
class ItemId
{
public:
    ItemId() = default;
    explicit ItemId(const QUuid& uuid)
        : m_uuid(uuid)
    {}
    [[nodiscard]] static ItemId make() { return ItemId(QUuid::createUuid()); }

    [[nodiscard]] bool isNull() const { return m_uuid.isNull(); }
    /// The canonical form, in capitals and without braces.
    [[nodiscard]] QString toString() const { return m_uuid.toString(QUuid::WithoutBraces).toUpper(); }

    friend bool operator==(const ItemId& a, const ItemId& b) { return a.m_uuid == b.m_uuid; }
    friend bool operator<(const ItemId& a, const ItemId& b) { return a.m_uuid < b.m_uuid; }
    friend size_t qHash(const ItemId& id, size_t seed = 0) { return qHash(id.m_uuid, seed); }

private:
    QUuid m_uuid;
};

} // namespace vormel

template <>
struct std::hash<vormel::ItemId>
{
    size_t operator()(const vormel::ItemId& id) const noexcept { return qHash(id); }
};
