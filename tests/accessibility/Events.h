#pragma once

#include "Accessible.h"

#include <memory>
#include <vector>

namespace vormel::fixtures {

/// Writes down what programs tell a screen reader of one kind, for as long as it lives. It comes in while the event
/// loop turns.
class Events
{
public:
    struct Event
    {
        QString kind;
        Accessible source;
        QString name; ///< of the source, when it came
        bool isOn;    ///< for states: has it now
    };

    /// The kind is written as AT-SPI does: "object:state-changed:focused".
    explicit Events(const char* kind);
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;
    ~Events();

    /// Has one come whose source, of that role, had a name that starts so?
    [[nodiscard]] bool has(AtspiRole role, const QString& nameStart) const;
    [[nodiscard]] const std::vector<Event>& told() const { return m_told; }

private:
    static void note(AtspiEvent* event, void* events);

    std::string m_kind;
    AtspiEventListener* m_listener;
    std::vector<Event> m_told;
};

} // namespace vormel::fixtures
