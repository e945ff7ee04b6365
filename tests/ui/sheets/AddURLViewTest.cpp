#include "ui/sheets/AddURLView.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/Part.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString oneHost = u"https://a.example/1\nhttps://www.a.example/2"_s;
const QString twoHosts =
    u"https://b.example/1\nhttps://container.example/c\nhttps://a.example/2\nhttps://b.example/3"_s;

class AddURLViewTest : public ::testing::Test
{
protected:
    AddURLViewTest()
    {
        QGuiApplication::clipboard()->clear();
        QObject::connect(&sheet, &AddURLView::added, &sheet,
                         [this](const std::vector<Link>& urls, const std::optional<QString>& given) {
                             ++additions;
                             for (const Link& url : urls)
                                 added << url.absoluteString();
                             password = given;
                         });
    }
    void open()
    {
        sheet.open();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&sheet));
    }
    void open(const QString& text)
    {
        open();
        part<QPlainTextEdit>("linkEditor").setPlainText(text);
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(sheet, name);
    }
    QString text(const char* name) { return part<QLabel>(name).text(); }
    QPushButton& button(const char* name) { return part<QPushButton>(name); }
    bool isShown(const char* name) { return part<QWidget>(name).isVisible(); }
    void click(const char* name) { QTest::mouseClick(&button(name), Qt::LeftButton); }
    bool isOpen() const { return sheet.isVisible(); }

    fixtures::EngineOnScript engine{fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>())};
    QWidget page;
    AddURLView sheet{engine.settings(), engine.manager().resolvers(), &page};
    int additions = 0;
    QStringList added;
    std::optional<QString> password;
};

TEST_F(AddURLViewTest, TakesTheLinksOfTheClipboardAndIsReadyToType)
{
    QGuiApplication::clipboard()->setText(u"see\n https://a.example/1 \nftp://b.example/2\nhttp://c.example/3"_s);
    open();
    EXPECT_EQ(part<QPlainTextEdit>("linkEditor").toPlainText(), u"https://a.example/1\nhttp://c.example/3");
    EXPECT_EQ(sheet.focusWidget(), &part<QPlainTextEdit>("linkEditor"));
}

