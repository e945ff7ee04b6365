#pragma once

#include "ui/queue/RowButton.h"

#include <QMenu>

#include <functional>

namespace vormel {

/// The commands of a row or header as a menu, for the keyboard and for who does not know the buttons. Deletes itself
/// when it is closed.
class RowMenu final : public QMenu
{
    Q_OBJECT

public:
    RowMenu(AppLanguage language, QWidget* parent);

    /// The same as the buttons, in their order.
    void addButtons(const std::vector<RowButton>& buttons, const std::function<void(RowButton)>& run);
    void addRename(const std::function<void()>& rename);
    void addResetName(const std::function<void()>& reset);

private:
    AppLanguage m_language;
};

} // namespace vormel
