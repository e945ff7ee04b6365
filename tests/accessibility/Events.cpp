#include "Events.h"

#include <algorithm>

namespace vormel::fixtures {

Events::Events(const char* kind)
    : m_kind(kind)
    , m_listener(atspi_event_listener_new(&Events::note, this, nullptr))
{
    atspi_event_listener_register(m_listener, m_kind.c_str(), nullptr);
}

Events::~Events()
{
    atspi_event_listener_deregister(m_listener, m_kind.c_str(), nullptr);
    g_object_unref(m_listener);
}

void Events::note(AtspiEvent* event, void* events)
{
    Accessible source(ATSPI_ACCESSIBLE(g_object_ref(event->source)));
    static_cast<Events*>(events)->m_told.push_back(
        {QString::fromUtf8(event->type), source, source.name(), event->detail1 != 0});
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

bool Events::has(AtspiRole role, const QString& nameStart) const
{
    return std::any_of(m_told.begin(), m_told.end(), [role, &nameStart](const Event& event) {
        return event.name.startsWith(nameStart) && event.source.role() == role;
    });
}

} // namespace vormel::fixtures
