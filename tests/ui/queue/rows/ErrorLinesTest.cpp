#include "fixtures/EngineOnScript.h"
#include "ui/queue/rows/PaintedRow.h"
#include "ui/shell/Sidebar.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::PaintedRow;

/// The list in the smallest window, with a font that is larger than usual.
class ErrorLinesTest : public ::testing::Test
{
protected:
    ErrorLinesTest()
    {
        QFont large = m_usual;
        large.setPointSize(14);
        QApplication::setFont(large);
    }
    ~ErrorLinesTest() override { QApplication::setFont(m_usual); }

    static RowContent failed(const QString& message, AppLanguage language)
    {
        DownloadItem item(fixtures::link(u"https://h.example/a.rar"_s), ItemId::make());
        item.setStatus(DownloadStatus::failure(message));
        RowContent content = rowContent(item, language, {});
        content.isMember = true;
        return content;
    }
    static bool isElided(const RowContent& content)
    {
        constexpr int narrowestWindow = 700;
        PaintedRow::Look look;
        look.width = narrowestWindow - Sidebar::idealWidth;
        return PaintedRow(content, look).texts().join(QString()).contains(u'…');
    }

    const QStringList messages{u"A file stands where the folder of this download should be."_s,
                               u"Network error: the connection was closed by the other side"_s,
                               u"WRONG OR MISSING PASSWORD, OR NO LINKS FOUND IN THE CONTAINER"_s};

private:
    const QFont m_usual = QApplication::font();
};

TEST_F(ErrorLinesTest, NoMessageThatIsTakenForShortIsElided)
{
    for (const QString& message : messages) {
        for (qsizetype letters = 1; letters <= message.size(); ++letters) {
            for (const AppLanguage language : {AppLanguage::english, AppLanguage::italian}) {
                const RowContent content = failed(message.left(letters), language);
                ASSERT_TRUE(content.lines.testFlag(RowLine::longError) || !isElided(content))
                    << qPrintable(content.statusText);
            }
        }
    }
}

TEST_F(ErrorLinesTest, OneOfSixtyLettersHasRoomOnItsTwoLines)
{
    for (const QString& message : messages) {
        const RowContent content = failed(message, AppLanguage::italian);
        EXPECT_TRUE(content.lines.testFlag(RowLine::longError));
        EXPECT_FALSE(isElided(content)) << qPrintable(content.statusText);
    }
}

} // namespace
} // namespace vormel
