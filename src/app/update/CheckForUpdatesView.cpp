#include "app/update/CheckForUpdatesView.h"

#include "app/update/CheckForUpdatesViewModel.h"
#include "app/update/Updater.h"

using namespace Qt::StringLiterals;

namespace vormel {

CheckForUpdatesView::CheckForUpdatesView(const CheckForUpdatesViewModel& viewModel, QObject* parent)
    : QAction(u"Check for Updates…"_s, parent)
{
    setObjectName(u"checkForUpdates"_s);
    setMenuRole(QAction::ApplicationSpecificRole);
    setEnabled(viewModel.canCheckForUpdates());
    connect(&viewModel, &CheckForUpdatesViewModel::canCheckForUpdatesChanged, this, &QAction::setEnabled);
    connect(this, &QAction::triggered, &viewModel.updater(), &Updater::checkForUpdates);
}

} // namespace vormel
