#include "Accessible.h"

namespace vormel::fixtures {

namespace {

/// What a C function handed out, unless it failed.
QString takeText(gchar* text, GError*& error)
{
    g_clear_error(&error);
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

template <typename T>
std::shared_ptr<T> owned(T* taken)
{
    return {taken, [](T* object) {
                if (object)
                    g_object_unref(object);
            }};
}

} // namespace

Accessible::Accessible(AtspiAccessible* taken)
{
    if (taken)
        m_accessible = owned(taken);
}

QString Accessible::name() const
{
    GError* error = nullptr;
    return m_accessible ? takeText(atspi_accessible_get_name(m_accessible.get(), &error), error) : QString();
}

AtspiRole Accessible::role() const
{
    return m_accessible ? atspi_accessible_get_role(m_accessible.get(), nullptr) : ATSPI_ROLE_INVALID;
}

bool Accessible::is(AtspiStateType state) const
{
    if (!m_accessible)
        return false;
    const auto states = owned(atspi_accessible_get_state_set(m_accessible.get()));
    return states && atspi_state_set_contains(states.get(), state) != 0;
}

int Accessible::processId() const
{
    return m_accessible ? static_cast<int>(atspi_accessible_get_process_id(m_accessible.get(), nullptr)) : 0;
}

QRect Accessible::onScreen() const
{
    const auto component = owned(m_accessible ? atspi_accessible_get_component_iface(m_accessible.get()) : nullptr);
    AtspiRect* const rect =
        component ? atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr) : nullptr;
    if (!rect)
        return {};
    const QRect extents(rect->x, rect->y, rect->width, rect->height);
    g_free(rect);
    return extents;
}

Accessible Accessible::parent() const
{
    return m_accessible ? Accessible(atspi_accessible_get_parent(m_accessible.get(), nullptr)) : Accessible();
}

int Accessible::childCount() const
{
    return m_accessible ? qMax(0, atspi_accessible_get_child_count(m_accessible.get(), nullptr)) : 0;
}

Accessible Accessible::child(int place) const
{
    return m_accessible ? Accessible(atspi_accessible_get_child_at_index(m_accessible.get(), place, nullptr))
                        : Accessible();
}

std::vector<Accessible> Accessible::children() const
{
    std::vector<Accessible> found;
    for (int place = 0; place < childCount(); ++place)
        found.push_back(child(place));
    return found;
}

std::vector<Accessible> Accessible::all() const
{
    std::vector<Accessible> found;
    for (const Accessible& below : children()) {
        found.push_back(below);
        const std::vector<Accessible> further = below.all();
        found.insert(found.end(), further.begin(), further.end());
    }
    return found;
}

Accessible Accessible::find(AtspiRole role, const QString& nameStart) const
{
    for (const Accessible& below : children()) {
        if (below.role() == role && below.name().startsWith(nameStart))
            return below;
        if (Accessible further = below.find(role, nameStart); further.isThere())
            return further;
    }
    return {};
}

QStringList Accessible::actions() const
{
    QStringList names;
    const auto action = owned(m_accessible ? atspi_accessible_get_action_iface(m_accessible.get()) : nullptr);
    const int count = action ? atspi_action_get_n_actions(action.get(), nullptr) : 0;
    for (int place = 0; place < count; ++place) {
        GError* error = nullptr;
        names << takeText(atspi_action_get_action_name(action.get(), place, &error), error);
    }
    return names;
}

bool Accessible::act(const QString& action) const
{
    const qsizetype place = actions().indexOf(action);
    if (place < 0)
        return false;
    const auto asked = owned(atspi_accessible_get_action_iface(m_accessible.get()));
    return atspi_action_do_action(asked.get(), static_cast<gint>(place), nullptr) != 0;
}

bool Accessible::type(const QString& text) const
{
    const auto field = owned(m_accessible ? atspi_accessible_get_editable_text_iface(m_accessible.get()) : nullptr);
    return field && atspi_editable_text_set_text_contents(field.get(), text.toUtf8().constData(), nullptr) != 0;
}

QString Accessible::typedText() const
{
    const auto field = owned(m_accessible ? atspi_accessible_get_text_iface(m_accessible.get()) : nullptr);
    if (!field)
        return {};
    GError* error = nullptr;
    return takeText(atspi_text_get_text(field.get(), 0, -1, &error), error);
}

} // namespace vormel::fixtures
