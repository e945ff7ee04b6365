#pragma once

#include <QObject>

namespace vormel {

/// Looks for newer versions of the program.
class Updater : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] virtual bool canCheckForUpdates() const = 0;
    /// Looks now, since the user asked; the outcome is told to the user whatever it is. Without effect while it cannot.
    virtual void checkForUpdates() = 0;

Q_SIGNALS:
    void canCheckForUpdatesChanged(bool canCheckForUpdates);
};

} // namespace vormel
