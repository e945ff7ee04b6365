#include "app/attention/GroupEnd.h"

#include "engine/groups/GroupNames.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace vormel::fixtures::statuses;

namespace {

class GroupEndTest : public ::testing::Test
{
protected:
    static ItemPtr item(const QString& name, const DownloadStatus& status)
    {
        auto made = std::make_shared<DownloadItem>(link(u"https://files.example/"_s + name), ItemId::make());
        made->setStatus(status);
        if (status == completed)
            made->setLocalPath(u"/downloads/show/"_s + name);
        return made;
    }
    [[nodiscard]] std::optional<GroupEnd> end(const QString& id, const std::vector<ItemPtr>& items)
    {
        return endOf({id, items}, engine.manager().groupNames(), engine.settings(), engine.manager().questions());
    }
    [[nodiscard]] std::optional<GroupEnd> endOfSet() { return end(u"show"_s, set); }

    EngineOnScript engine;
    const ItemPtr first = item(u"show.part1.rar"_s, completed);
    const ItemPtr second = item(u"show.part2.rar"_s, completed);
    const std::vector<ItemPtr> set{first, second};
};

TEST_F(GroupEndTest, AFileThatHasComeIsDownloaded)
{
    const ItemPtr file = item(u"a.bin"_s, completed);
    EXPECT_EQ(end(u"a.bin"_s, {file}),
              (GroupEnd{GroupEnd::downloaded, u"a.bin"_s, u"/downloads/show/a.bin"_s, {}, file->id()}));
}

TEST_F(GroupEndTest, ASetHasTheNameThatTheUserGaveIt)
{
    engine.manager().renameGroup(u"show"_s, u"My show"_s);
    EXPECT_EQ(endOfSet(),
              (GroupEnd{GroupEnd::downloaded, u"My show"_s, u"/downloads/show/show.part1.rar"_s, {}, first->id()}));
}

TEST_F(GroupEndTest, WhatMayGoOnHasNotEnded)
{
    for (const auto status : {queued, resolving, downloading, paused, stopped, expanding}) {
        second->setStatus(status);
        EXPECT_EQ(endOfSet(), std::nullopt) << status;
    }
    second->setStatus(completed);
    for (const auto extraction : {extracting, repairing}) {
        first->setExtractionStatus(extraction);
        EXPECT_EQ(endOfSet(), std::nullopt) << extraction;
    }
    first->setExtractionStatus(idle);
    second->setStatus(DownloadStatus::failure(u"gone"_s));
    second->setRecoveryCountdown(3);
    EXPECT_EQ(endOfSet(), std::nullopt);
}

TEST_F(GroupEndTest, WhatWaitsForItsPasswordHasNotEnded)
{
    Questions& questions = engine.manager().questions();
    questions.ask(PendingExtractionPassword{ItemId::make(), u"another"_s});
    questions.ask(PendingExtractionPassword{first->id(), u"show"_s});
    EXPECT_EQ(endOfSet(), std::nullopt);
    questions.cancelExtractionPassword();
    EXPECT_EQ(endOfSet(), std::nullopt);
    questions.cancelExtractionPassword();
    EXPECT_NE(endOfSet(), std::nullopt);
}

TEST_F(GroupEndTest, TheFirstFailureSpeaksForItsSet)
{
    second->setStatus(DownloadStatus::failure(u"gone"_s));
    EXPECT_EQ(endOfSet(), (GroupEnd{GroupEnd::downloadFailed, u"show"_s, {}, u"gone"_s, second->id()}));
}

TEST_F(GroupEndTest, WhatCouldBeExtractedIsWholeThoughAPartFailed)
{
    first->setExtractionStatus(done);
    second->setStatus(DownloadStatus::failure(u"gone"_s));
    EXPECT_EQ(endOfSet(), (GroupEnd{GroupEnd::extracted, u"show"_s, u"/downloads/show"_s, {}, first->id()}));
}

TEST_F(GroupEndTest, AFailedExtractionSaysWhy)
{
    first->setExtractionStatus(ExtractionStatus::failure(u"bad volume"_s));
    second->setStatus(DownloadStatus::failure(u"gone"_s));
    EXPECT_EQ(endOfSet(), (GroupEnd{GroupEnd::extractionFailed, u"show"_s, {}, u"bad volume"_s, first->id()}));
}

TEST_F(GroupEndTest, WhatIsExtractedLiesWhereTheSettingsAndTheNameSay)
{
    first->setExtractionStatus(done);
    engine.manager().renameGroup(u"show"_s, u"a/b"_s);
    EXPECT_EQ(endOfSet()->place, engine.settings().downloadFolderPath.value() + u"/a-b"_s);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(u"/extracted"_s);
    EXPECT_EQ(endOfSet()->place, u"/extracted/a-b"_s);
    engine.manager().renameGroup(u"show"_s, {});
    EXPECT_EQ(endOfSet()->place, u"/extracted"_s);
}

} // namespace
