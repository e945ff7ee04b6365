#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ScriptedBrowser.h"
#include "model/Services.h"
#include "platform/async/Background.h"
#include "ui/Focusable.h"
#include "ui/Part.h"
#include "ui/sheets/captcha/CaptchaSheetView.h"

#include <QAccessible>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using fixtures::turnEventLoop;
using fixtures::waitUntil;

/// The sheet of a container, with its page open.
class CaptchaSheetTest : public ::testing::Test
{
protected:
    CaptchaSheetTest()
    {
        browser.onPage = [this](fixtures::ScriptedPage& page) {
            page.onWidget = [this] { return view = new QLabel(u"the page"_s); };
            page.onScript = [this](const QString&) {
                return QVariant(QString::fromUtf8(QJsonDocument(content).toJson()));
            };
        };
    }
    ~CaptchaSheetTest() override
    {
        sheet.reset();
        turnEventLoop();
    }
    void open(const std::vector<SupportedHost>& accountHosts = {})
    {
        const CaptchaSheetView::Ports ports{
            {browser, []() -> QCoro::Task<> { co_return; }, engine.clock, engine.settings()}, reading};
        sheet = std::make_unique<CaptchaSheetView>(ports, link(u"https://box.example/Container/1.html"_s), accountHosts,
                                                   nullptr);
        QObject::connect(sheet.get(), &CaptchaSheetView::linksExtracted, [this](const std::vector<Link>& urls) {
            EXPECT_FALSE(sheet->isVisible());
            extracted.push_back(urls);
        });
        QObject::connect(sheet.get(), &QDialog::rejected, [this] { ++rejections; });
        sheet->show();
        sheet->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet.get()));
        turnEventLoop();
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(*sheet, name);
    }
    fixtures::ScriptedPage& page() { return *browser.pages.front(); }
    void click(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }
    /// Has the links read, as the page tells them in its field.
    void extract(const QString& links = {})
    {
        content[u"cnlUrls"_s] = links;
        click("extractLinks");
    }
    bool tellsError()
    {
        return waitUntil([this] { return part<QLabel>("captchaError").isVisible(); });
    }
    bool hasChoice()
    {
        return waitUntil([this] { return part<QListView>("captchaHosts").isVisible(); });
    }

    fixtures::EngineOnScript engine;
    fixtures::ScriptedBrowser browser;
    Services services = Services::builtIn();
    Background background;
    CaptchaPorts reading{engine.http, background, engine.clock, browser, services};
    QJsonObject content;
    QPointer<QLabel> view;
    std::vector<std::vector<Link>> extracted;
    int rejections = 0;
    std::unique_ptr<CaptchaSheetView> sheet;
};

TEST_F(CaptchaSheetTest, ShowsTheContainersPageALittleSmaller)
{
    open();
    EXPECT_EQ(page().loads, std::vector{link(u"https://box.example/Container/1.html"_s)});
    EXPECT_EQ(page().zoom, 0.85);
    EXPECT_EQ(sheet->windowTitle(), u"CAPTCHA Required");
    EXPECT_EQ(part<QLabel>("captchaTitle").text(), u"CAPTCHA Required");
    EXPECT_EQ(part<QLabel>("captchaNotice").text(), u"Solve the CAPTCHA below, wait for the file list to appear, then "
                                                    "press <b>Extract Links</b>.");
    EXPECT_EQ(part<QPushButton>("extractLinks").text(), u"Extract Links");
    EXPECT_EQ(part<QPushButton>("cancelCaptcha").text(), u"Cancel");
    EXPECT_FALSE(part<QWidget>("captchaSpinner").isVisible());
    EXPECT_FALSE(part<QLabel>("captchaError").isVisible());
    EXPECT_FALSE(part<QLabel>("captchaProgress").isVisible());
}

TEST_F(CaptchaSheetTest, StaysOnThePageWhenAWindowIsWanted)
{
    open();
    page().arrivesAt(u"https://box.example/Container/1.html"_s);
    page().wantsWindow(u"https://advertisement.example/"_s);
    EXPECT_EQ(page().loads.size(), 1U);
}

