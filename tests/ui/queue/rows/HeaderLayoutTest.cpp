#include "ui/queue/rows/HeaderLayout.h"

#include "kit/TextStyle.h"

#include <QApplication>
#include <QFontMetrics>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

HeaderContent fullHeader(const QString& title, RowLines lines)
{
    HeaderContent content;
    content.title = title;
    content.lines = lines;
    content.buttons = {RowButton::pauseGroup,  RowButton::stopGroup,   RowButton::repairGroup,
                       RowButton::verifyGroup, RowButton::resyncGroup, RowButton::removeGroup};
    content.summaryText = u"Completed"_s;
    content.extractionText = u"·  Extraction failed: "_s + title;
    return content;
}

TEST(HeaderLayout, NothingOverlapsOrLeavesTheHeaderAtAnyWidthFontAndDirection)
{
    for (const double scale : {0.8, 1.0, 1.5, 2.0}) {
        const RowMetrics metrics(scaledFont(QApplication::font(), scale));
        for (const RowLines lines : {RowLines(), RowLines(RowLine::progress), RowLine::progress | RowLine::lack}) {
            for (int width = 340; width <= 1400; width += 53) {
                const QRect row(3, 50, width, metrics.height(lines));
                const HeaderContent content = fullHeader(u"Long.name."_s.repeated(30), lines);
                for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                    const std::vector<QRect> rects = HeaderLayout(metrics, content, row, direction).shown();
                    for (std::size_t i = 0; i < rects.size(); ++i) {
                        ASSERT_TRUE(row.contains(rects[i])) << i << " at width " << width;
                        for (std::size_t j = i + 1; j < rects.size(); ++j)
                            ASSERT_FALSE(rects[i].intersects(rects[j])) << i << " on " << j << " at width " << width;
                    }
                }
            }
        }
    }
}

TEST(HeaderLayout, WhatBecameOfTheArchiveStandsBehindTheSummary)
{
    const RowMetrics metrics(QApplication::font());
    const QRect row(0, 0, 700, metrics.height({}));
    HeaderContent content = fullHeader(u"a"_s, {});
    const HeaderLayout layout(metrics, content, row, Qt::LeftToRight);
    EXPECT_EQ(layout.extraction.top(), layout.summary.top());
    EXPECT_GT(layout.extraction.left(), layout.summary.right());
    EXPECT_EQ(layout.extraction.right(), row.right() - RowMetrics::marginX);
    content.extractionText.clear();
    EXPECT_TRUE(HeaderLayout(metrics, content, row, Qt::LeftToRight).extraction.isEmpty());
}

TEST(HeaderLayout, WhatIsLackingIsTheLastLine)
{
    const RowMetrics metrics(QApplication::font());
    const RowLines lines = RowLine::progress | RowLine::lack;
    const QRect row(0, 0, 700, metrics.height(lines));
    const HeaderLayout layout(metrics, fullHeader(u"a"_s, lines), row, Qt::LeftToRight);
    EXPECT_GT(layout.lack.top(), layout.bytes.bottom());
    EXPECT_EQ(layout.lack.bottom(), row.bottom() - RowMetrics::marginY);
    EXPECT_EQ(layout.lackIcon.left(), layout.summary.left());
    EXPECT_EQ(layout.lack.right(), row.right() - RowMetrics::marginX);
}

TEST(HeaderLayout, TheTitleIsNoWiderThanItsText)
{
    const RowMetrics metrics(QApplication::font());
    const QRect row(0, 0, 700, metrics.height({}));
    const HeaderLayout layout(metrics, fullHeader(u"a"_s, {}), row, Qt::LeftToRight);
    EXPECT_LE(layout.title.width(), QFontMetrics(metrics.nameFont).horizontalAdvance(u'a') + 1);
}

TEST(HeaderLayout, FiguresHaveTheirColumnsAtTheEnd)
{
    const RowMetrics metrics(QApplication::font());
    const QRect row(0, 0, 800, metrics.height(RowLine::progress));
    const HeaderLayout layout(metrics, fullHeader(u"a"_s, RowLine::progress), row, Qt::LeftToRight);
    EXPECT_GE(layout.bytes.width(), 160);
    EXPECT_GE(layout.speed.width(), 80);
    EXPECT_EQ(layout.speed.right() + 1, 800 - RowMetrics::marginX);
}

} // namespace
} // namespace vormel
