#include "app/MainWindow.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Focusable.h"
#include "ui/accounts/AccountEditView.h"
#include "ui/help/HelpView.h"
#include "ui/queue/list/RenamePopover.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"
#include "ui/sheets/HostSelectionSheetView.h"
#include "ui/sheets/captcha/CaptchaSheetView.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QButtonGroup>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::describe;
using fixtures::focusable;
using fixtures::turnEventLoop;

void expectNamesOf(const QList<QWidget*>& parts)
{
    for (QWidget* const part : parts) {
        const QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(part);
        EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty()) << describe(*part) << " has no name";
        EXPECT_NE(seen->role(), QAccessible::NoRole) << describe(*part);
        EXPECT_NE(seen->role(), QAccessible::Client) << describe(*part) << " does not say what it is";
    }
}

void expectNames(const QWidget& whole)
{
    const QList<QWidget*> parts = focusable(whole);
    EXPECT_FALSE(parts.isEmpty()) << describe(whole);
    expectNamesOf(parts);
}

/// Of buttons that exclude each other the tab key reaches one; arrows lead to the others.
bool isReachedByArrows(const QWidget* part)
{
    const auto* const button = qobject_cast<const QAbstractButton*>(part);
    return button && button->group() && button->group()->exclusive() && button != button->group()->buttons().front();
}

void expectTabReachesAll(QWidget& whole)
{
    QList<QWidget*> parts = focusable(whole);
    parts.removeIf(isReachedByArrows);
    parts.front()->setFocus(Qt::TabFocusReason);
    QList<QWidget*> visited;
    for (qsizetype step = 0; step < parts.size(); ++step) {
        QWidget* const focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        EXPECT_FALSE(visited.contains(focus)) << describe(*focus) << " comes twice";
        visited << focus;
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    for (const QWidget* const part : parts)
        EXPECT_TRUE(visited.contains(part)) << describe(*part) << " is never reached";
    EXPECT_EQ(QApplication::focusWidget(), visited.front());
}

/// The window with a group and a plain row, in each language.
class AccessibleNamesTest : public ::testing::TestWithParam<AppLanguage>
{
protected:
    AccessibleNamesTest()
    {
        engine.settings().language.set(GetParam());
        engine.add(
            {u"https://h.example/a.part1.rar"_s, u"https://h.example/a.part2.rar"_s, u"https://h.example/b.zip"_s});
        engine.manager().accounts().set({fixtures::account(SupportedHost::filestore, u"anna"_s),
                                         fixtures::account(SupportedHost::terabytez, u"bert"_s)});
        show(window);
    }
    static void show(QWidget& widget)
    {
        widget.show();
        widget.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&widget));
        turnEventLoop();
    }
    static void expectAllOf(QWidget& whole)
    {
        show(whole);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(&whole)->text(QAccessible::Name).isEmpty())
            << describe(whole) << " has no name";
        expectNames(whole);
        expectTabReachesAll(whole);
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
};

TEST_P(AccessibleNamesTest, OnEveryPageWhatTheKeyboardReachesHasAName)
{
    for (const Page page : allPages) {
        window.showPage(page);
        turnEventLoop();
        expectNames(window);
    }
}

TEST_P(AccessibleNamesTest, TheTabKeyReachesEverythingOfAPageOnce)
{
    for (const Page page : allPages) {
        window.showPage(page);
        turnEventLoop();
        expectTabReachesAll(window);
    }
}

TEST_P(AccessibleNamesTest, TheSheetForLinksIsNamedThroughout)
{
    expectAllOf(*new AddURLView(engine.settings(), engine.manager().resolvers(), &window));
}

TEST_P(AccessibleNamesTest, TheQuestionForAPasswordIsNamedThroughout)
{
    expectAllOf(*new ArchivePasswordSheetView({}, engine.settings(), &window));
}

TEST_P(AccessibleNamesTest, TheQuestionForHostsIsNamedThroughout)
{
    PendingHostSelection pending;
    pending.groups.push_back({u"One"_s, {fixtures::link(u"https://one.example/a"_s)}});
    pending.groups.push_back({u"Two"_s, {fixtures::link(u"https://two.example/a"_s)}});
    expectAllOf(*new HostSelectionSheetView(pending, engine.settings(), &window));
}

TEST_P(AccessibleNamesTest, TheSheetForACaptchaIsNamedThroughout)
{
    const ViewPorts ports = desktop.ports();
    const Link container = fixtures::link(u"https://container.example/c/1"_s);
    auto* sheet = new CaptchaSheetView({pagePorts(ports), ports.captcha}, container, {}, &window);
    expectAllOf(*sheet);
    desktop.web.pages.front()->arrivesAt(container.absoluteString());
    expectAllOf(*sheet);
    EXPECT_EQ(focusable(*sheet).size(), 3); // the line that says whose page it is, and the buttons
}

TEST_P(AccessibleNamesTest, TheFormOfAnAccountIsNamedThroughout)
{
    auto* sheet = new AccountEditView(engine.settings(), hostLabels(HostProfiles()), &window);
    const HostAccount anna = fixtures::account(SupportedHost::filestore, u"anna"_s);
    engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"s3cret"_s);
    sheet->edit(anna, engine.manager().accounts());
    expectAllOf(*sheet);
}

TEST_P(AccessibleNamesTest, ThePopoverForANameIsNamedThroughout)
{
    expectAllOf(*new RenamePopover(u"a"_s, GetParam(), &window));
}

TEST_P(AccessibleNamesTest, TheHelpIsNamedThroughout)
{
    HelpView help(engine.settings(), u"filestore.example"_s);
    show(help);
    expectNamesOf(focusable(help)); // it may have nothing but texts
}

INSTANTIATE_TEST_SUITE_P(Languages, AccessibleNamesTest, ::testing::Values(AppLanguage::english, AppLanguage::italian));

} // namespace
} // namespace vormel
