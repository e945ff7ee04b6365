#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::waitUntil;

class PasswordQuestionTest : public ::testing::Test, protected fixtures::ArchiveStep
{
protected:
    PasswordQuestionTest()
    {
        engine.tools.add(u"unrar"_s, "case \"$*\" in *-pright*) exit 0;; *) exit 11;; esac");
        page.show();
    }
    ArchivePasswordSheetView* sheet()
    {
        const auto sheets = page.findChildren<ArchivePasswordSheetView*>();
        for (ArchivePasswordSheetView* candidate : sheets) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }
    /// Lets the archive be tried, and gives the sheet that asks for its password.
    ArchivePasswordSheetView& askFor(const ItemPtr& item)
    {
        run(item);
        EXPECT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
        return *sheet();
    }
    static void answer(ArchivePasswordSheetView& sheet, const QString& password)
    {
        auto& field = fixtures::partOf<QLineEdit>(sheet, "archivePassword");
        EXPECT_EQ(field.text(), u"");
        QTest::keyClicks(&field, password);
        QTest::keyClick(&field, Qt::Key_Return);
    }
    static QString title(const ArchivePasswordSheetView& sheet)
    {
        return fixtures::partOf<QLabel>(sheet, "passwordTitle").text();
    }

    fixtures::FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

TEST_F(PasswordQuestionTest, AsksAgainWithAFreshFormUntilThePasswordIsRight)
{
    const ItemPtr item = onDisk(u"m.part1.rar"_s);
    ArchivePasswordSheetView& first = askFor(item);
    EXPECT_EQ(first.windowModality(), Qt::WindowModal);
    EXPECT_EQ(title(first), u"Archive Password Required");
    answer(first, u"wrong"_s);
    for (int attempt = 0; attempt < 2; ++attempt) { // the second question equals the first
        ASSERT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
        EXPECT_EQ(title(*sheet()), u"Wrong Password");
        answer(*sheet(), attempt == 0 ? u"wrong"_s : u"right"_s);
    }
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
    EXPECT_EQ(sheet(), nullptr);
}

TEST_F(PasswordQuestionTest, ClosingTheSheetLeavesTheArchive)
{
    const ItemPtr item = onDisk(u"x.rar"_s);
    askFor(item).close();
    EXPECT_FALSE(question());
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PasswordQuestionTest, TheNextArchiveIsAskedForWhenTheFirstIsAnswered)
{
    const ItemPtr one = onDisk(u"one.rar"_s);
    const ItemPtr other = onDisk(u"other.rar"_s);
    ArchivePasswordSheetView& first = askFor(one);
    run(other);
    ASSERT_TRUE(waitUntil([&] { return other->extractionStatus() == ExtractionStatus::idle; }));
    EXPECT_EQ(sheet(), &first);
    QTest::keyClick(&first, Qt::Key_Escape);
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(fixtures::partOf<QLabel>(*sheet(), "archiveName").text(), u"other.rar");
}

TEST_F(PasswordQuestionTest, TheSheetGoesWhenItsQuestionIsTakenBack)
{
    const ItemPtr item = onDisk(u"x.rar"_s);
    const ItemPtr other = onDisk(u"y.rar"_s);
    askFor(item);
    run(other);
    ASSERT_TRUE(waitUntil([&] { return other->extractionStatus() == ExtractionStatus::idle; }));
    engine.manager().questions().cancelExtractionPassword();
    ASSERT_TRUE(question().has_value()); // the closing of the first sheet does not cancel the second question
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(fixtures::partOf<QLabel>(*sheet(), "archiveName").text(), u"y.rar");
}

TEST_F(PasswordQuestionTest, APageThatIsBuiltLaterAsksToo)
{
    askFor(onDisk(u"x.rar"_s));
    DownloadQueueView late(desktop.ports());
    fixtures::turnEventLoop();
    EXPECT_EQ(late.findChild<ArchivePasswordSheetView*>(), nullptr); // not before it is on the screen
    late.show();
    EXPECT_TRUE(waitUntil([&late] { return late.findChild<ArchivePasswordSheetView*>() != nullptr; }));
}

} // namespace
} // namespace vormel