TEST_F(CaptchaSheetTest, HandsOverTheLinksAndCloses)
{
    open();
    extract(u"https://a.example/1 https://a.example/2"_s);
    ASSERT_TRUE(waitUntil([this] { return !extracted.empty(); }));
    EXPECT_EQ(extracted,
              (std::vector<std::vector<Link>>{{link(u"https://a.example/1"_s), link(u"https://a.example/2"_s)}}));
    EXPECT_EQ(rejections, 0);
}

TEST_F(CaptchaSheetTest, StaysOpenOnErrorsForAnotherTry)
{
    open();
    extract();
    ASSERT_TRUE(tellsError());
    EXPECT_EQ(part<QLabel>("captchaError").text(),
              u"No links found — make sure the file list is visible, then try again");
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_FALSE(part<QWidget>("captchaSpinner").isVisible());
    extract(u"https://a.example/1"_s);
    EXPECT_TRUE(waitUntil([this] { return extracted.size() == 1; }));
}

TEST_F(CaptchaSheetTest, ErrorsAreTakenBackWhileItIsTriedAgain)
{
    open();
    extract();
    ASSERT_TRUE(tellsError());
    page().onScript = nullptr;
    extract();
    EXPECT_FALSE(part<QLabel>("captchaError").isVisible());
    EXPECT_TRUE(part<QWidget>("captchaSpinner").isVisible());
}

TEST_F(CaptchaSheetTest, TellsHowFarThePerLinkPagesAre)
{
    content[u"html"_s] = u"<a href=\"/Link/1.html\"><a href=\"/Link/2.html\">"_s;
    open();
    extract();
    auto& progress = part<QLabel>("captchaProgress");
    ASSERT_TRUE(waitUntil([&progress] { return progress.isVisible(); }));
    EXPECT_EQ(progress.text(), u"Link 1/2");
    EXPECT_TRUE(part<QWidget>("captchaSpinner").isVisible());
    engine.clock.advance(std::chrono::seconds(15));
    EXPECT_EQ(progress.text(), u"Link 2/2");
    engine.clock.advance(std::chrono::seconds(15));
    EXPECT_FALSE(progress.isVisible());
    EXPECT_TRUE(part<QLabel>("captchaError").isVisible());
}

TEST_F(CaptchaSheetTest, CancellingWhileLinksAreReadEndsThatWork)
{
    content[u"html"_s] = u"<a href=\"/Link/1.html\">"_s;
    open();
    extract();
    ASSERT_TRUE(waitUntil([this] { return browser.pages.size() == 2; }));
    click("cancelCaptcha");
    EXPECT_EQ(rejections, 1);
    EXPECT_EQ(browser.pages.size(), 1U);
    engine.clock.advance(std::chrono::seconds(15));
    EXPECT_TRUE(extracted.empty());
}

TEST_F(CaptchaSheetTest, EscapeCancels)
{
    open();
    QTest::keyClick(sheet.get(), Qt::Key_Escape);
    EXPECT_EQ(rejections, 1);
}

TEST_F(CaptchaSheetTest, ReturnInThePageReadsNothing)
{
    open();
    QTest::keyClick(view.data(), Qt::Key_Return);
    EXPECT_TRUE(page().scripts.isEmpty());
    EXPECT_TRUE(sheet->isVisible());
}

TEST_F(CaptchaSheetTest, MayGoWhileLinksAreRead)
{
    content[u"html"_s] = u"<a href=\"/Link/1.html\">"_s;
    open();
    extract();
    ASSERT_TRUE(waitUntil([this] { return browser.pages.size() == 2; }));
    sheet.reset();
    EXPECT_TRUE(browser.pages.empty());
    engine.clock.advance(std::chrono::seconds(15));
    EXPECT_TRUE(extracted.empty());
}

TEST_F(CaptchaSheetTest, MayGoBeforeItsPageHasAnswered)
{
    open();
    page().onScript = nullptr;
    extract();
    sheet.reset();
    turnEventLoop();
    EXPECT_TRUE(extracted.empty());
}

