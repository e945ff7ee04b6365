#include "ui/notices/NoticeBar.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

struct NoticeBarTest : testing::Test
{
    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    AppSettings& settings = engine.manager().settings();
    NoticeBar bar{desktop.notices, settings};
    int undone = 0;

    void show(const QString& key, bool canClose = true)
    {
        Notice notice;
        notice.key = key;
        notice.text = [](AppLanguage language) { return pair(language, u"<b>Removed</b>", u"<b>Tolto</b>"); };
        notice.actions = {{{u"Undo", u"Annulla"}, [this] { ++undone; }}};
        notice.canClose = canClose;
        desktop.notices.show(notice);
    }

    /// Nothing can be done about it.
    void showWords(const QString& key)
    {
        Notice notice;
        notice.key = key;
        notice.text = [](AppLanguage /*language*/) { return u"Newer"_s; };
        desktop.notices.show(notice);
    }

    [[nodiscard]] QWidget* line(const QString& key) const { return bar.findChild<QWidget*>(u"notice-"_s + key); }
};

TEST_F(NoticeBarTest, IsThereOnlyWhileThereAreNotices)
{
    EXPECT_TRUE(bar.isHidden());
    show(u"a"_s);
    EXPECT_FALSE(bar.isHidden());
    show(u"b"_s);
    desktop.notices.takeBack(u"a"_s);
    EXPECT_FALSE(bar.isHidden());
    desktop.notices.takeBack(u"b"_s);
    EXPECT_TRUE(bar.isHidden());
}

TEST_F(NoticeBarTest, TellsPlainTextInTheLanguageOfTheSettings)
{
    show(u"a"_s);
    const auto* text = line(u"a"_s)->findChild<QLabel*>(u"noticeText"_s);
    EXPECT_EQ(text->text(), u"<b>Removed</b>"_s);
    EXPECT_EQ(text->textFormat(), Qt::PlainText);
    settings.language.set(AppLanguage::italian);
    EXPECT_EQ(text->text(), u"<b>Tolto</b>"_s);
    EXPECT_EQ(line(u"a"_s)->accessibleName(), u"<b>Tolto</b>"_s);
    EXPECT_EQ(line(u"a"_s)->findChild<QPushButton*>()->text(), u"Annulla"_s);
}

TEST_F(NoticeBarTest, AnActionIsDoneOnceByKeyOrMouse)
{
    show(u"a"_s);
    auto* button = line(u"a"_s)->findChild<QPushButton*>(u"noticeAction0"_s);
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(undone, 1);
    EXPECT_FALSE(desktop.notices.find(u"a"_s));
    EXPECT_TRUE(bar.isHidden());
}

TEST_F(NoticeBarTest, TheCrossPutsItAwayWithoutTheAction)
{
    show(u"a"_s);
    line(u"a"_s)->findChild<QToolButton*>(u"closeNotice"_s)->click();
    EXPECT_FALSE(desktop.notices.find(u"a"_s));
    EXPECT_EQ(undone, 0);
}

TEST_F(NoticeBarTest, OneThatMayNotBeClosedHasNoCross)
{
    show(u"a"_s, false);
    EXPECT_FALSE(line(u"a"_s)->findChild<QToolButton*>(u"closeNotice"_s));
}

TEST_F(NoticeBarTest, AnotherLineStaysWhileOneComesAndGoes)
{
    show(u"a"_s);
    const QWidget* const first = line(u"a"_s);
    show(u"b"_s);
    desktop.notices.takeBack(u"b"_s);
    EXPECT_EQ(line(u"a"_s), first);
}

TEST_F(NoticeBarTest, ARenewedLineKeepsItsPlaceAndSaysTheNewWords)
{
    bar.resize(600, 100);
    bar.show();
    show(u"a"_s);
    show(u"b"_s);
    showWords(u"a"_s);
    fixtures::turnEventLoop();
    EXPECT_EQ(line(u"a"_s)->findChild<QLabel*>(u"noticeText"_s)->text(), u"Newer"_s);
    EXPECT_LT(line(u"a"_s)->y(), line(u"b"_s)->y());
    EXPECT_EQ(line(u"b"_s)->geometry().bottom(), bar.rect().bottom());
    desktop.notices.takeBack(u"a"_s);
    desktop.notices.takeBack(u"b"_s);
    EXPECT_TRUE(bar.isHidden());
}

/// A window with something to write in above the bar.
struct NoticeBarFocusTest : NoticeBarTest
{
    QWidget page;
    QLineEdit field{&page};

    NoticeBarFocusTest()
    {
        auto* column = new QVBoxLayout(&page);
        column->addWidget(&field);
        column->addWidget(&bar);
        page.show();
        page.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&page));
        field.setFocus();
    }
    ~NoticeBarFocusTest() override { bar.setParent(nullptr); }

    void showTwo()
    {
        show(u"a"_s);
        show(u"b"_s);
        fixtures::turnEventLoop(); // until then the focus passes new lines over
    }
    [[nodiscard]] QWidget* undo(const QString& key) const { return line(key)->findChild<QPushButton*>(); }
};

TEST_F(NoticeBarFocusTest, GoesBackToWhoHadItWhenItsNoticeGoes)
{
    showTwo();
    undo(u"a"_s)->setFocus();
    line(u"a"_s)->findChild<QToolButton*>()->setFocus(); // within the bar nothing is to be remembered
    desktop.notices.takeBack(u"a"_s);
    EXPECT_EQ(QApplication::focusWidget(), &field);
    undo(u"b"_s)->setFocus();
    QTest::keyClick(undo(u"b"_s), Qt::Key_Space);
    EXPECT_EQ(QApplication::focusWidget(), &field);
    EXPECT_EQ(undone, 1);
}

TEST_F(NoticeBarFocusTest, GoesToNobodyInTheBarWhereThatOneIsAway)
{
    showTwo();
    undo(u"a"_s)->setFocus();
    field.hide();
    desktop.notices.takeBack(u"a"_s);
    EXPECT_EQ(page.focusWidget(), nullptr);
}

TEST_F(NoticeBarFocusTest, GoesToNoOtherWindow)
{
    showTwo();
    undo(u"a"_s)->setFocus();
    QWidget other;
    QLineEdit there(&other);
    there.setFocus();
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    ASSERT_EQ(QApplication::focusWidget(), undo(u"a"_s));
    desktop.notices.takeBack(u"a"_s);
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(NoticeBarFocusTest, StaysInALineThatIsRenewed)
{
    showTwo();
    undo(u"a"_s)->setFocus();
    show(u"a"_s);
    fixtures::turnEventLoop(); // the line before has gone
    EXPECT_EQ(QApplication::focusWidget(), undo(u"a"_s));
    desktop.notices.takeBack(u"a"_s);
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(NoticeBarFocusTest, GoesBackFromALineThatIsRenewedWithoutIt)
{
    showTwo();
    undo(u"a"_s)->setFocus();
    showWords(u"a"_s);
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(NoticeBarFocusTest, StaysWhereItIsWhenAnotherNoticeGoes)
{
    showTwo();
    undo(u"b"_s)->setFocus();
    desktop.notices.takeBack(u"a"_s);
    EXPECT_EQ(QApplication::focusWidget(), undo(u"b"_s));
}

} // namespace

} // namespace vormel
