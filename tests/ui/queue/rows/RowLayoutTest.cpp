#include "ui/queue/rows/RowLayout.h"

#include "kit/TextStyle.h"

#include <QApplication>
#include <QFontMetrics>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QList<RowContent> contents()
{
    QList<RowContent> all;
    for (RowLines::Int lines = 0; lines < 32; ++lines) {
        for (const QString& name : {u"a"_s, u"Long.name."_s.repeated(30)}) {
            for (const QString& status : {u"Paused"_s, u"Error: it broke "_s.repeated(20)}) {
                for (const bool hasBar : {false, true}) {
                    RowContent content;
                    content.lines = RowLines::fromInt(lines);
                    content.name = name;
                    content.statusText = status;
                    content.hasExtractionBar = hasBar;
                    content.extractionText = u"Verifica / estrazione…"_s;
                    content.elapsedText = u"12:34"_s;
                    content.retryText = u"Riprova"_s;
                    content.isMember = lines % 2 == 1;
                    content.buttons = itemButtons(lines % 3 == 0 ? DownloadStatus::paused : DownloadStatus::stopped);
                    all << content;
                }
            }
        }
    }
    return all;
}

/// Everything stands in the row, and nothing on anything else.
void expectSound(const RowLayout& layout, const QRect& row)
{
    const std::vector<QRect> rects = layout.shown();
    for (std::size_t i = 0; i < rects.size(); ++i) {
        ASSERT_TRUE(row.contains(rects[i])) << i << " at width " << row.width();
        for (std::size_t j = i + 1; j < rects.size(); ++j)
            ASSERT_FALSE(rects[i].intersects(rects[j])) << i << " on " << j << " at width " << row.width();
    }
}

TEST(RowLayout, NothingOverlapsOrLeavesTheRowAtAnyWidthFontAndDirection)
{
    for (const double scale : {0.8, 1.0, 1.5, 2.0}) {
        const RowMetrics metrics(scaledFont(QApplication::font(), scale));
        for (const RowContent& content : contents()) {
            for (int width = 300; width <= 2000; width += 85) {
                const QRect row(3, 50, width, metrics.height(content.lines));
                expectSound(RowLayout(metrics, content, row, Qt::LeftToRight), row);
                expectSound(RowLayout(metrics, content, row, Qt::RightToLeft), row);
            }
        }
    }
}

TEST(RowLayout, TextLinesAreHighEnoughForTheirFonts)
{
    const RowMetrics metrics(scaledFont(QApplication::font(), 2));
    RowContent content;
    content.lines = RowLine::progress | RowLine::recovery | RowLine::extraction | RowLine::verification;
    const RowLayout layout(metrics, content, QRect(0, 0, 700, metrics.height(content.lines)), Qt::LeftToRight);
    EXPECT_GE(layout.name.height(), QFontMetrics(metrics.nameFont).height());
    for (const QRect& rect :
         {layout.recovery, layout.bytes, layout.speed, layout.extractionText, layout.verification, layout.host})
        EXPECT_GE(rect.height(), QFontMetrics(metrics.captionFont).height());
}

TEST(RowLayout, FiguresHaveTheirColumnsAtTheEnd)
{
    const RowMetrics metrics(QApplication::font());
    RowContent content;
    content.lines = RowLine::progress;
    const RowLayout layout(metrics, content, QRect(0, 0, 800, metrics.height(content.lines)), Qt::LeftToRight);
    EXPECT_GE(layout.bytes.width(), 140);
    EXPECT_GE(layout.speed.width(), 80);
    EXPECT_EQ(layout.speed.right() + 1, 800 - RowMetrics::marginX);
    EXPECT_LT(layout.progressBar.right(), layout.bytes.left());
    EXPECT_LE(layout.progressBar.height(), 8);
}

TEST(RowLayout, AShortNameLeavesItsRoomToTheStatus)
{
    const RowMetrics metrics(QApplication::font());
    RowContent content;
    content.name = u"a.zip"_s;
    content.statusText = u"Error: it broke "_s.repeated(20);
    const RowLayout layout(metrics, content, QRect(0, 0, 600, metrics.height({})), Qt::LeftToRight);
    EXPECT_GT(layout.status.width(), 440);
    EXPECT_GE(layout.name.width(), QFontMetrics(metrics.nameFont).horizontalAdvance(content.name));
}

TEST(RowLayout, ALongNameKeepsAGoodHalfOfTheLine)
{
    const RowMetrics metrics(QApplication::font());
    RowContent content;
    content.name = u"Long.name."_s.repeated(30);
    content.statusText = u"Error: it broke "_s.repeated(20);
    const RowLayout layout(metrics, content, QRect(0, 0, 600, metrics.height({})), Qt::LeftToRight);
    EXPECT_GT(layout.name.width(), layout.status.width());
}

} // namespace
} // namespace vormel
