#include "ui/queue/list/RowMenu.h"

#include "kit/GlyphIcon.h"
#include "ui/queue/tree/QueueModel.h"

#include <QMenu>

#include <algorithm>

namespace vormel {

namespace {

/// Shows the key without taking it: the list does.
void showKey(QAction& action, const QKeySequence& key)
{
    action.setShortcut(key);
    action.setShortcutContext(Qt::WidgetShortcut);
}

void addButton(QMenu& menu, RowButton button, AppLanguage language, const RowMenuActions& actions)
{
    const ButtonLook look = buttonLook(button);
    QAction* const action = menu.addAction(glyphIcon(look.glyph), buttonText(button, language));
    if (look.isDestructive)
        showKey(*action, Qt::Key_Delete);
    QObject::connect(action, &QAction::triggered, &menu, [run = actions.run, button] { run(button); });
}

void addMove(QMenu& menu, const QString& text, bool isUp, bool isPossible, const RowMenuActions& actions)
{
    QAction* const action = menu.addAction(text);
    action->setEnabled(isPossible);
    showKey(*action, QKeyCombination(Qt::AltModifier, isUp ? Qt::Key_Up : Qt::Key_Down));
    QObject::connect(action, &QAction::triggered, &menu, [move = actions.move, isUp] { move(isUp); });
}

void addNames(QMenu& menu, const RowMenu& content, AppLanguage language, const RowMenuActions& actions)
{
    menu.addSeparator();
    QAction* const rename = menu.addAction(pair(language, u"Rename group…", u"Rinomina gruppo…"));
    showKey(*rename, Qt::Key_F2);
    QObject::connect(rename, &QAction::triggered, &menu, actions.rename);
    if (!content.hasCustomName)
        return;
    const QAction* const reset = menu.addAction(pair(language, u"Reset name", u"Ripristina nome"));
    QObject::connect(reset, &QAction::triggered, &menu, actions.resetName);
}

} // namespace

int rowOfGroup(const QModelIndex& index)
{
    return (index.parent().isValid() ? index.parent() : index).row();
}

RowMenu rowMenu(const QueueModel& model, const QModelIndex& index, bool hasCustomName)
{
    RowMenu menu;
    const int row = rowOfGroup(index);
    menu.canMoveUp = row > 0;
    menu.canMoveDown = row + 1 < model.rowCount();
    menu.isGroup = model.isHeader(index);
    std::optional<RowButton> archiveCommand;
    if (menu.isGroup) {
        const auto content = index.data(QueueModel::headerRole).value<HeaderContent>();
        menu.buttons = content.buttons;
        menu.hasCustomName = hasCustomName;
        archiveCommand = content.archiveCommand;
    } else {
        const auto content = index.data(QueueModel::contentRole).value<RowContent>();
        menu.buttons = content.buttons;
        archiveCommand = content.archiveCommand;
        if (content.lines.testFlag(RowLine::failure))
            menu.buttons.insert(menu.buttons.begin(), RowButton::retryExtraction);
    }
    if (archiveCommand)
        menu.buttons.insert(menu.buttons.begin(), *archiveCommand);
    return menu;
}

void fillRowMenu(QMenu& menu, const RowMenu& content, AppLanguage language, const RowMenuActions& actions)
{
    std::vector<RowButton> buttons = content.buttons;
    const auto destructive = std::stable_partition(buttons.begin(), buttons.end(),
                                                   [](RowButton button) { return !buttonLook(button).isDestructive; });
    std::for_each(buttons.begin(), destructive, [&](RowButton button) { addButton(menu, button, language, actions); });
    menu.addSeparator();
    addMove(menu, pair(language, u"Move Up", u"Sposta su"), true, content.canMoveUp, actions);
    addMove(menu, pair(language, u"Move Down", u"Sposta giù"), false, content.canMoveDown, actions);
    if (content.isGroup)
        addNames(menu, content, language, actions);
    menu.addSeparator();
    std::for_each(destructive, buttons.end(), [&](RowButton button) { addButton(menu, button, language, actions); });
}

} // namespace vormel
