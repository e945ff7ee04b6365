#include "app/update/CheckForUpdatesViewModel.h"

#include "app/update/Updater.h"

namespace vormel {

CheckForUpdatesViewModel::CheckForUpdatesViewModel(Updater& updater, QObject* parent)
    : QObject(parent)
    , m_updater(updater)
{
    connect(&updater, &Updater::canCheckForUpdatesChanged, this, &CheckForUpdatesViewModel::setCanCheckForUpdates);
    setCanCheckForUpdates(updater.canCheckForUpdates());
}

void CheckForUpdatesViewModel::setCanCheckForUpdates(bool value)
{
    if (m_canCheckForUpdates == value)
        return;
    m_canCheckForUpdates = value;
    Q_EMIT canCheckForUpdatesChanged(value);
}

} // namespace vormel
