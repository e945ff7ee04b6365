#include "app/update/CheckForUpdatesView.h"

#include "app/update/CheckForUpdatesViewModel.h"
#include "app/update/Updater.h"

namespace vormel {

CheckForUpdatesView::CheckForUpdatesView(const CheckForUpdatesViewModel& viewModel, QObject* parent)
    : QAction(QStringLiteral("Check for Updates…"), parent)
{
    setObjectName(QStringLiteral("checkForUpdates"));
    setMenuRole(QAction::ApplicationSpecificRole);
    setEnabled(viewModel.canCheckForUpdates());
    connect(&viewModel, &CheckForUpdatesViewModel::canCheckForUpdatesChanged, this, &QAction::setEnabled);
    connect(this, &QAction::triggered, &viewModel.updater(), &Updater::checkForUpdates);
}

} // namespace vormel
