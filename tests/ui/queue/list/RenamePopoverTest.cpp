#include "ui/queue/list/RenamePopover.h"

#include "ui/Part.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class RenamePopoverTest : public ::testing::Test
{
protected:
    RenamePopoverTest()
    {
        window.resize(500, 400);
        window.show();
    }
    RenamePopover& open(const QString& name, AppLanguage language = AppLanguage::english)
    {
        auto* const fresh = new RenamePopover(name, language, &window);
        fresh->openBelow(window, QRect(0, 0, 500, 60));
        return *fresh;
    }
    void closeAll() { qDeleteAll(window.findChildren<RenamePopover*>()); }
    bool isOpen()
    {
        const auto* const popover = window.findChild<RenamePopover*>();
        return popover != nullptr && popover->isVisible();
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(window, name);
    }
    QString draft() { return part<QLineEdit>("draftName").text(); }
    void click(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }

    QWidget window;
};

TEST_F(RenamePopoverTest, SpeaksBothLanguages)
{
    const auto texts = [this] {
        return QStringList{part<QLabel>("renameTitle").text(), part<QPushButton>("removeTailTags").text(),
                           part<QPushButton>("dotsToSpaces").text(), part<QPushButton>("cancelRename").text(),
                           part<QPushButton>("saveName").text()}
            .join(u'|');
    };
    open(u"a"_s);
    EXPECT_EQ(texts(), u"Rename group|Remove tail tags|Dots → spaces|Cancel|Save");
    EXPECT_EQ(part<QLabel>("renameNote").text(),
              u"Used as the folder and extracted file name. The extension (.mkv/.mp4) is kept automatically.");
    EXPECT_EQ(part<QPushButton>("removeTailTags").toolTip(),
              u"Trim release info (resolution, codec, source, group…) from the end");
    closeAll();
    open(u"a"_s, AppLanguage::italian);
    EXPECT_EQ(texts(), u"Rinomina gruppo|Rimuovi tag finali|Punti → spazi|Annulla|Salva");
    EXPECT_EQ(part<QLabel>("renameNote").text(),
              u"Usato come nome della cartella e del file estratto. L'estensione (.mkv/.mp4) è mantenuta "
              u"automaticamente.");
    EXPECT_EQ(part<QPushButton>("removeTailTags").toolTip(),
              u"Rimuove le info di release (risoluzione, codec, sorgente, gruppo…) dalla fine");
}

TEST_F(RenamePopoverTest, SavesWhatWasTypedAndCloses)
{
    QSignalSpy saved(&open(u"movie"_s), &RenamePopover::saved);
    EXPECT_EQ(draft(), u"movie");
    QTest::keyClicks(&part<QLineEdit>("draftName"), u" My film "_s); // the old name is chosen
    click("saveName");
    ASSERT_EQ(saved.count(), 1);
    EXPECT_EQ(saved[0][0].toString(), u" My film ");
    EXPECT_FALSE(isOpen());
}

TEST_F(RenamePopoverTest, BlanksCannotBeSaved)
{
    QSignalSpy saved(&open(u"movie"_s), &RenamePopover::saved);
    part<QLineEdit>("draftName").setText(u" \t "_s);
    EXPECT_FALSE(part<QPushButton>("saveName").isEnabled());
    QTest::keyClick(&part<QLineEdit>("draftName"), Qt::Key_Return);
    EXPECT_EQ(saved.count(), 0);
    part<QLineEdit>("draftName").setText(u" x"_s);
    EXPECT_TRUE(part<QPushButton>("saveName").isEnabled());
}

TEST_F(RenamePopoverTest, CancelAndEscapeSaveNothing)
{
    QSignalSpy first(&open(u"movie"_s), &RenamePopover::saved);
    click("cancelRename");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(first.count(), 0);
    closeAll();
    QSignalSpy second(&open(u"movie"_s), &RenamePopover::saved);
    QTest::keyClick(&part<QLineEdit>("draftName"), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(second.count(), 0);
}

TEST_F(RenamePopoverTest, RemovesTheTagsOfTheReleaseLetterByLetter)
{
    const std::pair<const char16_t*, const char16_t*> names[] = {
        {u"Some.Movie.2021.1080p.WEB-DL.x264-GRP", u"Some.Movie.2021"}, // codec and group, not an extension
        {u"Some.Movie.2021.x264-GRP", u"Some.Movie.2021"},
        {u"Some Movie 2021 2160p WEB DL DDP5 1 H 265-GRP", u"Some Movie 2021"},
        {u"some_movie_2021_BluRay_x265", u"some_movie_2021"},
        {u"Some.Show.S01E02.German.DL.720p.HDTV", u"Some.Show.S01E02.German.DL"},
        {u"Some.Movie.2021.1080p", u"Some.Movie.2021"},
        {u"Some.Movie.2021.1080p.mkv", u"Some.Movie.2021"},
        {u"The.Multi.Show", u"The"},
        {u"Some.Movie.v2.0", u"Some.Movie.v2.0"}, // no tag, nothing goes
        {u"Some.Movie.2021", u"Some.Movie.2021"},
        {u"1080p.Movie", u"1080p.Movie"}, // stands at the start
        {u".1080p.x264", u".1080p.x264"}, // nothing would be left
    };
    for (const auto& [name, cleaned] : names) {
        open(QString::fromUtf16(name));
        click("removeTailTags");
        EXPECT_EQ(draft(), cleaned);
        closeAll();
    }
}

TEST_F(RenamePopoverTest, TurnsDotsToSingleBlanks)
{
    open(u".Some...Film. 2024."_s);
    click("dotsToSpaces");
    EXPECT_EQ(draft(), u"Some Film 2024");
}

} // namespace
} // namespace vormel
