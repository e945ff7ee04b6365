#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadPasswordTest : public ::testing::Test, protected ArchiveStep
{};

} // namespace

TEST_F(PostDownloadPasswordTest, AsksForThePasswordUntilItIsRight)
{
    engine.tools.add(u"unrar"_s, "case \"$*\" in *-pright*) exit 0;; *) exit 11;; esac");
    const ItemPtr item = onDisk(u"m.part1.rar"_s);
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    EXPECT_EQ(*question(), (PendingExtractionPassword{item->id(), u"m"_s, false}));
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
    for (int attempt = 0; attempt < 2; ++attempt) {
        engine.manager().questions().submitExtractionPassword(u"wrong"_s);
        EXPECT_FALSE(question());
        ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
        EXPECT_TRUE(question()->wasWrongPassword);
    }
    engine.manager().questions().submitExtractionPassword(u"right"_s);
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadPasswordTest, TakesAnArchiveForDamagedThatTheSameAnswerDoesNotOpenTwice)
{
    engine.tools.add(u"7zz"_s, "echo 'ERROR: Data Error in encrypted file. Wrong password? : movie.mkv'; exit 2");
    const ItemPtr item = onDisk(u"x.7z"_s);
    run(item);
    for (const char* answer : {"one", "other"}) {
        ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
        engine.manager().questions().submitExtractionPassword(QString::fromLatin1(answer));
    }
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    engine.manager().questions().submitExtractionPassword(u"one"_s);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(item->extractionStatus().message().contains(u"Data Error"_s));
    EXPECT_FALSE(question());
}

TEST_F(PostDownloadPasswordTest, AsksFromTheBeginningWhenADamagedArchiveIsTriedAgain)
{
    engine.tools.add(u"7zz"_s, "echo 'ERROR: Data Error in encrypted file. Wrong password? : movie.mkv'; exit 2");
    const ItemPtr item = onDisk(u"x.7z"_s);
    for (int round = 0; round < 2; ++round) {
        run(item);
        for (int answer = 0; answer < 2; ++answer) {
            ASSERT_TRUE(waitUntil([&] { return question().has_value(); })) << round << answer;
            engine.manager().questions().submitExtractionPassword(u"one"_s);
        }
        ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    }
}

TEST_F(PostDownloadPasswordTest, LeavesTheArchiveWhenThePasswordIsNotTold)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    EXPECT_EQ(question()->archiveName, u"x.rar");
    engine.manager().questions().cancelExtractionPassword();
    EXPECT_FALSE(question());
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadPasswordTest, AsksForOnePasswordAfterTheOther)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    const ItemPtr one = onDisk(u"one.rar"_s);
    const ItemPtr other = onDisk(u"other.rar"_s);
    run(one);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    run(other);
    ASSERT_TRUE(waitUntil([&] { return other->extractionStatus() == ExtractionStatus::idle; }));
    run(one); // asked already
    ASSERT_TRUE(waitUntil([&] { return one->extractionStatus() == ExtractionStatus::idle; }));
    EXPECT_EQ(question()->itemID, one->id());
    engine.manager().questions().cancelExtractionPassword();
    EXPECT_EQ(question()->itemID, other->id());
    engine.manager().questions().cancelExtractionPassword();
    EXPECT_FALSE(question());
}

TEST_F(PostDownloadPasswordTest, TakesTheQuestionBackWhenTheArchiveIsRemoved)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    int changes = 0;
    QObject::connect(&engine.manager(), &DownloadManager::changed, &engine.manager(), [&changes] { ++changes; });
    engine.manager().commands().removeItems({item->id()});
    EXPECT_FALSE(question());
    EXPECT_EQ(changes, 1);
}

TEST_F(PostDownloadPasswordTest, KeepsAnAnswerThatIsGivenWhileTheArchiveIsTriedWithoutIt)
{
    engine.tools.add(u"unrar"_s, "case \"$*\" in *-pX*) exit 0;; esac; " + waitForGo() + "; exit 11");
    const ItemPtr item = onDisk(u"x.rar"_s);
    go();
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    halt();
    run(item);
    ASSERT_TRUE(waitUntil([&] { return engine.tools.calls(u"unrar"_s).size() == 2; }));
    engine.manager().questions().submitExtractionPassword(u"X"_s);
    go();
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
    EXPECT_FALSE(question());
}
