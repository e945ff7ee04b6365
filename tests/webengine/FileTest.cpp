#include "EngineTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace vormel {
namespace {

using sites::Answer;

const auto formOfFile = u"document.getElementById('form').submit()"_s;

class FileTest : public EngineTest
{
protected:
    FileTest()
    {
        // However busy the machine is: the order of file and end is the engine's alone.
        page = pageOf(world().slowBrowser(), judge);
        serveFile("/file");
        servePage("/page", R"(<form id=form method=post action="/file"><input name=op></form>
            <a id=link download href="/file">x</a>)");
    }
};

TEST_F(FileTest, IsToldBeforeTheOneEndOfItsNavigation)
{
    std::size_t shownAtEnd = 0;
    judge.onEnd = [&] { shownAtEnd = judge.shown.size(); };
    EXPECT_EQ(open("/file"), End::failed);
    EXPECT_EQ(shownAtEnd, 1U);
    EXPECT_THAT(judge.shown, ElementsAre("file /file"));
    EXPECT_EQ(shownUrl(), "nothing");
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
}

TEST_F(FileTest, ThatAFormGivesIsAskedForOnceByAWalkThatSubmitsAgainWhereNoneCame)
{
    for (std::size_t round = 1; round <= 5; ++round) {
        EXPECT_EQ(open("/page"), End::loaded);
        judge.shown.clear();
        bool hasGoneOn = false;
        judge.onEnd = [&] {
            if (judge.shown.empty())
                tell(formOfFile);
            hasGoneOn = true;
        };
        tell(formOfFile);
        ASSERT_TRUE(fixtures::waitUntil([&] { return hasGoneOn; }));
        linger(std::chrono::milliseconds(150));
        judge.onEnd = nullptr;
        EXPECT_EQ(nextEnd(), End::failed);
        EXPECT_EQ(requests("/file"), round);
    }
    EXPECT_EQ(shownUrl(), "/page");
}

TEST_F(FileTest, BehindALinkThatDownloadsIsJudgedBeforeItIsAskedFor)
{
    EXPECT_EQ(open("/page"), End::loaded);
    judge.onAsk = [](const auto&) { return false; };
    tell(u"document.getElementById('link').click()"_s);
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_THAT(judge.asked, ElementsAre("/page", "/file"));
    linger();
    EXPECT_EQ(requests("/file"), 0U);
    EXPECT_THAT(judge.shown, ElementsAre("/page"));
    EXPECT_EQ(judge.ends.size(), 2U);
    EXPECT_EQ(shownUrl(), "/page");
}

TEST_F(FileTest, BehindALinkThatDownloadsIsToldOnceItMayBeAskedFor)
{
    EXPECT_EQ(open("/page"), End::loaded);
    tell(u"document.getElementById('link').click()"_s);
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_THAT(judge.asked, ElementsAre("/page", "/file"));
    EXPECT_THAT(judge.shown, ElementsAre("/page", "file /file"));
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
}

TEST_F(FileTest, BehindALinkIsJudgedAtEachRedirect)
{
    servePage("/page", R"(<a id=link download href="/moved">x</a>)");
    serveAnswer("/moved", Answer::redirect(302, "/file"));
    EXPECT_EQ(open("/page"), End::loaded);
    judge.onAsk = [](const auto& request) { return request.url.lastPathComponent() != u"file"; };
    tell(u"document.getElementById('link').click()"_s);
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_THAT(judge.asked, ElementsAre("/page", "/moved", "/file"));
    linger();
    // The engine has asked already when it lets the redirect be judged; it reads nothing.
    EXPECT_THAT(judge.shown, ElementsAre("/page"));
    EXPECT_EQ(judge.ends.size(), 2U);
}

TEST_F(FileTest, IsJudgedBehindALinkAlsoAfterItWasRefusedAsAPage)
{
    EXPECT_EQ(open("/page"), End::loaded);
    judge.onAsk = [](const auto&) { return false; };
    tell(formOfFile);
    EXPECT_EQ(nextEnd(), End::failed);
    tell(u"document.getElementById('link').click()"_s);
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_THAT(judge.asked, ElementsAre("/page", "/file", "/file"));
    EXPECT_EQ(requests("/file"), 0U);
}

TEST_F(FileTest, ThatComesWhenItsPageIsGoneIsNobodys)
{
    server.serve("/late",
                 {.content = "late", .answers = {Answer::file().withDisposition("attachment").stallBeforeHead()}});
    servePage("/page", R"(<a id=link download href="/late">x</a>)");
    EXPECT_EQ(open("/page"), End::loaded);
    tell(u"document.getElementById('link').click()"_s);
    ASSERT_TRUE(stalls());
    page.reset();
    linger(std::chrono::milliseconds(100));
    server.release();
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_THAT(judge.shown, ElementsAre("/page"));
}

TEST_F(FileTest, WhosePageGoesAtTheStopBeforeItIsNobodys)
{
    for (int round = 0; round < 20; ++round) {
        const auto another = pageOf(world().browser(), judge);
        another->load(link(server.url("/file")));
        ASSERT_TRUE(isAsked("/file"));
        linger(std::chrono::milliseconds(round));
    }
    linger();
}

TEST_F(FileTest, InAFrameIsToldAsSuchAndEndsNothing)
{
    servePage("/frames", R"(<iframe src="/redirected"></iframe>)");
    serveAnswer("/redirected", Answer::redirect(302, "/file"));
    EXPECT_EQ(open("/frames"), End::loaded);
    ASSERT_TRUE(fixtures::waitUntil([this] { return !judge.shown.empty() && judge.shown.size() == 2; }));
    EXPECT_THAT(judge.shown, testing::UnorderedElementsAre("/frames", "file [/file]"));
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
}

TEST_F(FileTest, OfEachUsualKindIsNoPage)
{
    const std::vector<std::pair<std::string, std::string>> kinds{
        {"/a.pdf", "application/pdf"}, {"/a.rar", "application/octet-stream"}, {"/a.zip", "application/zip"}};
    for (const auto& [path, type] : kinds) {
        server.serve(path, {.content = "%PDF-1.4 anything", .contentType = type});
        judge.shown.clear();
        EXPECT_EQ(open(path), End::failed) << path;
        EXPECT_THAT(judge.shown, ElementsAre("file " + path));
    }
}

TEST_F(FileTest, OfAFilmThatTheEngineShowsIsAPage)
{
    server.serve("/film.mp4", {.content = sites::PatternContent(1, 100'000), .contentType = "video/mp4"});
    EXPECT_EQ(open("/film.mp4"), End::loaded);
    EXPECT_EQ(shownUrl(), "/film.mp4");
}

TEST_F(FileTest, ThatAPageMakesItselfIsNeverWritten)
{
    EXPECT_EQ(open("/page"), End::loaded);
    tell(u"const a = document.createElement('a'); a.download = '../../.bashrc';"
         "a.href = URL.createObjectURL(new Blob(['x'])); a.click();"
         "a.href = 'data:application/zip,x'; a.click()"_s);
    linger();
    EXPECT_THAT(judge.asked, ElementsAre("/page"));
    EXPECT_THAT(judge.shown, ElementsAre("/page"));
    for (const QString& file : world().home().files())
        EXPECT_TRUE(file.startsWith(u"profile/"_s) || file.startsWith(u"slow-profile/"_s) ||
                    file.startsWith(u".pki/"_s))
            << file.toStdString();
    EXPECT_FALSE(world().home().exists(u"profile/.bashrc"_s));
}

} // namespace
} // namespace vormel
