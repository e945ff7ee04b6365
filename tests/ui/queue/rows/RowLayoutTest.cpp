#include "ui/queue/rows/RowLayout.h"

#include "kit/TextStyle.h"

#include <QApplication>
#include <QFontMetrics>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// The first five in every combination, with no error, a short one and a long one.
QList<RowLines> setsOfLines()
{
    QList<RowLines> all;
    for (RowLines::Int others = 0; others < 32; ++others) {
        for (const RowLines error : {RowLines(), RowLines(RowLine::error), RowLine::error | RowLine::longError})
            all << (RowLines::fromInt(others) | error);
    }
    return all;
}

QList<RowContent> contents()
{
    QList<RowContent> all;
    for (const RowLines& lines : setsOfLines()) {
        for (const QString& name : {u"a"_s, u"Long.name."_s.repeated(30)}) {
            for (const QString& status : {u"Paused"_s, u"Error: it broke "_s.repeated(20)}) {
                for (const bool hasBar : {false, true}) {
                    RowContent content;
                    content.lines = lines;
                    content.name = name;
                    content.statusText = status;
                    content.hasExtractionBar = hasBar;
                    content.extractionText = u"Verifica / estrazione…"_s;
                    content.elapsedText = u"12:34"_s;
                    content.retryText = u"Riprova"_s;
                    content.isMember = lines.testFlag(RowLine::recovery);
                    content.host = hasBar ? u"files.example"_s : u"a-host-of-some-length."_s.repeated(9);
                    content.waitText =
                        lines.testFlag(RowLine::progress) ? QString() : u"Connection lost, trying again in 12 s"_s;
                    content.figuresText = lines.testFlag(RowLine::extraction) ? QString() : u"1.23 GB of 4.56 GB"_s;
                    content.buttons = itemButtons(lines.testFlag(RowLine::failure) ? DownloadStatus::paused
                                                                                   : DownloadStatus::stopped);
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
            for (int width = 300; width <= 2000; width += 170) {
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
    content.host = u"files.example"_s;
    content.waitText = u"Waits"_s;
    content.figuresText = u"4 GB"_s;
    content.lines =
        RowLine::error | RowLine::progress | RowLine::recovery | RowLine::extraction | RowLine::verification;
    const RowLayout layout(metrics, content, QRect(0, 0, 700, metrics.height(content.lines)), Qt::LeftToRight);
    EXPECT_GE(layout.name.height(), QFontMetrics(metrics.nameFont).height());
    for (const QRect& rect : {layout.recovery, layout.bytes, layout.speed, layout.extractionText, layout.verification,
                              layout.host, layout.error, layout.figures})
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

TEST(RowLayout, AnErrorHasTheWholeWidthAndLeavesTheFirstLineToTheName)
{
    const RowMetrics metrics(QApplication::font());
    RowContent content;
    content.name = u"Long.name."_s.repeated(30);
    content.statusText = u"Error: it broke "_s.repeated(20);
    content.lines = RowLine::error | RowLine::longError;
    const RowLayout layout(metrics, content, QRect(0, 0, 600, metrics.height(content.lines)), Qt::LeftToRight);
    EXPECT_TRUE(layout.status.isEmpty());
    EXPECT_EQ(layout.name.right() + 1, 600 - RowMetrics::marginX);
    EXPECT_EQ(layout.error.left(), layout.name.left());
    EXPECT_EQ(layout.error.right(), layout.name.right());
    EXPECT_GT(layout.error.top(), layout.name.bottom());
    EXPECT_GE(layout.error.height(), 2 * QFontMetrics(metrics.captionFont).height());
}

TEST(RowLayout, AShortErrorHasOneLine)
{
    const RowMetrics metrics(QApplication::font());
    RowContent content;
    content.lines = RowLine::error;
    const RowLayout layout(metrics, content, QRect(0, 0, 600, metrics.height(content.lines)), Qt::LeftToRight);
    EXPECT_EQ(layout.error.height(), QFontMetrics(metrics.captionFont).height());
}

/// The row of an item of a host with a long name, at that width.
class CaptionLayout : public ::testing::Test
{
protected:
    CaptionLayout()
    {
        content.host = u"files.a-host-with-quite-a-long-name.example"_s;
        content.waitText = u"Connection lost, trying again in 12 s"_s;
        content.figuresText = u"1.2 GB of 4 GB"_s;
    }
    int widthOf(const QString& text) const { return QFontMetrics(metrics.captionFont).horizontalAdvance(text); }
    RowLayout layout(int width, Qt::LayoutDirection direction = Qt::LeftToRight) const
    {
        return {metrics, content, QRect(0, 0, width, metrics.height({})), direction};
    }
    /// That much room beside the icon.
    RowLayout layoutWithRoom(int room) const
    {
        const int around = 1000 - layout(1000).name.left() - RowMetrics::marginX;
        return layout(1000 - around + room);
    }

    const RowMetrics metrics{QApplication::font()};
    RowContent content;
};

TEST_F(CaptionLayout, StandOneBehindTheOtherWithDotsBetweenThem)
{
    const RowLayout wide = layout(1200);
    EXPECT_EQ(wide.host.left(), wide.name.left());
    EXPECT_GE(wide.host.width(), widthOf(content.host));
    EXPECT_EQ(wide.waitDot.left(), wide.host.right() + 1);
    EXPECT_EQ(wide.wait.left(), wide.waitDot.right() + 1);
    EXPECT_EQ(wide.figuresDot.left(), wide.wait.right() + 1);
    EXPECT_EQ(wide.figures.left(), wide.figuresDot.right() + 1);
    EXPECT_EQ(wide.waitDot.width(), metrics.dotWidth);
}

TEST_F(CaptionLayout, StandTheOtherWayRoundFromRightToLeft)
{
    const RowLayout mirrored = layout(1200, Qt::RightToLeft);
    EXPECT_GT(mirrored.host.left(), mirrored.wait.right());
    EXPECT_GT(mirrored.wait.left(), mirrored.figures.right());
}

TEST_F(CaptionLayout, TheHostIsCutFirst)
{
    const int both = widthOf(content.waitText) + widthOf(content.figuresText) + 2 + 2 * metrics.dotWidth;
    const RowLayout narrow = layoutWithRoom(both + 100);
    EXPECT_GT(narrow.host.width(), 80);
    EXPECT_LE(narrow.host.width(), 100);
    const QString shown = QFontMetrics(metrics.captionFont).elidedText(content.host, Qt::ElideRight, 100);
    EXPECT_EQ(narrow.host.width(), widthOf(shown) + 1); // so that the dot follows what is seen
    EXPECT_GE(narrow.wait.width(), widthOf(content.waitText));
    EXPECT_GE(narrow.figures.width(), widthOf(content.figuresText));
}

TEST_F(CaptionLayout, ThenItGoesAndItsDotWithIt)
{
    const int both = widthOf(content.waitText) + widthOf(content.figuresText) + 2 + 2 * metrics.dotWidth;
    const RowLayout narrow = layoutWithRoom(both + 20);
    EXPECT_TRUE(narrow.host.isEmpty());
    EXPECT_TRUE(narrow.waitDot.isEmpty());
    EXPECT_EQ(narrow.wait.left(), narrow.name.left());
    EXPECT_GE(narrow.figures.width(), widthOf(content.figuresText));
}

TEST_F(CaptionLayout, ThenTheFiguresGoAndTheWaitStaysWhole)
{
    const RowLayout narrow = layoutWithRoom(widthOf(content.waitText) + 10);
    EXPECT_TRUE(narrow.figures.isEmpty());
    EXPECT_TRUE(narrow.figuresDot.isEmpty());
    EXPECT_GE(narrow.wait.width(), widthOf(content.waitText));
}

TEST_F(CaptionLayout, WithoutAWaitTheFiguresFollowTheHost)
{
    content.waitText.clear();
    const RowLayout wide = layout(1200);
    EXPECT_TRUE(wide.wait.isEmpty());
    EXPECT_TRUE(wide.waitDot.isEmpty());
    EXPECT_EQ(wide.figures.left(), wide.host.right() + 1 + metrics.dotWidth);
}

TEST_F(CaptionLayout, AHostIsCutForTheFiguresAlone)
{
    content.waitText.clear();
    const RowLayout narrow = layoutWithRoom(widthOf(content.figuresText) + metrics.dotWidth + 100);
    EXPECT_LE(narrow.host.width(), 100);
    EXPECT_GE(narrow.figures.width(), widthOf(content.figuresText));
}

TEST_F(CaptionLayout, AHostAloneHasTheWholeLine)
{
    content.waitText.clear();
    content.figuresText.clear();
    content.host = u"files.a-host."_s.repeated(40);
    EXPECT_LE(layout(600).host.right() + 1, 600 - RowMetrics::marginX);
    EXPECT_GT(layout(600).host.right() + 1, 600 - RowMetrics::marginX - 20);
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
