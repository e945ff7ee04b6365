#include "ui/accounts/PremiumBlock.h"

#include "fixtures/Contrast.h"
#include "fixtures/ManualClock.h"
#include "kit/TagLabel.h"
#include "kit/Theme.h"
#include "ui/Part.h"
#include "ui/accounts/Plans.h"

#include <QLabel>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::gibibyte;

const QLocale usEnglish(QLocale::English, QLocale::UnitedStates);

QDateTime lastOf2026()
{
    return {QDate(2026, 12, 31), QTime(12, 0)};
}

struct Details
{
    PremiumAccountInfo info;
    QString english;
    QString italian;
};

TEST(PremiumDetails, TellWhatIsKnownAndNothingElse)
{
    const std::vector<Details> rows{
        {{u"Free"_s, {}, {}, {}}, u""_s, u""_s},
        {{u"Gold"_s, lastOf2026(), {}, {}}, u"Expires Dec 31, 2026"_s, u"Expires Dec 31, 2026"_s},
        {{u"Gold"_s, {}, 2 * gibibyte, {}}, u"· 2 GB traffic"_s, u"· 2 GB traffico"_s},
        {{u"Gold"_s, {}, 2 * gibibyte, 5 * gibibyte}, u"· 2 GB / 5 GB traffic"_s, u"· 2 GB / 5 GB traffico"_s},
        {{u"Gold"_s, {}, {}, 5 * gibibyte}, u""_s, u""_s},
        {{u"Gold"_s, lastOf2026(), gibibyte, {}},
         u"Expires Dec 31, 2026 · 1 GB traffic"_s,
         u"Expires Dec 31, 2026 · 1 GB traffico"_s},
    };
    for (const Details& row : rows) {
        EXPECT_EQ(premiumDetails(row.info, AppLanguage::english, usEnglish), row.english);
        EXPECT_EQ(premiumDetails(row.info, AppLanguage::italian, usEnglish), row.italian);
    }
}

TEST(PremiumBlock, APlanHasExpiredOnceItsEndLiesBeforeNow)
{
    const WallTime now(std::chrono::seconds(1'800'000'000));
    const auto endingAt = [](qint64 milliseconds) {
        return PremiumAccountInfo{u"Gold"_s, QDateTime::fromMSecsSinceEpoch(milliseconds), {}, {}};
    };
    EXPECT_TRUE(isExpired(endingAt(1'799'999'999'999), now));
    EXPECT_FALSE(isExpired(endingAt(1'800'000'000'000), now));
    EXPECT_FALSE(isExpired(endingAt(1'800'000'000'001), now));
    EXPECT_FALSE(isExpired({u"Gold"_s, {}, {}, {}}, now));
}

class PremiumBlockTest : public ::testing::Test
{
protected:
    void show(const std::optional<QDateTime>& expiresAt)
    {
        block.showInfo({u"Premium"_s, expiresAt, {}, {}}, AppLanguage::english, clock.wallNow());
        block.resize(400, 30);
        block.show();
    }
    TagLabel& plan() { return fixtures::partOf<TagLabel>(block, "premiumPlan"); }
    /// Left of the word, inside of the round corner.
    QColor ground() { return plan().grab().toImage().pixelColor(3, plan().height() / 2); }
    static QColor touchOf(Tint tint)
    {
        const QPalette colors = QApplication::palette();
        return fixtures::under(colors.color(QPalette::Base), Theme(colors).color(tint), 0.15);
    }

    fixtures::ManualClock clock;
    PremiumBlock block{nullptr};
};

TEST_F(PremiumBlockTest, ShowsThePlanInBoldOnGreen)
{
    show(std::nullopt);
    EXPECT_EQ(plan().text(), u"Premium");
    EXPECT_TRUE(plan().font().bold());
    EXPECT_EQ(ground(), touchOf(Tint::green));
}

TEST_F(PremiumBlockTest, AnExpiredPlanLiesOnRed)
{
    const auto now = std::chrono::time_point_cast<std::chrono::milliseconds>(clock.wallNow()).time_since_epoch();
    show(QDateTime::fromMSecsSinceEpoch(now.count() - 1));
    EXPECT_EQ(ground(), touchOf(Tint::red));
    show(QDateTime::fromMSecsSinceEpoch(now.count() + 1000));
    EXPECT_EQ(ground(), touchOf(Tint::green));
}

} // namespace
} // namespace vormel
