#include "fixtures/EventLoop.h"
#include "kit/Spinner.h"
#include "kit/Theme.h"
#include "ui/Part.h"
#include "ui/sheets/SignInSheetPorts.h"
#include "ui/sheets/signin/SignInMark.h"
#include "ui/web/HostLine.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::partOf;

class TerabytezLoginSheetTest : public ::testing::Test
{
protected:
    TerabytezLoginSheetTest()
    {
        desktop.web.onPage = [this](fixtures::ScriptedPage& page) {
            field = new QLineEdit;
            page.onWidget = [this] { return field; };
            page.onScript = [this](const QString& /*script*/) { return html; };
        };
        window.resize(980, 640);
        window.show();
    }
    TerabytezLoginSheetView& open()
    {
        sheet = new TerabytezLoginSheetView(fixtures::signInPorts(desktop), &window);
        sheet->setAttribute(Qt::WA_DeleteOnClose);
        QObject::connect(sheet, &TerabytezLoginSheetView::loggedIn,
                         [this](const auto& /*info*/) { ends << u"done"_s; });
        QObject::connect(sheet, &QDialog::rejected, [this] { ends << u"cancelled"_s; });
        sheet->setCredentials({u"anna"_s, u"s3cret"_s});
        sheet->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet));
        fixtures::turnEventLoop();
        return *sheet;
    }
    [[nodiscard]] fixtures::ScriptedPage& page() const { return *desktop.web.pages.at(0); }
    template <typename T = QWidget>
    [[nodiscard]] T& part(const char* name) const
    {
        return partOf<T>(*sheet, name);
    }
    void show(const QString& text)
    {
        html = text;
        page().arrivesAt(u"https://terabytez.example/login"_s);
    }
    [[nodiscard]] QString mark() const
    {
        if (part("signInSpinner").isVisible())
            return u"(turning)"_s;
        return part("signInCheck").isVisible() ? part<QLabel>("signInState").text() : QString();
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    std::optional<QVariant> html = u"name=\"password\""_s;
    QPointer<QLineEdit> field;
    QWidget window;
    QPointer<TerabytezLoginSheetView> sheet;
    QStringList ends;
};

TEST_F(TerabytezLoginSheetTest, SpeaksBothLanguages)
{
    open();
    EXPECT_EQ(part<QLabel>("signInInstruction").text(),
              u"Sign in, then open your Account page (menu ▸ My Account). Once it shows, press Done.");
    EXPECT_EQ(part<QPushButton>("cancelSignIn").text(), u"Cancel");
    EXPECT_EQ(part<QPushButton>("signInDone").text(), u"Done");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(part<QLabel>("signInInstruction").text(),
              u"Accedi, poi apri la pagina Account (menu ▸ My Account). Quando appare, premi Fine.");
    EXPECT_EQ(part<QPushButton>("cancelSignIn").text(), u"Annulla");
    EXPECT_EQ(part<QPushButton>("signInDone").text(), u"Fine");
}

TEST_F(TerabytezLoginSheetTest, LoadsTheFormAndFillsItIn)
{
    open();
    EXPECT_EQ(page().loads, std::vector{fixtures::link(u"https://terabytez.example/login"_s)});
    show(u"name=\"password\""_s);
    EXPECT_EQ(page().scripts.value(0), fillScript({u"anna"_s, u"s3cret"_s}));
    EXPECT_EQ(mark(), QString());
}

TEST_F(TerabytezLoginSheetTest, MarksHowFarTheSignInHasCome)
{
    open();
    show(u"logout"_s);
    EXPECT_EQ(mark(), u"Signed in");
    show(u"my username"_s);
    EXPECT_EQ(mark(), u"Account found");
    EXPECT_EQ(part<QLabel>("signInState").palette().color(QPalette::WindowText),
              Theme(sheet->palette()).color(Tint::green));
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(mark(), u"Account trovato");
    EXPECT_EQ(part("signInMark").accessibleName(), u"Account trovato");
}

TEST_F(TerabytezLoginSheetTest, TurnsWhileTheAccountIsReadAndTakesNoSecondDone)
{
    open();
    show(u"logout"_s);
    part<QPushButton>("signInDone").click();
    EXPECT_EQ(mark(), u"(turning)");
    EXPECT_EQ(part("signInMark").accessibleName(), u"Checking...");
    EXPECT_FALSE(part("signInDone").isEnabled());
    EXPECT_TRUE(part("cancelSignIn").isEnabled());
    engine.clock.advance(std::chrono::seconds(8));
    EXPECT_EQ(ends, QStringList{u"done"_s});
    fixtures::turnEventLoop();
    EXPECT_FALSE(sheet);
}