TEST_F(CaptchaSheetTest, WithoutABrowserItSaysSoAndReadsNothing)
{
    browser.missing = WebBrowser::Absence::notInstalled;
    open();
    EXPECT_TRUE(part<QLabel>("pageNoteText").isVisible());
    extract(u"https://a.example/1"_s);
    turnEventLoop();
    EXPECT_FALSE(part<QWidget>("captchaSpinner").isVisible());
    EXPECT_TRUE(extracted.empty());
    click("cancelCaptcha");
    EXPECT_EQ(rejections, 1);
}

TEST_F(CaptchaSheetTest, LinksOfSeveralHostsTurnItIntoAChoice)
{
    open();
    extract(u"https://a.example/1 https://b.example/2 https://a.example/3"_s);
    ASSERT_TRUE(hasChoice());
    EXPECT_EQ(sheet->windowTitle(), u"Choose Download Server");
    EXPECT_FALSE(part<QPushButton>("extractLinks").isVisible());
    QTest::keyClick(&part<QListView>("captchaHosts"), Qt::Key_Return);
    ASSERT_EQ(extracted.size(), 1U);
    EXPECT_EQ(extracted.front(), (std::vector{link(u"https://a.example/1"_s), link(u"https://a.example/3"_s)}));
}

TEST_F(CaptchaSheetTest, AllHostsMayBeChosen)
{
    open();
    extract(u"https://a.example/1 https://b.example/2 https://a.example/3"_s);
    ASSERT_TRUE(hasChoice());
    click("addAllCaptchaHosts");
    ASSERT_EQ(extracted.size(), 1U);
    EXPECT_EQ(extracted.front().size(), 3U);
}

TEST_F(CaptchaSheetTest, CancellingTheChoiceCancelsTheSheet)
{
    open();
    extract(u"https://a.example/1 https://b.example/2"_s);
    ASSERT_TRUE(hasChoice());
    click("cancelCaptchaChoice");
    EXPECT_EQ(rejections, 1);
    EXPECT_TRUE(extracted.empty());
}

TEST_F(CaptchaSheetTest, AHostWithAnAccountSparesTheChoice)
{
    open({SupportedHost::filestore});
    extract(u"https://a.example/1 https://filestore.example/2"_s);
    ASSERT_TRUE(waitUntil([this] { return !extracted.empty(); }));
    EXPECT_EQ(extracted.front(), std::vector{link(u"https://filestore.example/2"_s)});
}

TEST_F(CaptchaSheetTest, IsWhollyUsableInTheSmallestWindow)
{
    open();
    sheet->setMinimumSize(0, 0);
    sheet->resize(700, 450);
    extract();
    ASSERT_TRUE(tellsError());
    turnEventLoop();
    EXPECT_EQ(sheet->size(), QSize(700, 450));
    EXPECT_GE(view->height(), 200);
    for (const char* name : {"captchaTitle", "captchaNotice", "captchaError", "cancelCaptcha", "extractLinks"}) {
        const QWidget& seen = part<QWidget>(name);
        EXPECT_TRUE(sheet->rect().contains(QRect(seen.mapTo(sheet.get(), QPoint()), seen.size()))) << name;
        EXPECT_GE(seen.height(), seen.minimumSizeHint().height()) << name;
    }
    extract(u"https://a.example/1 https://b.example/2"_s);
    ASSERT_TRUE(hasChoice());
    EXPECT_EQ(sheet->size(), QSize(700, 450));
    const QWidget& all = part<QWidget>("addAllCaptchaHosts");
    EXPECT_TRUE(sheet->rect().contains(QRect(all.mapTo(sheet.get(), QPoint()), all.size())));
}

TEST_F(CaptchaSheetTest, WhatTheKeyboardReachesOfTheChoiceHasAName)
{
    open();
    extract(u"https://a.example/1 https://b.example/2"_s);
    ASSERT_TRUE(hasChoice());
    const QList<QWidget*> parts = fixtures::focusable(*sheet);
    EXPECT_EQ(parts.size(), 3);
    for (QWidget* const reached : parts) {
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(reached)->text(QAccessible::Name).isEmpty())
            << fixtures::describe(*reached);
    }
}

} // namespace
} // namespace vormel
