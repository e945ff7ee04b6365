#pragma once

#include "ui/queue/RowButton.h"

#include <functional>

class QMenu;

namespace vormel {

/// What a row or header can be told in words: the commands of its buttons, and those that have no button.
struct RowMenu
{
    std::vector<RowButton> buttons;
    bool canMoveUp = false;
    bool canMoveDown = false;
    bool isGroup = false; ///< only groups can be renamed
    bool hasCustomName = false;
};

/// What its entries do.
struct RowMenuActions
{
    std::function<void(RowButton)> run;
    std::function<void(bool isUp)> move;
    std::function<void()> rename;
    std::function<void()> resetName;
};

/// Adds the entries with the keys that do the same in the list.
void fillRowMenu(QMenu& menu, const RowMenu& content, AppLanguage language, const RowMenuActions& actions);

} // namespace vormel
