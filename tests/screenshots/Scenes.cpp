#include "screenshots/Scenes.h"

#include "screenshots/AccountScenes.h"
#include "screenshots/AdditionScenes.h"
#include "screenshots/CaptchaScenes.h"
#include "screenshots/QueueScenes.h"
#include "screenshots/SignInScenes.h"
#include "ui/help/HelpView.h"
#include "ui/settings/SettingsView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

void password(Stage& stage, bool wasWrong)
{
    const PendingExtractionPassword question{
        ItemId::make(), u"The.Lighthouse.Keeper.2024.Extended.Edition.1080p.BluRay.x264-SHORE.part01.rar"_s, wasWrong};
    auto* sheet = new ArchivePasswordSheetView(question, stage.engine.settings(), &stage.window);
    sheet->open();
}

void settings(Stage& stage, double place)
{
    stage.window.showPage(Page::settings);
    stage.settle();
    QScrollBar& bar = *stage.window.findChild<SettingsView*>()->verticalScrollBar();
    bar.setValue(static_cast<int>(place * bar.maximum()));
}

void showMissing(Stage& stage)
{
    for (const char* tool : {"unrar", "rar", "7zz"})
        stage.engine.tools.remove(QString::fromLatin1(tool));
    stage.desktop.tools.look();
    settings(stage, 1);
    stage.settle();
    stage.window.findChild<SettingsView*>()->ensureWidgetVisible(&stage.part("installSection"));
}

void noManager(Stage& stage)
{
    stage.desktop.managers.manager = std::nullopt;
    showMissing(stage);
}

void alert(Stage& stage)
{
    showMissing(stage);
    stage.part<QAbstractButton>("openInTerminal").click();
}

void help(Stage& stage, double place)
{
    stage.part<QAction>("vormelHelp").trigger();
    stage.settle();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        const auto* const view = widget->findChild<HelpView*>();
        if (!view || !widget->isVisible())
            continue;
        widget->move(stage.window.pos());
        view->verticalScrollBar()->setValue(static_cast<int>(place * view->verticalScrollBar()->maximum()));
    }
}

void about(Stage& stage)
{
    stage.part<QAction>("about").trigger();
    stage.settle();
    stage.part("aboutWindow").move(stage.window.pos() + QPoint(80, 60));
}

} // namespace

std::vector<Scene> allScenes()
{
    std::vector<Scene> scenes = queueScenes();
    const std::vector<Scene> others{
        {"sheet-password", [](Stage& stage) { password(stage, false); }},
        {"sheet-password-wrong", [](Stage& stage) { password(stage, true); }},
        {"settings-top", [](Stage& stage) { settings(stage, 0); }},
        {"settings-middle",
         [](Stage& stage) {
             stage.engine.settings().deleteArchiveAfterExtract.set(true);
             stage.engine.settings().useCustomExtractionFolder.set(true);
             settings(stage, 0.5);
         }},
        {"settings-bottom", [](Stage& stage) { settings(stage, 1); }},
        {"settings-install", showMissing},
        {"settings-no-manager", noManager},
        {"settings-alert", alert},
        {"help-top", [](Stage& stage) { help(stage, 0); }},
        {"help-bottom", [](Stage& stage) { help(stage, 1); }},
        {"about", about},
    };
    for (const std::vector<Scene>& more : {additionScenes(), accountScenes(), captchaScenes(), signInScenes(), others})
        scenes.insert(scenes.end(), more.begin(), more.end());
    return scenes;
}

} // namespace vormel::screenshots
