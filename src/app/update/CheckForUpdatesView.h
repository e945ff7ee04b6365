#pragma once

#include <QAction>

namespace vormel {

class CheckForUpdatesViewModel;

/// The menu command, in English only like its neighbour that opens the help. The model must outlive it.
class CheckForUpdatesView final : public QAction
{
    Q_OBJECT

public:
    explicit CheckForUpdatesView(const CheckForUpdatesViewModel& viewModel, QObject* parent = nullptr);
};

} // namespace vormel
