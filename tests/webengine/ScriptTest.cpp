#include "EngineTest.h"

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using sites::Answer;

class ScriptTest : public EngineTest
{
protected:
    void show(const std::string& html)
    {
        servePage("/page", html);
        ASSERT_EQ(open("/page"), End::loaded);
    }
};

TEST_F(ScriptTest, GivesWhatItComesTo)
{
    show("<p id=p>it's \"here\"</p>");
    EXPECT_EQ(answer(u"document.getElementById('p').textContent"_s), QVariant(u"it's \"here\""_s));
    EXPECT_EQ(answer(u"(function(){\n    return true; // so\n})();"_s), QVariant(true));
    EXPECT_EQ(answer(u"const a = [1, 'x']; let o = {a, b: 'y'}; o"_s)->toMap(),
              (QVariantMap{{u"a"_s, QVariantList{1, u"x"_s}}, {u"b"_s, u"y"_s}}));
    EXPECT_EQ(answer(u"'\\u2028' + \"\\n\" + `\\\\`"_s)->toString(), QString(QChar(0x2028)) + u"\n\\"_s);
}

TEST_F(ScriptTest, ThatIsNoneGivesNothing)
{
    show("<p>");
    EXPECT_EQ(answer(u"not a script"_s), QVariant());
    EXPECT_EQ(answer(u"throw new Error()"_s), QVariant());
    EXPECT_EQ(answer(u"undefined"_s), QVariant());
}

TEST_F(ScriptTest, IsNotBentByThePage)
{
    show("<form><input></form><script>document.querySelector = () => null; window.mine = 1;"
         "Array.isArray = () => { throw 1 }; String.prototype.slice = () => 'bent'; eval = 0</script>");
    EXPECT_EQ(answer(u"!!document.querySelector('form')"_s), QVariant(true));
    EXPECT_EQ(answer(u"'text'"_s), QVariant(u"text"_s));
    EXPECT_EQ(answer(u"typeof mine"_s), QVariant(u"undefined"_s));
    EXPECT_EQ(answer(u"window.ours = 1"_s), QVariant(1));
    tell(
        u"const s = document.createElement('script'); s.textContent = 'document.title = typeof ours'; document.body.append(s)"_s);
    EXPECT_EQ(answer(u"document.title"_s), QVariant(u"undefined"_s));
}

TEST_F(ScriptTest, RunsWhateverThePagesPolicyIs)
{
    serveAnswer("/page",
                Answer::page(200, "<p>page")
                    .withHeader("Content-Security-Policy",
                                "default-src 'none'; script-src 'none'; require-trusted-types-for 'script'; sandbox"));
    ASSERT_EQ(open("/page"), End::loaded);
    EXPECT_EQ(answer(u"document.body.textContent"_s), QVariant(u"page"_s));
}

TEST_F(ScriptTest, GivesFourMebibytesOfTextAtMost)
{
    show("<p>");
    EXPECT_EQ(answer(u"'x'.repeat(9e6)"_s)->toString().size(), 4 * 1024 * 1024);
    const QStringList two = answer(u"['x'.repeat(3e6), 'y'.repeat(3e6)]"_s)->toStringList();
    ASSERT_EQ(two.size(), 2);
    EXPECT_EQ(two[0].size() + two[1].size() + 2, 4 * 1024 * 1024);
    EXPECT_EQ(answer(u"Object.values({a: 'x'.repeat(5e6)})[0].length"_s), QVariant(5'000'000));
}

TEST_F(ScriptTest, OfAPageThatGoesGivesNothing)
{
    show("<p>");
    tell(u"1"_s);
    page->load(link("http://127.0.0.1:1/"));
    tell(u"2"_s);
    page.reset();
    linger(std::chrono::milliseconds(100));
}

} // namespace
} // namespace vormel
