#pragma once

#include "kit/PlatformTexts.h"

#include <QMessageBox>

namespace vormel {

/// What is asked before the command runs.
[[nodiscard]] QString commandQuestion(const QString& command, AppLanguage language, Desktop desktop = thisDesktop);

/// Asks whether a terminal may be opened to run a command. Shown with open(); accepted when the user agrees, and
/// rejected otherwise.
class CommandAlert final : public QMessageBox
{
    Q_OBJECT

public:
    CommandAlert(const QString& command, AppLanguage language, QWidget* parent);
};

} // namespace vormel
