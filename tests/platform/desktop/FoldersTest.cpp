#include "platform/desktop/Folders.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(Folders, OfAProfileLieApartBelowItsRoot)
{
    const Folders folders = Folders::below(u"/profile"_s);
    const QSet<QString> all = {folders.downloads, folders.applicationSupport, folders.configuration, folders.runtime};
    EXPECT_EQ(all.size(), 4);
    for (const QString& folder : all) {
        EXPECT_TRUE(folder.startsWith(u"/profile/")) << folder.toStdString();
        EXPECT_FALSE(folder.endsWith(u'/')) << folder.toStdString();
    }
}

TEST(Folders, OfThisUserAreAbsolute)
{
    const Folders folders = Folders::ofThisUser();
    for (const QString& folder :
         {folders.downloads, folders.applicationSupport, folders.configuration, folders.runtime})
        EXPECT_TRUE(folder.startsWith(u'/')) << folder.toStdString();
}

} // namespace
} // namespace vormel
