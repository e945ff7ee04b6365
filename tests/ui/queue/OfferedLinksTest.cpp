#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/HostSelectionSheetView.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Links come from outside the window while something is or is not open in it.
class OfferedLinksTest : public ::testing::Test
{
protected:
    OfferedLinksTest()
    {
        QGuiApplication::clipboard()->clear();
        page.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&page));
    }
    void offer(const QStringList& urls)
    {
        std::vector<Link> links;
        for (const QString& url : urls)
            links.push_back(fixtures::link(url));
        page.offerLinks(links);
        fixtures::turnEventLoop();
    }
    template <typename Sheet>
    Sheet* open()
    {
        for (auto* candidate : page.findChildren<Sheet*>()) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }
    QPlainTextEdit& editor() { return fixtures::partOf<QPlainTextEdit>(*open<AddURLView>(), "linkEditor"); }
    void press(QWidget& sheet, const char* button)
    {
        fixtures::partOf<QAbstractButton>(sheet, button).click();
        fixtures::turnEventLoop();
    }
    void askForHost()
    {
        engine.manager().addURLs({fixtures::link(u"https://container.example/c/1"_s)}, std::nullopt);
        fixtures::turnEventLoop();
        const std::variant<std::vector<Link>, ContainerError> links =
            std::vector{fixtures::link(u"http://other.example/1"_s), fixtures::link(u"http://terabytez.example/1"_s)};
        log->containers.back().answer->deliver(links);
        fixtures::turnEventLoop();
    }

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

TEST_F(OfferedLinksTest, TheSheetOpensWithThemAloneAndAddsWhenTold)
{
    QGuiApplication::clipboard()->setText(u"https://copied.example/1"_s);
    offer({u"https://a.example/1"_s, u"https://a.example/2"_s});
    ASSERT_NE(open<AddURLView>(), nullptr);
    EXPECT_EQ(editor().toPlainText(), u"https://a.example/1\nhttps://a.example/2");
    EXPECT_TRUE(engine.manager().items().empty());
    press(*open<AddURLView>(), "add");
    EXPECT_EQ(engine.manager().items().size(), 2U);
    EXPECT_EQ(open<AddURLView>(), nullptr);
}

TEST_F(OfferedLinksTest, AnOpenSheetGetsThemBehindWhatWasTyped)
{
    page.showAddURLs();
    QTest::keyClicks(&editor(), u"https://b.exa"_s);
    offer({u"https://a.example/1"_s});
    QTest::keyClicks(&editor(), u"mple/2"_s); // the cursor is where it was
    EXPECT_EQ(editor().toPlainText(), u"https://b.example/2\nhttps://a.example/1");
    EXPECT_EQ(page.findChildren<AddURLView*>().size(), 1);
}

TEST_F(OfferedLinksTest, ALineThatWasJustBegunStaysFree)
{
    page.showAddURLs();
    QTest::keyClicks(&editor(), u"https://b.example/1"_s);
    QTest::keyClick(&editor(), Qt::Key_Return);
    offer({u"https://a.example/1"_s});
    QTest::keyClicks(&editor(), u"x"_s);
    EXPECT_EQ(editor().toPlainText(), u"https://b.example/1\nx\nhttps://a.example/1");
}

TEST_F(OfferedLinksTest, ASelectionStays)
{
    page.showAddURLs();
    QTest::keyClicks(&editor(), u"https://b.example/1"_s);
    editor().selectAll();
    offer({u"https://a.example/1"_s});
    EXPECT_EQ(editor().textCursor().selectedText(), u"https://b.example/1");
    editor().undo();
    EXPECT_EQ(editor().toPlainText(), u"https://b.example/1");
}

TEST_F(OfferedLinksTest, AChoiceOfHostsIsNotDisturbed)
{
    page.showAddURLs();
    editor().setPlainText(u"https://b.example/1\nhttps://c.example/1"_s);
    press(*open<AddURLView>(), "add");
    offer({u"https://a.example/1"_s});
    press(*open<AddURLView>(), "cancelChoice");
    EXPECT_EQ(editor().toPlainText(), u"https://b.example/1\nhttps://c.example/1\nhttps://a.example/1");
}

TEST_F(OfferedLinksTest, WhatCameDuringAChoiceComesAfterIt)
{
    page.showAddURLs();
    editor().setPlainText(u"https://b.example/1\nhttps://c.example/1"_s);
    press(*open<AddURLView>(), "add");
    offer({u"https://a.example/1"_s});
    press(*open<AddURLView>(), "host0");
    EXPECT_EQ(engine.manager().items().size(), 1U);
    ASSERT_NE(open<AddURLView>(), nullptr);
    EXPECT_EQ(editor().toPlainText(), u"https://a.example/1");
}

TEST_F(OfferedLinksTest, TheyWaitForTheEndOfAQuestionAndGoBeforeTheNext)
{
    askForHost();
    ASSERT_NE(open<HostSelectionSheetView>(), nullptr);
    offer({u"https://a.example/1"_s});
    offer({u"https://a.example/2"_s});
    EXPECT_EQ(open<AddURLView>(), nullptr);
    open<HostSelectionSheetView>()->reject();
    fixtures::turnEventLoop();
    ASSERT_NE(open<AddURLView>(), nullptr);
    EXPECT_EQ(editor().toPlainText(), u"https://a.example/1\nhttps://a.example/2");
}

TEST_F(OfferedLinksTest, AQuestionThatComesMeanwhileWaitsForTheSheet)
{
    offer({u"https://a.example/1"_s});
    askForHost();
    EXPECT_EQ(open<HostSelectionSheetView>(), nullptr);
    open<AddURLView>()->reject();
    fixtures::turnEventLoop();
    EXPECT_NE(open<HostSelectionSheetView>(), nullptr);
}

TEST_F(OfferedLinksTest, TheyWaitForTheEndOfSomebodyElsesDialog)
{
    QMessageBox alert(&page);
    alert.setWindowModality(Qt::WindowModal);
    alert.show();
    offer({u"https://a.example/1"_s});
    EXPECT_EQ(open<AddURLView>(), nullptr);
    alert.close();
    fixtures::turnEventLoop();
    EXPECT_NE(open<AddURLView>(), nullptr);
}

TEST_F(OfferedLinksTest, ThePageIsWantedWhereAnotherIsOnTheScreen)
{
    page.hide();
    offer({u"https://a.example/1"_s}); // nobody shows it
    EXPECT_EQ(open<AddURLView>(), nullptr);
    QObject::connect(&page, &DownloadQueueView::wanted, &page, &QWidget::show);
    offer({u"https://a.example/2"_s});
    ASSERT_NE(open<AddURLView>(), nullptr);
    EXPECT_EQ(editor().toPlainText(), u"https://a.example/1\nhttps://a.example/2");
}

} // namespace
} // namespace vormel
