#include "Events.h"
#include "RunningProgram.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <algorithm>

using namespace vormel::fixtures;

namespace {

/// The program with a closed group "a" of two parts and the plain row "b.zip" below it, in front.
class ScreenReaderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(program.isUp());
        program.bringToFront();
        ASSERT_TRUE(comesTrue([this] { return frame().is(ATSPI_STATE_ACTIVE); }));
    }
    [[nodiscard]] Accessible frame() const { return program.window(ATSPI_ROLE_FRAME); }
    [[nodiscard]] Accessible button(const QString& name) const { return frame().find(ATSPI_ROLE_PUSH_BUTTON, name); }
    [[nodiscard]] QStringList rowNames() const
    {
        QStringList names;
        for (const Accessible& row : program.list().children())
            names << row.name();
        return names;
    }

    RunningProgram program{{QStringLiteral("a.part1.rar"), QStringLiteral("a.part2.rar"), QStringLiteral("b.zip")}};
};

const QString group = QStringLiteral("a, Paused, 2 parts, 9.5 MB");
const QString plain = QStringLiteral("b.zip, Paused, 127.0.0.1");

/// How many parts of it can have the focus; each that has no name is a failure.
int countNamed(const Accessible& whole)
{
    int count = 0;
    for (const Accessible& part : whole.all()) {
        if (!part.is(ATSPI_STATE_FOCUSABLE) || !part.is(ATSPI_STATE_SHOWING))
            continue;
        ++count;
        EXPECT_FALSE(part.name().isEmpty()) << "a nameless part of role " << part.role();
    }
    return count;
}

} // namespace

TEST_F(ScreenReaderTest, TheWindowHasItsPagesItsToolsAndItsRows)
{
    EXPECT_TRUE(frame().name().contains(QStringLiteral("Downloads")));
    const Accessible pages = frame().find(ATSPI_ROLE_LIST, QStringLiteral("Pages"));
    for (const char* page : {"Downloads", "Accounts", "Settings"})
        EXPECT_TRUE(pages.find(ATSPI_ROLE_LIST_ITEM, QString::fromLatin1(page)).isThere()) << page;
    for (const char* tool : {"Add URLs", "Start All", "Pause All", "Clear Completed", "Clear Extracted"})
        EXPECT_TRUE(button(QString::fromLatin1(tool)).actions().contains(QStringLiteral("Press"))) << tool;
    EXPECT_EQ(rowNames(), (QStringList{group, plain}));
}

TEST_F(ScreenReaderTest, WhatCanHaveTheFocusHasAName)
{
    EXPECT_GT(countNamed(frame()), 10);
}

TEST_F(ScreenReaderTest, AGroupOpensAndClosesByItsAction)
{
    const Accessible header = program.row(group);
    EXPECT_TRUE(header.is(ATSPI_STATE_EXPANDABLE));
    EXPECT_FALSE(header.is(ATSPI_STATE_EXPANDED));
    ASSERT_TRUE(header.act(QStringLiteral("Toggle")));
    EXPECT_TRUE(header.is(ATSPI_STATE_EXPANDED));
    EXPECT_EQ(rowNames(), (QStringList{group, QStringLiteral("a.part1.rar, Paused, 127.0.0.1"),
                                       QStringLiteral("a.part2.rar, Paused, 127.0.0.1"), plain}));
    ASSERT_TRUE(header.act(QStringLiteral("Toggle")));
    EXPECT_EQ(rowNames(), (QStringList{group, plain}));
}

TEST_F(ScreenReaderTest, ButtonsOfARowStandInItAndDoWhatTheySay)
{
    const Accessible row = program.row(plain);
    QStringList names;
    for (const Accessible& button : row.children()) {
        EXPECT_EQ(button.role(), ATSPI_ROLE_PUSH_BUTTON);
        EXPECT_TRUE(row.onScreen().contains(button.onScreen()));
        names << button.name().section(u' ', 0, 0);
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("Resume"), QStringLiteral("Stop"), QStringLiteral("Resync"),
                                  QStringLiteral("Remove")}));
    ASSERT_TRUE(row.child(1).act(QStringLiteral("Press")));
    EXPECT_TRUE(comesTrue([&row] { return row.name().startsWith(QStringLiteral("b.zip, Stopped")); }));
    EXPECT_EQ(row.childCount(), 2);
    ASSERT_TRUE(row.child(1).act(QStringLiteral("Press")));
    EXPECT_TRUE(comesTrue([this] { return rowNames() == QStringList{group}; }));
    EXPECT_TRUE(row.actions().isEmpty());
}