TEST_F(TerabytezLoginSheetTest, CanBeCancelledWhileTheAccountIsRead)
{
    open();
    part<QPushButton>("signInDone").click();
    engine.clock.advance(std::chrono::seconds(1));
    part<QPushButton>("cancelSignIn").click();
    fixtures::turnEventLoop();
    engine.clock.advance(std::chrono::seconds(20));
    EXPECT_EQ(ends, QStringList{u"cancelled"_s});
    EXPECT_TRUE(desktop.web.pages.empty());
}

TEST_F(TerabytezLoginSheetTest, EndsWithItsWindowWhileTheAccountIsRead)
{
    open();
    part<QPushButton>("signInDone").click();
    sheet->close();
    fixtures::turnEventLoop();
    engine.clock.advance(std::chrono::seconds(20));
    EXPECT_EQ(ends, QStringList{u"cancelled"_s});
}

TEST_F(TerabytezLoginSheetTest, GivesUpOnAPageThatDiesWhileTheAccountIsRead)
{
    open();
    show(u"logout"_s);
    part<QPushButton>("signInDone").click();
    page().shownUrl.reset();
    html = QVariant();
    page().ends(WebPage::End::failed);
    EXPECT_TRUE(part("reloadPage").isVisible());
    engine.clock.advance(std::chrono::seconds(8));
    EXPECT_EQ(ends, QStringList{u"done"_s});
}

TEST_F(TerabytezLoginSheetTest, IsNotDoneWithoutAPage)
{
    desktop.web.missing = WebBrowser::Absence::notInstalled;
    open();
    EXPECT_FALSE(part("signInDone").isEnabled());
    EXPECT_TRUE(part("installCommand").isVisible());
    desktop.web.missing.reset();
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_TRUE(part("signInDone").isEnabled());
    EXPECT_EQ(page().loads.size(), 1U);
}

TEST_F(TerabytezLoginSheetTest, LeavesReturnToThePage)
{
    open();
    show(u"logout"_s);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClick(field, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_NE(mark(), u"(turning)");
    part("cancelSignIn").setFocus();
    QTest::keyClick(&part("cancelSignIn"), Qt::Key_Return);
    EXPECT_EQ(ends, QStringList{u"cancelled"_s});
}

TEST_F(TerabytezLoginSheetTest, IsCancelledByEscapeInThePage)
{
    open();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(ends, QStringList{u"cancelled"_s});
}

TEST_F(TerabytezLoginSheetTest, LetsTheKeyboardGoThroughThePageToTheButtonsAndBack)
{
    open();
    show(u"logout"_s);
    part("hostLine").setFocus();
    for (QWidget* const next :
         {static_cast<QWidget*>(field), &part("cancelSignIn"), &part("signInDone"), &part("hostLine")}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), next) << qPrintable(next->objectName());
    }
}

TEST_F(TerabytezLoginSheetTest, PassesOverTheLineOfTheHostWhileItSaysNothing)
{
    open();
    part("signInDone").setFocus();
    QTest::keyClick(&part("signInDone"), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(TerabytezLoginSheetTest, BeginsInThePage)
{
    open();
    EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(TerabytezLoginSheetTest, IsAsLargeAsTheWindowLetsIt)
{
    open();
    EXPECT_EQ(sheet->minimumSize(), QSize(860, 600).boundedTo(sheet->screen()->availableSize()));
}

class TerabytezLoginFitTest : public TerabytezLoginSheetTest, public ::testing::WithParamInterface<AppLanguage>
{};

TEST_P(TerabytezLoginFitTest, StandsInTheSmallestWindowWithAllInSight)
{
    engine.settings().language.set(GetParam());
    window.resize(700, 450);
    open();
    show(u"my username"_s);
    sheet->resize(sheet->minimumSize());
    fixtures::turnEventLoop();
    EXPECT_LE(sheet->width(), 700);
    EXPECT_LE(sheet->height(), 450);
    const auto& instruction = part<QLabel>("signInInstruction");
    EXPECT_GE(instruction.height(), instruction.heightForWidth(instruction.width()));
    for (const char* const name : {"cancelSignIn", "signInDone", "signInMark", "pageFrame", "hostLine"}) {
        const QWidget& each = part(name);
        const QRect place(each.mapTo(sheet.data(), QPoint()), each.size());
        EXPECT_TRUE(sheet->rect().contains(place)) << name;
        EXPECT_GE(each.width(), each.minimumSizeHint().width()) << name;
    }
    EXPECT_GE(field->height(), 20);
}

INSTANTIATE_TEST_SUITE_P(, TerabytezLoginFitTest, ::testing::ValuesIn(allLanguages));

} // namespace
} // namespace vormel
