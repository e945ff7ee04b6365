#include "engine/recovery/RevRule.h"

#include "engine/QuietTable.h"
#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

using namespace fixtures::statuses;

struct Member
{
    const char16_t* name;
    DownloadStatus::Kind status;
    ExtractionStatus::Kind extraction = idle;
};

struct Row
{
    const char* name;
    /// The recovery volume that is asked for comes first.
    std::vector<Member> queue;
    bool mayHelp;
};

class RevRule : public ::testing::TestWithParam<Row>, protected fixtures::QuietTable
{
protected:
    ItemPtr add(const Member& member)
    {
        ItemPtr item = QuietTable::add(QString::fromUtf16(member.name), member.status == failed
                                                                            ? DownloadStatus::failure(u"gone"_s)
                                                                            : DownloadStatus(member.status));
        item->setExtractionStatus(member.extraction == ExtractionStatus::failed
                                      ? ExtractionStatus::failure(u"damaged"_s)
                                      : ExtractionStatus(member.extraction));
        return item;
    }
};

const Row rows[] = {
    {"aloneInTheQueue", {{u"m.part1.rev", queued}}, false},
    {"onlyRecoveryVolumes", {{u"m.part1.rev", queued}, {u"m.part2.rev", completed}}, false},
    {"noSetName", {{u"m.rev", queued}, {u"m.rar", queued}}, false},
    {"aSingleArchiveIsNoPart", {{u"m.part1.rev", queued}, {u"m.rar", queued}}, false},
    {"aPlainFileCalledAsTheSetIsNoPart", {{u"m.part1.rev", queued}, {u"m", queued}}, false},

    {"aPartWaits", {{u"m.part1.rev", queued}, {u"m.part1.rar", queued}}, true},
    {"aPartIsResolved", {{u"m.part1.rev", queued}, {u"m.part1.rar", resolving}}, true},
    {"aPartIsExpanded", {{u"m.part1.rev", queued}, {u"m.part1.rar", expanding}}, true},
    {"aPartComesDown", {{u"m.part1.rev", queued}, {u"m.part1.rar", downloading}}, true},
    {"aPartIsPaused", {{u"m.part1.rev", queued}, {u"m.part1.rar", paused}}, true},
    {"aPartIsStopped", {{u"m.part1.rev", queued}, {u"m.part1.rar", stopped}}, true},
    {"aPartHasFailed", {{u"m.part1.rev", queued}, {u"m.part1.rar", failed}}, true},
    {"theOnlyPartIsThere", {{u"m.part1.rev", queued}, {u"m.part1.rar", completed}}, false},
    {"allPartsAreThere", {{u"m.part1.rev", queued}, {u"m.part1.rar", completed}, {u"m.part2.rar", completed}}, false},
    {"oneOfManyIsMissing",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", completed}, {u"m.part2.rar", failed}, {u"m.part3.rar", completed}},
     true},
    {"whateverTheVolumeItselfIsDoing", {{u"m.part1.rev", completed}, {u"m.part1.rar", queued}}, true},
    {"aMissingRecoveryVolumeIsNoMissingPart",
     {{u"m.part1.rev", failed}, {u"m.part2.rev", failed}, {u"m.part1.rar", completed}},
     false},

    {"endingsInAnyLetterCase", {{u"m.PART1.REV", queued}, {u"m.Part2.RAR", queued}}, true},
    {"setsAreToldApartByLetterCase", {{u"m.part1.rev", queued}, {u"M.part1.rar", queued}}, false},
    {"anotherSet", {{u"m.part1.rev", queued}, {u"mm.part1.rar", queued}}, false},
    {"numbersWithZerosAreOfTheSet", {{u"m.part1.rev", queued}, {u"m.part001.rar", queued}}, true},

    {"extracted", {{u"m.part1.rev", queued}, {u"m.part1.rar", completed, done}, {u"m.part2.rar", queued}}, false},
    {"extractedByAnotherPart",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", queued}, {u"m.part2.rar", queued, done}},
     false},
    {"extractedByTheVolumeItself", {{u"m.part1.rev", queued, done}, {u"m.part1.rar", queued}}, false},
    {"extractedByAnotherVolume",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", queued}, {u"m.part2.rev", queued, done}},
     false},
    {"anotherSetIsExtracted",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", queued}, {u"n.part1.rar", completed, done}},
     true},
    {"beingExtracted",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", completed, extracting}, {u"m.part2.rar", failed}},
     true},
    {"beingRepaired",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", completed, repairing}, {u"m.part2.rar", failed}},
     true},
    {"extractionFailed",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", completed, ExtractionStatus::failed}, {u"m.part2.rar", failed}},
     true},
    {"extractionFailedWithAllPartsThere",
     {{u"m.part1.rev", queued}, {u"m.part1.rar", completed, ExtractionStatus::failed}},
     false},
};

} // namespace

TEST_P(RevRule, LetsAVolumeHelpOnlyWhileItCan)
{
    const ItemPtr asked = add(GetParam().queue.front());
    for (std::size_t i = 1; i < GetParam().queue.size(); ++i)
        add(GetParam().queue[i]);
    EXPECT_EQ(shouldDownloadRev(*asked, table), GetParam().mayHelp);
}

INSTANTIATE_TEST_SUITE_P(Rows, RevRule, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });
