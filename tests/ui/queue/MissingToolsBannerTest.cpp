#include "ui/queue/MissingToolsBanner.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Languages.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"

#include <QLabel>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

TEST(MissingToolsBanner, NamesWhatIsMissingInBothLanguages)
{
    EXPECT_EQ(missingToolsText({false, false, true}, english),
              u"unrar not installed — archive extraction won't work. Install in Settings → Available Tools.");
    EXPECT_EQ(missingToolsText({true, false, false}, english),
              u"7-Zip (7zz) not installed — archive extraction won't work. Install in Settings → Available Tools.");
    EXPECT_EQ(missingToolsText({false, false, false}, english),
              u"unrar and 7-Zip (7zz) not installed — archive extraction won't work. Install in Settings → Available "
              u"Tools.");
    EXPECT_EQ(missingToolsText({false, false, false}, italian),
              u"unrar e 7-Zip (7zz) non installato — l'estrazione degli archivi non funzionerà. Installa in "
              u"Impostazioni → Strumenti disponibili.");
}

TEST(MissingToolsBanner, SaysNothingOfTheRepairTool)
{
    EXPECT_EQ(missingToolsText({true, false, true}, english), u"");
}

TEST(MissingToolsBanner, StandsBelowTheListUntilTheToolsAreThere)
{
    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop(engine);
    engine.tools.add(u"7za"_s);
    desktop.tools.look();
    DownloadQueueView page(desktop.ports());
    page.resize(700, 400);
    page.show();
    fixtures::turnEventLoop();
    auto& banner = fixtures::partOf<QWidget>(page, "missingToolsBanner");
    auto& text = fixtures::partOf<QLabel>(page, "missingToolsText");
    EXPECT_TRUE(banner.isVisible());
    EXPECT_EQ(banner.geometry().bottom(), page.rect().bottom());
    EXPECT_TRUE(text.text().startsWith(u"unrar not installed"));
    engine.settings().language.set(italian);
    EXPECT_TRUE(text.text().startsWith(u"unrar non installato"));
    engine.tools.add(u"unrar"_s);
    desktop.tools.look();
    EXPECT_FALSE(banner.isVisible());
}

} // namespace
} // namespace vormel
