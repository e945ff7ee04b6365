#include "platform/process/OutputLines.h"

#include <QList>

#include <gtest/gtest.h>

namespace vormel {
namespace {

QList<QByteArray> linesOf(const QByteArray& output, qsizetype pieceSize)
{
    QList<QByteArray> lines;
    OutputLines reader([&lines](const QByteArray& line) { lines << line; });
    for (qsizetype i = 0; i < output.size(); i += pieceSize)
        reader.append(output.mid(i, pieceSize));
    reader.end();
    return lines;
}

TEST(OutputLines, LinesAreWholeInWhateverPiecesTheyCome)
{
    const QByteArray output = "one\n\ntwo\b\b\b\b 5%\rthree\r\nla\xC3\xBCst";
    const QList<QByteArray> whole{"one", "", "two\b\b\b\b 5%\rthree\r", "la\xC3\xBCst"};
    for (const qsizetype size : {1, 2, 3, 7, 1000})
        EXPECT_EQ(linesOf(output, size), whole) << size;
}

TEST(OutputLines, ALineFeedAtTheEndBeginsNoOtherLine)
{
    EXPECT_EQ(linesOf("one\n", 100), QList<QByteArray>{"one"});
    EXPECT_EQ(linesOf("", 100), QList<QByteArray>());
}

TEST(OutputLines, ALineComesWhenItIsCompleteAndNotLater)
{
    QList<QByteArray> lines;
    OutputLines reader([&lines](const QByteArray& line) { lines << line; });
    reader.append("on");
    EXPECT_TRUE(lines.isEmpty());
    reader.append("e\ntw");
    EXPECT_EQ(lines, QList<QByteArray>{"one"});
}

TEST(OutputLines, AnEndlessLineIsCutAndTheNextOneIsWhole)
{
    const QByteArray endless(3 * OutputLines::maxLength, 'x');
    for (const qsizetype size : {qsizetype{1000}, endless.size() * 2})
        EXPECT_EQ(linesOf(endless + "\nnext\n", size),
                  (QList<QByteArray>{endless.left(OutputLines::maxLength), "next"}))
            << size;
}

} // namespace
} // namespace vormel
