#include "fixtures/EngineOnScript.h"
#include "ui/queue/rows/PaintedRow.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::PaintedRow;
using S = DownloadStatus;
using E = ExtractionStatus;

constexpr qint64 bytesOfPart = 4194304;

struct HeaderCase
{
    const char* name;
    std::vector<S::Kind> items;
    const char* english;
    const char* italian;
    const char* glyphs; ///< without the triangle, which comes first
    const char* bar = "";
};

const HeaderCase headerCases[] = {
    {"completed",
     {S::completed, S::completed},
     "**film**/text|Completed  ·  2 parts  ·  8 MB/secondary",
     "**film**/text|Completato  ·  2 parti  ·  8 MB/secondary",
     "doc.on.doc.fill/green checkmark.seal/secondary arrow.triangle.2.circlepath/secondary xmark/secondary"},
    {"error",
     {S::failed, S::completed},
     "**film**/text|Error  ·  2 parts  ·  8 MB/secondary",
     "**film**/text|Errore  ·  2 parti  ·  8 MB/secondary",
     "doc.on.doc.fill/red checkmark.seal/secondary arrow.triangle.2.circlepath/secondary xmark/secondary"},
    {"downloading",
     {S::downloading, S::queued},
     "**film**/text|Downloading (1/2)  ·  2 parts  ·  8 MB/secondary|2 MB / 8 MB/secondary|1 KB/s/secondary",
     "**film**/text|Download (1/2)  ·  2 parti  ·  8 MB/secondary|2 MB / 8 MB/secondary|1 KB/s/secondary",
     "doc.on.doc.fill/blue pause.fill/orange stop.fill/secondary arrow.triangle.2.circlepath/secondary "
     "xmark/secondary",
     "0.25/blue"},
    {"stopped",
     {S::stopped, S::stopped},
     "**film**/text|Stopped  ·  2 parts  ·  8 MB/secondary|2 MB / 8 MB/secondary",
     "**film**/text|Fermato  ·  2 parti  ·  8 MB/secondary|2 MB / 8 MB/secondary",
     "doc.on.doc.fill/secondary play.fill/secondary arrow.triangle.2.circlepath/secondary xmark/secondary",
     "0.25/blue"},
    {"paused",
     {S::paused, S::paused},
     "**film**/text|Paused  ·  2 parts  ·  8 MB/secondary|2 MB / 8 MB/secondary",
     "**film**/text|In pausa  ·  2 parti  ·  8 MB/secondary|2 MB / 8 MB/secondary",
     "doc.on.doc.fill/orange play.fill/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary "
     "xmark/secondary",
     "0.25/blue"},
    {"resolving",
     {S::resolving, S::queued},
     "**film**/text|Resolving...  ·  2 parts  ·  8 MB/secondary",
     "**film**/text|Risoluzione...  ·  2 parti  ·  8 MB/secondary",
     "doc.on.doc.fill/secondary play.fill/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary "
     "xmark/secondary"},
    {"queued",
     {S::queued, S::completed},
     "**film**/text|Queued  ·  2 parts  ·  8 MB/secondary",
     "**film**/text|In coda  ·  2 parti  ·  8 MB/secondary",
     "doc.on.doc.fill/secondary play.fill/secondary stop.fill/secondary checkmark.seal/secondary "
     "arrow.triangle.2.circlepath/secondary xmark/secondary"},
};

class HeaderPainting : public ::testing::TestWithParam<HeaderCase>
{
protected:
    HeaderPainting()
    {
        for (const S::Kind kind : GetParam().items) {
            group.items.push_back(
                std::make_shared<DownloadItem>(fixtures::link(u"https://h.example/x"_s), ItemId::make()));
            group.items.back()->setStatus(kind == S::failed ? S::failure(u"x"_s) : DownloadStatus(kind));
            group.items.back()->setTotalBytes(bytesOfPart);
            group.items.back()->setBytesReceived(bytesOfPart / 4);
        }
        if (GetParam().items.front() == S::downloading)
            group.items.front()->setSpeedBytesPerSec(1024);
    }
    PaintedRow painted(AppLanguage language, const PaintedRow::Look& look = {}) const
    {
        const GroupTally tally(group);
        HeaderContent content = headerContent(tally, language);
        content.title = group.id;
        content.buttons = groupButtons(tally, false);
        addExtraction(content, group, language);
        return {content, look};
    }

