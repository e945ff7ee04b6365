#pragma once

#include <QObject>

namespace vormel {

class Updater;

/// What the menu shows of the updater, which must outlive it.
class CheckForUpdatesViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)

public:
    explicit CheckForUpdatesViewModel(Updater& updater, QObject* parent = nullptr);

    [[nodiscard]] bool canCheckForUpdates() const { return m_canCheckForUpdates; }
    [[nodiscard]] Updater& updater() const { return m_updater; }

Q_SIGNALS:
    void canCheckForUpdatesChanged(bool canCheckForUpdates);

private:
    void setCanCheckForUpdates(bool value);

    bool m_canCheckForUpdates = false;
    Updater& m_updater;
};

} // namespace vormel
