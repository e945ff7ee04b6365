#pragma once

#include <QObject>

namespace vormel::fixtures {

/// The descendant of that name; a test that asks for one that is not there is broken.
template <typename T>
[[nodiscard]] T& partOf(const QObject& whole, const char* name)
{
    T* const found = whole.findChild<T*>(QString::fromLatin1(name));
    if (!found)
        qFatal("There is no part called %s", name);
    return *found;
}

} // namespace vormel::fixtures
