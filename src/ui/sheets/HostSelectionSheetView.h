#pragma once

#include "model/PendingQuestions.h"

#include <QDialog>

namespace vormel {

class AppSettings;

/// Asks which host to take the same files from. Closing it in any other way than by a choice counts as cancelling. The
/// settings must outlive it.
class HostSelectionSheetView final : public QDialog
{
    Q_OBJECT

public:
    HostSelectionSheetView(PendingHostSelection pending, const AppSettings& settings, QWidget* parent = nullptr);

Q_SIGNALS:
    /// After the sheet was closed.
    void confirmed(const std::vector<vormel::Link>& urls);

private:
    void confirm(const std::vector<Link>& urls);

    PendingHostSelection m_pending;
};

} // namespace vormel
