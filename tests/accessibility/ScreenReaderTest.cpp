#include "Events.h"
#include "RunningProgram.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;

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

    RunningProgram program{{u"a.part1.rar"_s, u"a.part2.rar"_s, u"b.zip"_s}};
};

const QString group = u"a, Paused, 2 parts, 9.5 MB"_s;
const QString plain = u"b.zip, Paused, 127.0.0.1, 4.8 MB"_s;

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
    EXPECT_TRUE(frame().name().contains(u"Downloads"_s));
    const Accessible pages = frame().find(ATSPI_ROLE_LIST, u"Pages"_s);
    for (const char* page : {"Downloads", "Accounts", "Settings"})
        EXPECT_TRUE(pages.find(ATSPI_ROLE_LIST_ITEM, QString::fromLatin1(page)).isThere()) << page;
    for (const char* tool : {"Add URLs", "Start All", "Pause All", "Clear Completed", "Clear Extracted"})
        EXPECT_TRUE(button(QString::fromLatin1(tool)).actions().contains(u"Press"_s)) << tool;
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
    ASSERT_TRUE(header.act(u"Toggle"_s));
    EXPECT_TRUE(header.is(ATSPI_STATE_EXPANDED));
    EXPECT_EQ(rowNames(), (QStringList{group, u"a.part1.rar, Paused, 127.0.0.1, 4.8 MB"_s,
                                       u"a.part2.rar, Paused, 127.0.0.1, 4.8 MB"_s, plain}));
    ASSERT_TRUE(header.act(u"Toggle"_s));
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
    EXPECT_EQ(names, (QStringList{u"Resume"_s, u"Stop"_s, u"Resync"_s, u"Remove"_s}));
    ASSERT_TRUE(row.child(1).act(u"Press"_s));
    EXPECT_TRUE(comesTrue([&row] { return row.name().startsWith(u"b.zip, Stopped"_s); }));
    EXPECT_EQ(row.childCount(), 2);
    ASSERT_TRUE(row.child(1).act(u"Press"_s));
    EXPECT_TRUE(comesTrue([this] { return rowNames() == QStringList{group}; }));
    EXPECT_TRUE(row.actions().isEmpty());
}

TEST_F(ScreenReaderTest, TheFocusIsToldByTheRowThatHasIt)
{
    const Events focus("object:state-changed:focused");
    ASSERT_TRUE(program.row(plain).act(u"SetFocus"_s));
    EXPECT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_LIST_ITEM, plain); }));
    ASSERT_TRUE(program.row(group).act(u"SetFocus"_s));
    EXPECT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_LIST_ITEM, group); }));
    EXPECT_TRUE(program.row(group).is(ATSPI_STATE_FOCUSED));
    EXPECT_TRUE(program.row(group).is(ATSPI_STATE_SELECTED));
    EXPECT_FALSE(program.row(plain).is(ATSPI_STATE_FOCUSED));
}

TEST_F(ScreenReaderTest, ANewTextOfTheRowWithTheFocusIsTold)
{
    ASSERT_TRUE(program.row(plain).act(u"SetFocus"_s));
    ASSERT_TRUE(comesTrue([this] { return program.row(plain).is(ATSPI_STATE_FOCUSED); }));
    const Events names("object:property-change:accessible-name");
    ASSERT_TRUE(program.row(plain).child(1).act(u"Press"_s));
    EXPECT_TRUE(comesTrue([&names] { return names.has(ATSPI_ROLE_LIST_ITEM, u"b.zip, Stopped"_s); }));
}

TEST_F(ScreenReaderTest, TheMenuOfARowBearsItsName)
{
    const Events showing("object:state-changed:showing");
    ASSERT_TRUE(program.row(plain).act(u"ShowMenu"_s));
    EXPECT_TRUE(comesTrue([&showing] { return showing.has(ATSPI_ROLE_POPUP_MENU, u"b.zip"_s); }));
}

