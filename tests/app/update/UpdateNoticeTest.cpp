#include "app/update/UpdateNotice.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "fixtures/ScriptedHttpClient.h"
#include "model/AppSettings.h"
#include "platform/desktop/UrlOpener.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QMessageBox>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class OpenedUrls final : public UrlOpener
{
public:
    QList<QUrl> urls;

    void open(const QUrl& url) override { urls << url; }
};

class UpdateNoticeTest : public ::testing::Test
{
protected:
    void findUpdate(const QString& version = u"1.10"_s)
    {
        Q_EMIT updater.updateFound({Version::parse(version).value(), page});
    }
    /// The one box that is open, or null.
    [[nodiscard]] QMessageBox* box() const
    {
        const QList<QMessageBox*> boxes = window.findChildren<QMessageBox*>();
        EXPECT_LE(boxes.size(), 1);
        return boxes.value(0);
    }
    void click(const char* button)
    {
        box()->findChild<QPushButton*>(QString::fromLatin1(button))->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        turnEventLoop();
    }

    const QUrl page{u"https://vormel.example/get"_s};
    Sandbox sandbox;
    FileWriter writer;
    ManualClock clock;
    ScriptedHttpClient client;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
    AppSettings settings{defaults, sandbox.root()};
    FeedUpdater updater{client, defaults, clock, {}, Version::parse(u"1.9"_s).value()};
    OpenedUrls opened;
    QWidget window;
    UpdateNotice notice{updater, settings, opened, window};
};

TEST_F(UpdateNoticeTest, AnUpdateIsToldWithBothVersions)
{
    findUpdate();
    ASSERT_TRUE(box());
    EXPECT_TRUE(box()->isVisible());
    EXPECT_FALSE(box()->isModal());
    EXPECT_EQ(box()->text(), u"A new version is available"_s);
    EXPECT_EQ(box()->informativeText(), u"Vormel 1.10 is available. You have 1.9."_s);
}

TEST_F(UpdateNoticeTest, InItalianToo)
{
    settings.language.set(AppLanguage::italian);
    findUpdate();
    EXPECT_EQ(box()->text(), u"È disponibile una nuova versione"_s);
    EXPECT_EQ(box()->findChild<QPushButton*>(u"download"_s)->text(), u"Scarica"_s);
    EXPECT_EQ(box()->findChild<QPushButton*>(u"later"_s)->text(), u"Più tardi"_s);
}

TEST_F(UpdateNoticeTest, DownloadOpensThePageAndClosesTheBox)
{
    findUpdate();
    click("download");
    EXPECT_EQ(opened.urls, QList<QUrl>{page});
    EXPECT_FALSE(box());
}

TEST_F(UpdateNoticeTest, LaterOpensNothing)
{
    findUpdate();
    click("later");
    EXPECT_TRUE(opened.urls.isEmpty());
    EXPECT_FALSE(box());
}

TEST_F(UpdateNoticeTest, ANewerNoticeTakesThePlaceOfTheOneBefore)
{
    findUpdate();
    Q_EMIT updater.upToDate();
    EXPECT_EQ(box()->text(), u"You're up to date"_s);
    EXPECT_EQ(box()->informativeText(), u"Vormel 1.9 is the newest version."_s);
}

TEST_F(UpdateNoticeTest, AFailureSaysWhatCanBeDone)
{
    Q_EMIT updater.checkFailed(FeedUpdater::Failure::unreachable);
    EXPECT_EQ(box()->text(), u"Couldn't check for updates"_s);
    EXPECT_TRUE(box()->informativeText().contains(u"Check your connection"));
    Q_EMIT updater.checkFailed(FeedUpdater::Failure::unusableAnswer);
    EXPECT_TRUE(box()->informativeText().contains(u"Try again later"));
}

TEST_F(UpdateNoticeTest, AVersionFromOutsideIsNoMarkup)
{
    findUpdate(u"2<img src='file:///x'>"_s);
    EXPECT_FALSE(box()->informativeText().contains(u'<'));
}

} // namespace
