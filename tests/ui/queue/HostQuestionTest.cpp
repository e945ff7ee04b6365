#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"
#include "ui/sheets/HostButton.h"
#include "ui/sheets/HostSelectionSheetView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using fixtures::turnEventLoop;
using fixtures::waitUntil;

/// A container of three links on two hosts is opened, and the page asks which host it shall be.
class HostQuestionTest : public ::testing::Test
{
protected:
    HostQuestionTest() { page.show(); }
    void openContainer()
    {
        engine.manager().addURLs({link(u"https://container.example/c/1"_s)}, std::nullopt);
        turnEventLoop();
        const std::variant<std::vector<Link>, ContainerError> links =
            std::vector{link(u"http://other.example/1"_s), link(u"http://terabytez.example/1"_s),
                        link(u"http://terabytez.example/2"_s)};
        log->containers.back().answer->deliver(links);
        turnEventLoop();
    }
    HostSelectionSheetView* sheet()
    {
        for (auto* candidate : page.findChildren<HostSelectionSheetView*>()) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(*sheet(), name);
    }
    void click(const char* name) { QTest::mouseClick(&part<QAbstractButton>(name), Qt::LeftButton); }
    QStringList queue()
    {
        QStringList all;
        for (const ItemPtr& item : engine.manager().items())
            all << item->originalURL().absoluteString();
        return all;
    }

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

TEST_F(HostQuestionTest, TellsTheHostsAndTheirFilesInBothLanguages)
{
    openContainer();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(sheet()->width(), 480);
    EXPECT_EQ(part<QLabel>("chooserTitle").text(), u"Choose Download Server");
    EXPECT_EQ(part<QLabel>("chooserText").text(),
              u"These links are available on 2 hosts. Select the one you have a premium account for.");
    EXPECT_EQ(part<HostButton>("host0").accessibleName(), u"Terabytez, 2 files");
    EXPECT_EQ(part<HostButton>("host1").accessibleName(), u"other.example, 1 file");
    EXPECT_EQ(part<QPushButton>("addAllHosts").text(), u"Add all hosts");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(sheet()->windowTitle(), u"Scegli il server di download");
    EXPECT_EQ(part<QLabel>("chooserText").text(),
              u"Questi link sono disponibili su 2 host. Scegli quello per cui hai un account premium.");
    EXPECT_EQ(part<HostButton>("host0").accessibleName(), u"Terabytez, 2 files");
    EXPECT_EQ(part<QPushButton>("addAllHosts").text(), u"Aggiungi tutti gli host");
    EXPECT_EQ(part<QPushButton>("cancelChoice").text(), u"Annulla");
}

TEST_F(HostQuestionTest, AddsTheLinksOfTheChosenHost)
{
    openContainer();
    click("host0");
    EXPECT_EQ(queue(), (QStringList{u"http://terabytez.example/1"_s, u"http://terabytez.example/2"_s}));
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    EXPECT_EQ(sheet(), nullptr);
}

TEST_F(HostQuestionTest, AddsTheLinksOfAllHosts)
{
    openContainer();
    click("addAllHosts");
    EXPECT_EQ(queue().size(), 3);
}

TEST_F(HostQuestionTest, CancellingOrClosingLeavesNothingInTheQueue)
{
    openContainer();
    click("cancelChoice");
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    openContainer();
    ASSERT_NE(sheet(), nullptr);
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    openContainer();
    ASSERT_NE(sheet(), nullptr);
    sheet()->close();
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
}

TEST_F(HostQuestionTest, LetsThePasswordOfAnArchiveBeTypedToItsEnd)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    const ItemPtr archive = engine.add(u"http://h/x.rar"_s);
    archive->setLocalPath(engine.sandbox.write(u"Downloads/x.rar"_s, "x"));
    archive->setStatus(DownloadStatus::completed);
    engine.manager().commands().retryExtraction(archive->id());
    const auto passwordSheet = [this] { return page.findChild<ArchivePasswordSheetView*>(); };
    ASSERT_TRUE(waitUntil([&] { return passwordSheet() != nullptr; }));
    fixtures::partOf<QLineEdit>(*passwordSheet(), "archivePassword").setText(u"half"_s);
    openContainer();
    ASSERT_NE(passwordSheet(), nullptr);
    EXPECT_EQ(fixtures::partOf<QLineEdit>(*passwordSheet(), "archivePassword").text(), u"half");
    EXPECT_EQ(sheet(), nullptr);
    passwordSheet()->reject();
    EXPECT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
}

TEST_F(HostQuestionTest, WaitsWhileAnotherSheetIsOpen)
{
    page.showAddURLs();
    openContainer();
    EXPECT_EQ(sheet(), nullptr);
    page.findChild<AddURLView*>()->reject();
    EXPECT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
    page.showAddURLs(); // and the other way round
    EXPECT_EQ(page.findChildren<QDialog*>().size(), 1);
}

TEST_F(HostQuestionTest, WaitsUntilThePageIsShowing)
{
    page.hide();
    openContainer();
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(engine.manager().questions().pendingHostSelection());
    page.show();
    EXPECT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
}

TEST_F(HostQuestionTest, TheSheetGoesWhenTheQuestionIsTakenBack)
{
    openContainer();
    engine.manager().questions().cancelHostSelection();
    EXPECT_EQ(sheet(), nullptr);
}

} // namespace
} // namespace vormel
