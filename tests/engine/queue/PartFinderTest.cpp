#include "engine/queue/PartFinder.h"

#include "engine/transfer/ItemPart.h"
#include "fixtures/EngineOnScript.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString name = u"x.rar"_s;
const QString usualPart = u"Downloads/x.rar.download"_s;

/// What a new start of the program finds on disk.
class PartFinderTest : public ::testing::Test
{
protected:
    [[nodiscard]] static ItemPtr item(const char* url)
    {
        auto made = std::make_shared<DownloadItem>(link(QLatin1StringView(url)), ItemId::make());
        made->setFilename(name);
        return made;
    }
    [[nodiscard]] static ItemPtr begun(const char* url)
    {
        ItemPtr made = item(url);
        made->setBytesReceived(1);
        return made;
    }
    /// False if the file system keeps no marks.
    [[nodiscard]] bool leavePartOf(const DownloadItem& owner, const QString& relative) const
    {
        PartFile file(sandbox.write(relative, "abc"), PartFile::Opening::existing);
        PartMarks marks;
        marks.setOwner(owner);
        marks.total = 6;
        file.setMarks(marks);
        return file.isMarked();
    }

    Sandbox sandbox;
    PartFinder finder{DownloadPaths(sandbox.path(u"Downloads"_s))};
};

} // namespace

TEST_F(PartFinderTest, FindsWhatIsMarkedAndWhatItIsTheBeginningOf)
{
    const ItemPtr owner = item("http://h/x.rar");
    if (!leavePartOf(*owner, usualPart))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    const auto found = finder.find(*owner, {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->place, (PartPlace{sandbox.path(usualPart), true}));
    EXPECT_EQ(found->size, 3);
    EXPECT_EQ(found->total, 6);
}

TEST_F(PartFinderTest, GivesNobodyTheFileOfAnother)
{
    if (!leavePartOf(*item("http://h/x.rar"), usualPart))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    const ItemPtr stranger = begun("http://other/x.rar");
    EXPECT_FALSE(finder.find(*stranger, {}));
    EXPECT_FALSE(finder.find(*stranger, sandbox.path(usualPart)));
}

TEST_F(PartFinderTest, BelievesAFileWithoutMarksToBeOneThatHadBegun)
{
    sandbox.write(usualPart, "abc");
    EXPECT_FALSE(finder.find(*item("http://h/x.rar"), {}));
    const auto found = finder.find(*begun("http://h/x.rar"), {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->place, (PartPlace{sandbox.path(usualPart), false}));
}

TEST_F(PartFinderTest, GivesNoFileToTwo)
{
    sandbox.write(usualPart, "abc");
    EXPECT_TRUE(finder.find(*begun("http://h/x.rar"), {}));
    EXPECT_FALSE(finder.find(*begun("http://other/x.rar"), {}));
}

TEST_F(PartFinderTest, FindsALostFileInTheItemsFolderByItsMark)
{
    const ItemPtr owner = item("http://h/x.rar");
    if (!leavePartOf(*owner, u"Downloads/anything.download"_s))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    const auto found = finder.find(*owner, {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->place.path, sandbox.path(u"Downloads/anything.download"_s));
}

TEST_F(PartFinderTest, FollowsNoLink)
{
    const QString precious = sandbox.write(u"precious"_s, "keep");
    sandbox.write(u"Downloads/other"_s, "");
    ASSERT_TRUE(QFile::link(precious, sandbox.path(usualPart)));
    EXPECT_FALSE(finder.find(*begun("http://h/x.rar"), {}));
    EXPECT_FALSE(finder.find(*begun("http://h/x.rar"), sandbox.path(usualPart)));
}

TEST(PartInUse, IsNotOpenedForAnotherItemThoughItIsStillEmpty)
{
    const Sandbox sandbox;
    const QString usual = sandbox.write(usualPart, "");
    const DownloadItem item(link(u"http://h/x.rar"_s), ItemId::make());
    const OpenedPart part = openPart(item, usual, {usual});
    ASSERT_TRUE(part.file);
    EXPECT_EQ(part.file->path(), sandbox.path(u"Downloads/x.rar (1).download"_s));
    const OpenedPart free = openPart(item, usual, {});
    ASSERT_TRUE(free.file);
    EXPECT_EQ(free.file->path(), usual);
}

TEST(PartInUse, GetsANumberAlsoWhereTheNameIsAsLongAsNamesMayBe)
{
    const Sandbox sandbox;
    const QString usual = sandbox.write(QString(246, u'n') + u".download"_s, "somebody's");
    const DownloadItem item(link(u"http://h/x.rar"_s), ItemId::make());
    const OpenedPart part = openPart(item, usual, {});
    ASSERT_TRUE(part.file);
    EXPECT_TRUE(part.file->path().endsWith(u"n (1).download"_s));
}
