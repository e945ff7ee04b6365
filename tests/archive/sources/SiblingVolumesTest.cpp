#include "archive/sources/SiblingVolumes.h"

#include "fixtures/Sandbox.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(SiblingVolumes, AreAllVolumesWhoseNamesBeginLikeTheSet)
{
    const fixtures::Sandbox sandbox;
    QSet<QString> expected;
    for (const char* name : {"a.part01.rar", "a.part02.rar", "a.part03.rev", "ab.part01.rar", "a.PART04.RAR"})
        expected << sandbox.write(QString::fromUtf8(name), "x");
    for (const char* name : {"A.part05.rar", "b.part01.rar", "a.txt", "a.rar.txt"})
        sandbox.write(QString::fromUtf8(name), "x");
    const QStringList found = siblingVolumes(sandbox.path(u"a.part01.rar"_s));
    EXPECT_EQ(QSet<QString>(found.begin(), found.end()), expected);
    EXPECT_EQ(found.size(), expected.size());
}

TEST(SiblingVolumes, ALoneArchiveHasNone)
{
    const fixtures::Sandbox sandbox;
    sandbox.write(u"a.part1.rar"_s, "x");
    EXPECT_EQ(siblingVolumes(sandbox.write(u"a.rar"_s, "x")), QStringList());
}

TEST(SiblingVolumes, AFolderThatCannotBeListedHasNone)
{
    EXPECT_EQ(siblingVolumes(u"/no/such/folder/a.part1.rar"_s), QStringList());
}

} // namespace
} // namespace vormel
