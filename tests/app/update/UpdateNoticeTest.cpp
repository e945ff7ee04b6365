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
    void findUpdate(const QString& version = QStringLiteral("1.10"))
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

    const QUrl page{QStringLiteral("https://vormel.example/get")};
    Sandbox sandbox;
    FileWriter writer;
    ManualClock clock;
    ScriptedHttpClient client;
    UserDefaults defaults{sandbox.path(QStringLiteral("preferences.json")), writer};
    AppSettings settings{defaults, sandbox.root()};
    FeedUpdater updater{client, defaults, clock, {}, Version::parse(QStringLiteral("1.9")).value()};
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
    EXPECT_EQ(box()->text(), QStringLiteral("A new version is available"));
    EXPECT_EQ(box()->informativeText(), QStringLiteral("Vormel 1.10 is available. You have 1.9."));
}

TEST_F(UpdateNoticeTest, InItalianToo)
{
    settings.language.set(AppLanguage::italian);
    findUpdate();
    EXPECT_EQ(box()->text(), QStringLiteral("È disponibile una nuova versione"));
    EXPECT_EQ(box()->findChild<QPushButton*>(QStringLiteral("download"))->text(), QStringLiteral("Scarica"));
    EXPECT_EQ(box()->findChild<QPushButton*>(QStringLiteral("later"))->text(), QStringLiteral("Più tardi"));
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
    EXPECT_EQ(box()->text(), QStringLiteral("You're up to date"));
    EXPECT_EQ(box()->informativeText(), QStringLiteral("Vormel 1.9 is the newest version."));
}

TEST_F(UpdateNoticeTest, AFailureSaysWhatCanBeDone)
{
    Q_EMIT updater.checkFailed(FeedUpdater::Failure::unreachable);
    EXPECT_EQ(box()->text(), QStringLiteral("Couldn't check for updates"));
    EXPECT_TRUE(box()->informativeText().contains(u"Check your connection"));
    Q_EMIT updater.checkFailed(FeedUpdater::Failure::unusableAnswer);
    EXPECT_TRUE(box()->informativeText().contains(u"Try again later"));
}

TEST_F(UpdateNoticeTest, AVersionFromOutsideIsNoMarkup)
{
    findUpdate(QStringLiteral("2<img src='file:///x'>"));
    EXPECT_FALSE(box()->informativeText().contains(u'<'));
}

} // namespace
