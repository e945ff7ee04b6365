#include "EngineTest.h"

#include <QDateTime>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace vormel {
namespace {

using sites::Answer;

/// The cookies of a host that no other test uses.
class CookieTest : public EngineTest
{
protected:
    CookieTest() { servePage("/page", "<p>page"); }
    ~CookieTest() override
    {
        browser.removeCookies(cookies());
        linger(std::chrono::milliseconds(50));
    }

    [[nodiscard]] QByteArrayList cookies() const
    {
        QByteArrayList ours = browser.cookies();
        ours.removeIf([](const QByteArray& line) { return !line.contains("jar.example"); });
        return ours;
    }
    [[nodiscard]] std::string urlOf(const std::string& path, const std::string& host = "jar.example") const
    {
        return server.url(host, path);
    }
    [[nodiscard]] std::string cookiesSentTo(const std::string& path) const
    {
        return server.requests(path).back().header("Cookie").value_or("none");
    }

    EngineBrowser& browser = world().browser();
};

TEST_F(CookieTest, ThatAreAddedGoWithTheFirstRequestOfAPage)
{
    browser.addCookie("#HttpOnly_jar.example\tFALSE\t/\tFALSE\t0\tsession\tabc");
    page = pageOf(browser, judge);
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    EXPECT_EQ(cookiesSentTo("/page"), "session=abc");
    EXPECT_EQ(answer(u"document.cookie"_s), QVariant(QString()));
}

TEST_F(CookieTest, OfOneHostAreNotSentToItsSubdomains)
{
    browser.addCookie("jar.example\tFALSE\t/\tFALSE\t0\town\t1");
    browser.addCookie(".jar.example\tTRUE\t/\tFALSE\t0\tshared\t2");
    EXPECT_EQ(load(urlOf("/page", "sub.jar.example")), End::loaded);
    EXPECT_EQ(cookiesSentTo("/page"), "shared=2");
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    EXPECT_THAT(cookiesSentTo("/page"), testing::AllOf(HasSubstr("own=1"), HasSubstr("shared=2")));
}

TEST_F(CookieTest, OfASiteAreToldWithAllThatTheyAre)
{
    const qint64 expiry = QDateTime::currentSecsSinceEpoch() + 100'000;
    const std::string date =
        QDateTime::fromSecsSinceEpoch(expiry, Qt::UTC).toString(u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s).toStdString();
    server.serve("/login", {.answers = {Answer::page(200, "in")
                                            .withCookie("sid=1; HttpOnly; Path=/")
                                            .withCookie("lang=en; Domain=jar.example; Path=/login; Expires=" + date)}});
    QSignalSpy changes(&browser, &WebBrowser::cookiesChanged);
    EXPECT_EQ(load(urlOf("/login")), End::loaded);
    EXPECT_TRUE(fixtures::waitUntil([&] { return cookies().size() == 2; }));
    EXPECT_THAT(cookies(), UnorderedElementsAre("#HttpOnly_jar.example\tFALSE\t/\tFALSE\t0\tsid\t1",
                                                ".jar.example\tTRUE\t/login\tFALSE\t" + QByteArray::number(expiry) +
                                                    "\tlang\ten"));
    EXPECT_GE(changes.size(), 1);
}

TEST_F(CookieTest, ChangeAndGoAsTheSiteSays)
{
    server.serve("/login", {.answers = {Answer::page(200, "in").withCookie("sid=1; Path=/"),
                                        Answer::page(200, "in").withCookie("sid=2; Path=/"),
                                        Answer::page(200, "out").withCookie("sid=; Path=/; Max-Age=0")}});
    EXPECT_EQ(load(urlOf("/login")), End::loaded);
    EXPECT_EQ(load(urlOf("/login")), End::loaded);
    EXPECT_TRUE(
        fixtures::waitUntil([&] { return cookies() == QByteArrayList{"jar.example\tFALSE\t/\tFALSE\t0\tsid\t2"}; }));
    EXPECT_EQ(load(urlOf("/login")), End::loaded);
    EXPECT_TRUE(fixtures::waitUntil([&] { return cookies().isEmpty(); }));
}

TEST_F(CookieTest, ThatAreRemovedAreSentNoMore)
{
    for (const char* line : {"#HttpOnly_jar.example\tFALSE\t/\tFALSE\t0\ta\t1", ".jar.example\tTRUE\t/\tFALSE\t0\tb\t2",
                             "jar.example\tFALSE\t/\tFALSE\t0\tc\t3"})
        browser.addCookie(line);
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    browser.removeCookies({"jar.example\tFALSE\t/\tFALSE\t0\ta\tany", ".jar.example\tTRUE\t/\tFALSE\t0\tb\t"});
    EXPECT_EQ(cookies(), QByteArrayList{"jar.example\tFALSE\t/\tFALSE\t0\tc\t3"});
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    EXPECT_EQ(cookiesSentTo("/page"), "c=3");
}

TEST_F(CookieTest, ThatAreNoneAreDropped)
{
    for (const char* line : {"", "jar.example", "jar.example\tFALSE\t/\tFALSE\t0\ta\tx;Domain=example",
                             "Set-Cookie: a=b", "jar.example\tFALSE\t/\tFALSE\t100\told\t1"})
        browser.addCookie(line);
    EXPECT_THAT(cookies(), IsEmpty());
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    EXPECT_EQ(cookiesSentTo("/page"), "none");
}

TEST_F(CookieTest, AreNeverWritten)
{
    browser.addCookie("jar.example\tFALSE\t/\tFALSE\t0\tsecret\tunmistakable");
    EXPECT_EQ(load(urlOf("/page")), End::loaded);
    linger();
    for (const QString& file : world().home().files(u"profile"_s)) {
        EXPECT_NE(file, u"profile/Cookies"_s);
        EXPECT_FALSE(world().home().read(u"profile/"_s + file).contains("unmistakable")) << file.toStdString();
    }
}

} // namespace
} // namespace vormel
