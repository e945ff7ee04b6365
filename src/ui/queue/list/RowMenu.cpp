#include "ui/queue/list/RowMenu.h"

#include "kit/GlyphIcon.h"
#include "ui/queue/tree/QueueModel.h"

#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool hasFailed(const ItemPtr& item)
{
    return item->status() == DownloadStatus::failed;
}

/// Shows the key without taking it: the list does.
void showKey(QAction& action, const QKeySequence& key)
{
    action.setShortcut(key);
    action.setShortcutContext(Qt::WidgetShortcut);
}

void addButton(QMenu& menu, RowButton button, AppLanguage language, const RowMenuActions& actions)
{
    const ButtonLook look = buttonLook(button);
    QAction* const action = menu.addAction(glyphIcon(look.glyph), buttonName(button, language));
    if (const QString sentence = buttonText(button, language); sentence != action->text())
        action->setToolTip(sentence);
    if (look.isDestructive)
        showKey(*action, Qt::Key_Delete);
    QObject::connect(action, &QAction::triggered, &menu, [run = actions.run, button] { run(button); });
}

void addCopy(QMenu& menu, bool isGroup, AppLanguage language, const RowMenuActions& actions)
{
    QAction* const copy = menu.addAction(isGroup ? pair(language, u"Copy Links", u"Copia i link")
                                                 : pair(language, u"Copy Link", u"Copia link"));
    copy->setObjectName(u"copyLinks"_s);
    QObject::connect(copy, &QAction::triggered, &menu, actions.copyLinks);
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
        if (std::ranges::any_of(model.group(index).items, hasFailed))
            menu.buttons.push_back(RowButton::tryFailedAgain);
        menu.buttons.push_back(RowButton::showGroup);
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
    menu.setToolTipsVisible(true);
    std::vector<RowButton> buttons = content.buttons;
    const auto destructive = std::stable_partition(buttons.begin(), buttons.end(),
                                                   [](RowButton button) { return !buttonLook(button).isDestructive; });
    std::for_each(buttons.begin(), destructive, [&](RowButton button) { addButton(menu, button, language, actions); });
    addCopy(menu, content.isGroup, language, actions);
    menu.addSeparator();
    addMove(menu, pair(language, u"Move Up", u"Sposta su"), true, content.canMoveUp, actions);
    addMove(menu, pair(language, u"Move Down", u"Sposta giù"), false, content.canMoveDown, actions);
    if (content.isGroup)
        addNames(menu, content, language, actions);
    menu.addSeparator();
    std::for_each(destructive, buttons.end(), [&](RowButton button) { addButton(menu, button, language, actions); });
}

} // namespace vormel