TEST_F(ScreenReaderTest, AGroupIsRenamedThroughItsMenu)
{
    const Events showing("object:state-changed:showing");
    const Events focus("object:state-changed:focused");
    ASSERT_TRUE(program.row(group).act(u"ShowMenu"_s));
    ASSERT_TRUE(comesTrue([&showing] { return showing.has(ATSPI_ROLE_POPUP_MENU, u"a"_s); }));
    const Accessible menu = showing.told().back().source;
    ASSERT_TRUE(menu.find(ATSPI_ROLE_MENU_ITEM, u"Rename group"_s).act(u"Press"_s));
    ASSERT_TRUE(comesTrue([&focus] { return focus.has(ATSPI_ROLE_TEXT, u"Rename group"_s); }));
    const Accessible field = focus.told().back().source;
    EXPECT_EQ(field.typedText(), u"a"_s);
    ASSERT_TRUE(field.type(u"My film"_s));
    ASSERT_TRUE(field.parent().find(ATSPI_ROLE_PUSH_BUTTON, u"Save"_s).act(u"Press"_s));
    EXPECT_TRUE(comesTrue([this] { return program.row(u"My film, "_s).isThere(); }));
}

TEST_F(ScreenReaderTest, LinksAreAddedThroughTheSheet)
{
    ASSERT_TRUE(button(u"Add URLs"_s).act(u"Press"_s));
    const Accessible sheet = program.window(ATSPI_ROLE_DIALOG);
    ASSERT_TRUE(sheet.isThere());
    EXPECT_EQ(sheet.name(), u"Add URLs"_s);
    EXPECT_GE(countNamed(sheet), 3);
    ASSERT_TRUE(sheet.find(ATSPI_ROLE_TEXT).type(u"http://127.0.0.1:9/new.zip"_s));
    const Accessible add = sheet.find(ATSPI_ROLE_PUSH_BUTTON, u"Add"_s);
    ASSERT_TRUE(comesTrue([&add] { return add.is(ATSPI_STATE_SENSITIVE); }));
    ASSERT_TRUE(add.act(u"Press"_s));
    EXPECT_TRUE(comesTrue([this] { return program.row(u"new.zip, "_s).isThere(); }));
}

TEST(BadServicesTest, AreToldOnceTheWindowIsThereAndBlockNothing)
{
    RunningProgram program({u"b.zip"_s}, "{\n\"filestoreDomain\": \"boxes\"}");
    ASSERT_TRUE(program.isUp());
    const auto told = [&program] {
        return program.application().find(ATSPI_ROLE_LABEL, u"services.json, line 2, filestoreDomain: "_s);
    };
    ASSERT_TRUE(comesTrue([&told] { return told().isThere(); }));
    EXPECT_TRUE(program.row(u"b.zip, "_s).isThere());
    ASSERT_TRUE(told().parent().find(ATSPI_ROLE_PUSH_BUTTON, u"OK"_s).act(u"Press"_s));
    EXPECT_TRUE(comesTrue([&told] { return !told().isThere(); }));
}

TEST(LongQueueTest, AScreenReaderNeedsNotWaitForTenThousandRows)
{
    constexpr int count = 10'000;
    QStringList files;
    for (int i = 0; i < count; ++i)
        files << u"Some.Long.Name.%1.bin"_s.arg(i);
    RunningProgram program(files);
    ASSERT_TRUE(program.isUp());
    const Accessible list = program.list();
    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(list.childCount(), count);
    const qint64 forCount = timer.restart();
    for (int place = 5'000; place < 5'050; ++place)
        EXPECT_TRUE(list.child(place).name().startsWith(u"Some.Long.Name.%1.bin, "_s.arg(place)));
    const qint64 forRows = timer.elapsed();
    RecordProperty("milliseconds for childCount", static_cast<int>(forCount));
    RecordProperty("milliseconds for 50 rows", static_cast<int>(forRows));
    constexpr qint64 generous = 2'000; // what it takes on an idle machine is below 50
    EXPECT_LT(forCount, generous);
    EXPECT_LT(forRows, generous);
}