    DownloadGroup group{u"film"_s, {}};
};

TEST_P(HeaderPainting, ShowsItsTextsInTheirColours)
{
    EXPECT_EQ(painted(AppLanguage::english).texts().join(u'|').toStdString(), GetParam().english);
    EXPECT_EQ(painted(AppLanguage::italian).texts().join(u'|').toStdString(), GetParam().italian);
}

TEST_P(HeaderPainting, ShowsItsIconsInTheirColours)
{
    EXPECT_EQ(painted(AppLanguage::english).glyphs().join(u' ').toStdString(),
              std::string("chevron.right/tertiary ") + GetParam().glyphs);
    PaintedRow::Look look;
    look.isOpen = true;
    EXPECT_EQ(painted(AppLanguage::english, look).glyphs().front(), u"chevron.down/tertiary");
}

TEST_P(HeaderPainting, FillsItsBar)
{
    EXPECT_EQ(painted(AppLanguage::english).bar().toStdString(), GetParam().bar);
}

TEST_P(HeaderPainting, ALongTitleIsElidedInItsMiddle)
{
    group.id = u"The.beginning."_s.repeated(20) + u"the.end"_s;
    PaintedRow::Look look;
    look.width = 520;
    const QString title = painted(AppLanguage::english, look).texts().front();
    EXPECT_TRUE(title.startsWith(u"**The.beg") && title.contains(u'…') && title.endsWith(u"end**/text"))
        << qPrintable(title);
}

TEST_P(HeaderPainting, TellsWhatBecameOfTheArchiveInItsColour)
{
    const std::pair<ExtractionStatus, const char*> ends[] = {
        {E::extracting, "·  Checking / extracting…/secondary"},
        {E::repairing, "·  Repairing with .rev…/orange"},
        {E::done, "·  Extracted/green"},
        {E::failure(u"broken"_s), "·  Extraction failed: broken/red"}};
    for (const auto& [status, text] : ends) {
        group.items.front()->setExtractionStatus(status);
        EXPECT_EQ(painted(AppLanguage::english).texts().at(2).toStdString(), text);
    }
}

TEST_P(HeaderPainting, WarnsOfWhatIsLackingAndLessWhereItCanBeRebuilt)
{
    HeaderContent content = headerContent(GroupTally(group), AppLanguage::english);
    addLack(content, {{{2, 2}}, {}, 3, 1}, AppLanguage::english);
    const PaintedRow rebuilt(content, {});
    EXPECT_TRUE(rebuilt.texts().contains(u"Part 2 of 3 failed; 1 recovery volume can rebuild it/orange"));
    EXPECT_TRUE(rebuilt.glyphs().contains(u"bandage.fill/orange"));
    addLack(content, {{}, {{2, 2}}, 3, 0}, AppLanguage::english);
    const PaintedRow unlisted(content, {});
    EXPECT_TRUE(unlisted.texts().contains(u"1 part not in the list/orange"));
    EXPECT_TRUE(unlisted.glyphs().contains(u"exclamationmark.triangle.fill/orange"));
    addLack(content, {{{2, 2}}, {}, 3, 0}, AppLanguage::english);
    const PaintedRow lost(content, {});
    EXPECT_TRUE(lost.texts().contains(u"Part 2 of 3 failed; nothing can rebuild it/red"));
    EXPECT_TRUE(lost.glyphs().contains(u"exclamationmark.triangle.fill/red"));
}

INSTANTIATE_TEST_SUITE_P(Headers, HeaderPainting, ::testing::ValuesIn(headerCases),
                         [](const auto& header) { return header.param.name; });

} // namespace
} // namespace vormel
