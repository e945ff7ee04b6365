#include "ui/help/AboutWindow.h"

#include "config/Services.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "platform/http/CurlVersion.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class AboutWindowTest : public ::testing::Test
{
protected:
    AboutWindowTest()
    {
        engine.tools.add(u"unrar"_s);
        desktop.tools.look();
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }
    QString text(const char* name) { return fixtures::partOf<QLabel>(*window, name).text(); }
    QStringList lines() { return text("aboutSurroundings").split(u'\n'); }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    QWidget owner;
    QPointer<AboutWindow> window = new AboutWindow({engine.settings(), desktop.tools, desktop.web}, &owner); // its own
};

TEST_F(AboutWindowTest, TellsVersionAndLicenceInBothLanguages)
{
    EXPECT_EQ(window->windowTitle(), u"About Vormel");
    EXPECT_EQ(text("aboutVersion"), u'v' + QString(programVersion));
    EXPECT_TRUE(text("aboutLicence").contains(u"MIT licence"));
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(window->windowTitle(), u"Informazioni su Vormel");
    EXPECT_TRUE(text("aboutLicence").contains(u"Licenza MIT"));
    EXPECT_EQ(fixtures::partOf<QAbstractButton>(*window, "copyAbout").text(), u"Copia");
    EXPECT_EQ(fixtures::partOf<QAbstractButton>(*window, "closeAbout").text(), u"Chiudi");
}

TEST_F(AboutWindowTest, TellsWhatIsInstalledAndWhere)
{
    EXPECT_TRUE(lines().contains(u"Qt: "_s + QString::fromLatin1(qVersion())));
    EXPECT_TRUE(lines().contains(u"libcurl: "_s + curlVersion()));
    EXPECT_TRUE(lines().contains(u"unrar: "_s + *desktop.runner.findTool(u"unrar"_s)));
    EXPECT_EQ(lines().at(3), desktop.web.absence() ? u"Web engine: not installed" : u"Web engine: installed");
}

TEST_F(AboutWindowTest, FollowsTheToolsThatComeAndGo)
{
    engine.tools.remove(u"unrar"_s);
    desktop.tools.look();
    EXPECT_TRUE(lines().contains(u"unrar: not installed"));
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_TRUE(lines().contains(u"unrar: non installato"));
}

TEST_F(AboutWindowTest, CopiesAllOfItInEnglish)
{
    const QString shown = text("aboutSurroundings");
    engine.settings().language.set(AppLanguage::italian);
    fixtures::partOf<QAbstractButton>(*window, "copyAbout").click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Vormel "_s + QString(programVersion) + u'\n' + shown + u'\n');
}

TEST_F(AboutWindowTest, KeysReachTheTextsAndCloseIt)
{
    QStringList order;
    for (int i = 0; i < 3; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    order.sort();
    EXPECT_EQ(order.join(u' '), u"aboutSurroundings closeAbout copyAbout");
    QTest::keyClick(window, Qt::Key_Escape);
    fixtures::turnEventLoop();
    EXPECT_TRUE(window.isNull());
}

} // namespace
} // namespace vormel