TEST_F(ScreenReaderTest, TheFocusIsToldByTheRowThatHasIt)
{
    const Events focus("object:state-changed:focused");
    ASSERT_TRUE(program.row(plain).act(QStringLiteral("SetFocus")));
    EXPECT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_LIST_ITEM, plain); }));
    ASSERT_TRUE(program.row(group).act(QStringLiteral("SetFocus")));
    EXPECT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_LIST_ITEM, group); }));
    EXPECT_TRUE(program.row(group).is(ATSPI_STATE_FOCUSED));
    EXPECT_TRUE(program.row(group).is(ATSPI_STATE_SELECTED));
    EXPECT_FALSE(program.row(plain).is(ATSPI_STATE_FOCUSED));
}

TEST_F(ScreenReaderTest, ANewTextOfTheRowWithTheFocusIsTold)
{
    ASSERT_TRUE(program.row(plain).act(QStringLiteral("SetFocus")));
    ASSERT_TRUE(comesTrue([this] { return program.row(plain).is(ATSPI_STATE_FOCUSED); }));
    const Events names("object:property-change:accessible-name");
    ASSERT_TRUE(program.row(plain).child(1).act(QStringLiteral("Press")));
    EXPECT_TRUE(comesTrue([&names] { return names.has(ATSPI_ROLE_LIST_ITEM, QStringLiteral("b.zip, Stopped")); }));
}

TEST_F(ScreenReaderTest, TheMenuOfARowBearsItsName)
{
    const Events showing("object:state-changed:showing");
    ASSERT_TRUE(program.row(plain).act(QStringLiteral("ShowMenu")));
    EXPECT_TRUE(comesTrue([&showing] { return showing.has(ATSPI_ROLE_POPUP_MENU, QStringLiteral("b.zip")); }));
}

TEST_F(ScreenReaderTest, AGroupIsRenamedThroughItsMenu)
{
    const Events showing("object:state-changed:showing");
    const Events focus("object:state-changed:focused");
    ASSERT_TRUE(program.row(group).act(QStringLiteral("ShowMenu")));
    ASSERT_TRUE(comesTrue([&showing] { return showing.has(ATSPI_ROLE_POPUP_MENU, QStringLiteral("a")); }));
    const Accessible menu = showing.told().back().source;
    ASSERT_TRUE(menu.find(ATSPI_ROLE_MENU_ITEM, QStringLiteral("Rename group")).act(QStringLiteral("Press")));
    ASSERT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_TEXT, QStringLiteral("Rename group")); }));
    const Accessible field = focus.told().back().source;
    EXPECT_EQ(field.typedText(), QStringLiteral("a"));
    ASSERT_TRUE(field.type(QStringLiteral("My film")));
    ASSERT_TRUE(field.parent().find(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Save")).act(QStringLiteral("Press")));
    EXPECT_TRUE(comesTrue([this] { return program.row(QStringLiteral("My film, ")).isThere(); }));
}

TEST_F(ScreenReaderTest, LinksAreAddedThroughTheSheet)
{
    ASSERT_TRUE(button(QStringLiteral("Add URLs")).act(QStringLiteral("Press")));
    const Accessible sheet = program.window(ATSPI_ROLE_DIALOG);
    ASSERT_TRUE(sheet.isThere());
    EXPECT_EQ(sheet.name(), QStringLiteral("Add URLs"));
    EXPECT_GE(countNamed(sheet), 3);
    ASSERT_TRUE(sheet.find(ATSPI_ROLE_TEXT).type(QStringLiteral("http://127.0.0.1:9/new.zip")));
    const Accessible add = sheet.find(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Add"));
    ASSERT_TRUE(comesTrue([&add] { return add.is(ATSPI_STATE_SENSITIVE); }));
    ASSERT_TRUE(add.act(QStringLiteral("Press")));
    EXPECT_TRUE(comesTrue([this] { return program.row(QStringLiteral("new.zip, ")).isThere(); }));
}

TEST(LongQueueTest, AScreenReaderNeedsNotWaitForTenThousandRows)
{
    constexpr int count = 10'000;
    QStringList files;
    for (int i = 0; i < count; ++i)
        files << QStringLiteral("Some.Long.Name.%1.bin").arg(i);
    RunningProgram program(files);
    ASSERT_TRUE(program.isUp());
    const Accessible list = program.list();
    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(list.childCount(), count);
    const qint64 forCount = timer.restart();
    for (int place = 5'000; place < 5'050; ++place)
        EXPECT_TRUE(list.child(place).name().startsWith(QStringLiteral("Some.Long.Name.%1.bin, ").arg(place)));
    const qint64 forRows = timer.elapsed();
    RecordProperty("milliseconds for childCount", static_cast<int>(forCount));
    RecordProperty("milliseconds for 50 rows", static_cast<int>(forRows));
    constexpr qint64 generous = 500; // what it takes on an idle machine is below 50
    EXPECT_LT(forCount, generous);
    EXPECT_LT(forRows, generous);
}
