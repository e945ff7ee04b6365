#pragma once

#include <glib-object.h>
#include <memory>

namespace vormel {

/// Owns a reference that GLib gave away; null stays null.
template <typename T>
[[nodiscard]] std::shared_ptr<T> adopted(T* object)
{
    if (!object)
        return nullptr;
    return {object, [](T* last) { g_object_unref(last); }};
}

/// The error that a call of GLib's may leave behind.
class GlibError
{
public:
    GlibError() = default;
    GlibError(const GlibError&) = delete;
    GlibError& operator=(const GlibError&) = delete;
    ~GlibError() { g_clear_error(&m_error); }

    /// For the last parameter of the call.
    [[nodiscard]] GError** place() { return &m_error; }
    [[nodiscard]] const GError* get() const { return m_error; }

private:
    GError* m_error = nullptr;
};

} // namespace vormel