TEST_F(AddURLViewTest, ShowsTheBeginningOfLongLinksOfTheClipboardAndIsReadyAtTheirEnd)
{
    const QString link = u"https://a.example/"_s + u"long-"_s.repeated(200);
    QGuiApplication::clipboard()->setText(link + u"1\n"_s + link + u"2"_s);
    open();
    fixtures::turnEventLoop();
    const auto& editor = part<QPlainTextEdit>("linkEditor");
    EXPECT_GT(editor.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(editor.horizontalScrollBar()->value(), 0);
    EXPECT_TRUE(editor.textCursor().atEnd());
}

TEST_F(AddURLViewTest, KeepsTextThatIsThere)
{
    QGuiApplication::clipboard()->setText(u"https://clip.example/1"_s);
    part<QPlainTextEdit>("linkEditor").setPlainText(u"https://typed.example/1"_s);
    open();
    EXPECT_EQ(part<QPlainTextEdit>("linkEditor").toPlainText(), u"https://typed.example/1");
}

TEST_F(AddURLViewTest, CountsInBothLanguages)
{
    open(u"https://a.example/1"_s);
    EXPECT_EQ(text("directCountText"), u"1 direct link");
    EXPECT_FALSE(isShown("containerCount"));
    part<QPlainTextEdit>("linkEditor").setPlainText(twoHosts + u"\nhttps://container.example/d"_s);
    EXPECT_EQ(text("directCountText"), u"3 direct links");
    EXPECT_EQ(text("containerCountText"), u"2 containers");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(text("directCountText"), u"3 link direttoi");
    EXPECT_EQ(text("containerCountText"), u"2 container");
    part<QPlainTextEdit>("linkEditor").setPlainText(u"https://a.example/1\nhttps://container.example/c"_s);
    EXPECT_EQ(text("directCountText"), u"1 link diretto");
    EXPECT_EQ(text("containerCountText"), u"1 container");
}

TEST_F(AddURLViewTest, ShowsNoCountAndOffersNothingWithoutLinks)
{
    open(u"hello"_s);
    EXPECT_FALSE(isShown("directCount"));
    EXPECT_FALSE(isShown("containerCount"));
    EXPECT_FALSE(button("add").isEnabled());
    QTest::keyClick(&part<QPlainTextEdit>("linkEditor"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(additions, 0);
}

TEST_F(AddURLViewTest, AsksForAPasswordOnlyForContainers)
{
    open(oneHost);
    EXPECT_FALSE(isShown("passwordBlock"));
    part<QPlainTextEdit>("linkEditor").setPlainText(u"https://container.example/c"_s);
    EXPECT_TRUE(isShown("passwordBlock"));
    EXPECT_EQ(part<QLineEdit>("containerPassword").echoMode(), QLineEdit::Password);
}

TEST_F(AddURLViewTest, AddsTheLinksOfOneHostAtOnce)
{
    open(oneHost);
    click("add");
    EXPECT_EQ(added, oneHost.split(u'\n'));
    EXPECT_FALSE(password.has_value());
    EXPECT_FALSE(isOpen());
}

TEST_F(AddURLViewTest, HandsOverThePassword)
{
    open(u"https://container.example/c"_s);
    QTest::keyClicks(&part<QLineEdit>("containerPassword"), u"secret"_s);
    QTest::keyClick(&part<QLineEdit>("containerPassword"), Qt::Key_Return);
    EXPECT_EQ(additions, 1);
    EXPECT_EQ(password, u"secret"_s);
}

TEST_F(AddURLViewTest, ControlReturnInTheEditorAdds)
{
    open(oneHost);
    QTest::keyClick(&part<QPlainTextEdit>("linkEditor"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(additions, 1);
    EXPECT_FALSE(isOpen());
}

TEST_F(AddURLViewTest, EscapeCancels)
{
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ControlModifier)}) {
        open(oneHost);
        QTest::keyClick(&part<QPlainTextEdit>("linkEditor"), Qt::Key_Escape, modifiers);
        EXPECT_FALSE(isOpen());
    }
    EXPECT_EQ(additions, 0);
}

TEST_F(AddURLViewTest, AsksWhichOfSeveralHostsIsMeant)
{
    open(twoHosts);
    click("add");
    EXPECT_EQ(additions, 0);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(sheet.windowTitle(), u"Choose Download Server");
    EXPECT_EQ(text("chooserText"),
              u"These links are available on 2 hosts. Select the one you have a premium account for.");
    EXPECT_EQ(fixtures::partOf<QLabel>(button("host0"), "hostName").text(), u"a.example");
    EXPECT_EQ(fixtures::partOf<QLabel>(button("host0"), "fileCount").text(), u"1 file");
    EXPECT_EQ(fixtures::partOf<QLabel>(button("host1"), "fileCount").text(), u"2 files");
    EXPECT_GE(sheet.width(), 420);
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(sheet.windowTitle(), u"Scegli il server di download");
    EXPECT_EQ(text("chooserText"),
              u"Questi link sono disponibili su 2 host. Scegli quello per cui hai un account premium.");
    EXPECT_EQ(button("addAllHosts").text(), u"Aggiungi tutti gli host");
}

TEST_F(AddURLViewTest, AChosenHostComesWithAllContainers)
{
    open(twoHosts);
    part<QLineEdit>("containerPassword").setText(u"pw"_s);
    click("add");
    click("host1");
    EXPECT_EQ(added,
              (QStringList{u"https://container.example/c"_s, u"https://b.example/1"_s, u"https://b.example/3"_s}));
    EXPECT_EQ(password, u"pw"_s);
    EXPECT_FALSE(isOpen());
}

TEST_F(AddURLViewTest, AllHostsMeansAllLinksInTheirOrder)
{
    open(twoHosts);
    click("add");
    click("addAllHosts");
    EXPECT_EQ(added, twoHosts.split(u'\n'));
    EXPECT_FALSE(isOpen());
}

TEST_F(AddURLViewTest, CancelOfTheChoiceGoesBackToTheText)
{
    open(twoHosts);
    click("add");
    click("cancelChoice");
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isShown("linkEditor"));
    EXPECT_EQ(part<QPlainTextEdit>("linkEditor").toPlainText(), twoHosts);
    click("add");
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_TRUE(isShown("linkEditor"));
    EXPECT_EQ(additions, 0);
}

TEST_F(AddURLViewTest, TheFirstHostHasTheFocusAndReturnTakesIt)
{
    open(twoHosts);
    click("add");
    EXPECT_EQ(sheet.focusWidget(), &button("host0"));
    QTest::keyClick(&button("host0"), Qt::Key_Return);
    EXPECT_EQ(added, (QStringList{u"https://container.example/c"_s, u"https://a.example/2"_s}));
}

TEST_F(AddURLViewTest, ManyHostsScroll)
{
    QStringList lines;
    for (int i = 0; i < 30; ++i)
        lines << u"https://host%1.example/x"_s.arg(i);
    open(lines.join(u'\n'));
    click("add");
    fixtures::turnEventLoop();
    auto& scroll = part<QScrollArea>("hostScroll");
    EXPECT_LT(scroll.viewport()->height(), scroll.widget()->height());
    EXPECT_LE(sheet.height(), 500);
}

TEST_F(AddURLViewTest, SpeaksBothLanguages)
{
    open(u"https://container.example/c"_s);
    EXPECT_EQ(text("addTitle"), u"Add URLs");
    EXPECT_EQ(text("addPrompt"), u"Paste one or more links, one per line:");
    EXPECT_EQ(text("passwordLabelText"), u"Container password (optional)");
    EXPECT_EQ(part<QLineEdit>("containerPassword").placeholderText(), u"Leave blank if not protected");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(sheet.windowTitle(), u"Aggiungi URL");
    EXPECT_EQ(text("addPrompt"), u"Incolla uno o più link, uno per riga:");
    EXPECT_EQ(text("passwordLabelText"), u"Password container (opzionale)");
    EXPECT_EQ(part<QLineEdit>("containerPassword").placeholderText(), u"Lascia vuoto se non protetto");
    EXPECT_EQ(button("add").text(), u"Aggiungi");
    EXPECT_EQ(button("cancelAdd").text(), u"Annulla");
    EXPECT_EQ(part<QPlainTextEdit>("linkEditor").placeholderText(), u"https://...");
}

TEST_F(AddURLViewTest, TabGoesThroughEverything)
{
    open(u"https://container.example/c"_s);
    QStringList order;
    for (int i = 0; i < 4; ++i) {
        order << sheet.focusWidget()->objectName();
        QTest::keyClick(sheet.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(u' '), u"linkEditor containerPassword cancelAdd add");
}

} // namespace
} // namespace vormel
