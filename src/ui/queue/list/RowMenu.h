#pragma once

#include "ui/queue/rows/RowButton.h"

#include <functional>

class QMenu;
class QModelIndex;

namespace vormel {

class QueueModel;

/// What a row or header can be told in words: the commands of its buttons, and those that have no button.
struct RowMenu
{
    std::vector<RowButton> buttons;
    bool canMoveUp = false;
    bool canMoveDown = false;
    bool isGroup = false; ///< only groups can be renamed
    bool hasCustomName = false;
};

/// The index must be valid.
[[nodiscard]] RowMenu rowMenu(const QueueModel& model, const QModelIndex& index, bool hasCustomName);

/// The place of the group that the row is of, or is below of.
[[nodiscard]] int rowOfGroup(const QModelIndex& index);

/// What its entries do.
struct RowMenuActions
{
    std::function<void(RowButton)> run;
    std::function<void()> copyLinks;
    std::function<void(bool isUp)> move;
    std::function<void()> rename;
    std::function<void()> resetName;
};

/// Adds the entries in few words, which their tool tips say in more, with the keys that do the same in the list.
void fillRowMenu(QMenu& menu, const RowMenu& content, AppLanguage language, const RowMenuActions& actions);

} // namespace vormel
