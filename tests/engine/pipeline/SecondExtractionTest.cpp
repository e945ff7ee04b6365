#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/Sighting.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// A set with a password, which unpacks only once it was repaired.
class SecondExtractionTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        const QByteArray mark = engine.sandbox.path(u"repaired"_s).toUtf8();
        engine.tools.add(u"unrar"_s, "case \"$*\" in *sesame*) ;; *) exit 11;; esac\n"
                                     "if [ -e '" +
                                         mark + "' ]; then printf ' 42%%\\r'; exit 0; fi\n" +
                                         "printf ' 13%%\\r'; exit 3");
        engine.tools.add(u"rar"_s, waitForGo() + "; touch '" + mark + "'");
        archive = onDisk(u"m.part1.rar"_s);
        run(archive);
        ASSERT_TRUE(waitUntil([this] { return question().has_value(); }));
    }
    [[nodiscard]] bool unpacks()
    {
        engine.manager().questions().submitExtractionPassword(u"sesame"_s);
        if (!reaches(archive, ExtractionStatus::repairing))
            return false;
        go();
        return waitUntil([this] { return archive->extractionStatus() != ExtractionStatus::repairing; }) &&
               archive->extractionStatus() == ExtractionStatus::done;
    }

    ItemPtr archive;
};

} // namespace

TEST_F(SecondExtractionTest, TakesThePasswordOfTheFirst)
{
    EXPECT_TRUE(unpacks());
    EXPECT_FALSE(question());
    ASSERT_EQ(engine.tools.calls(u"unrar"_s).size(), 3);
    EXPECT_EQ(engine.tools.calls(u"unrar"_s)[2].filter(u"sesame"_s).size(), 1);
}

TEST_F(SecondExtractionTest, ShowsNoProgress)
{
    const Sighting first(engine.manager(), [this] { return archive->extractionProgress() == 0.13; });
    const Sighting second(engine.manager(), [this] { return archive->extractionProgress() == 0.42; });
    EXPECT_TRUE(unpacks());
    EXPECT_TRUE(first.hasCome());
    EXPECT_FALSE(second.hasCome());
}

TEST_F(SecondExtractionTest, CountsItsTimeFromTheRepair)
{
    engine.manager().questions().submitExtractionPassword(u"sesame"_s);
    EXPECT_EQ(archive->extractionStartedAt(), engine.clock.wallNow());
    engine.clock.advance(7s);
    ASSERT_TRUE(reaches(archive, ExtractionStatus::repairing));
    EXPECT_EQ(archive->extractionStartedAt(), engine.clock.wallNow());
    go();
    EXPECT_TRUE(reaches(archive, ExtractionStatus::done));
    EXPECT_EQ(archive->extractionStartedAt(), engine.clock.wallNow());
}
