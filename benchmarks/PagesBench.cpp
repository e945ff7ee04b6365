#include "Benchmarks.h"
#include "Measure.h"
#include "model/PremiumAccountInfo.h"
#include "resolvers/containers/ContainerForm.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/ContainerPage.h"
#include "resolvers/containers/KeeplinksPage.h"
#include "resolvers/filestore/FilestoreForms.h"
#include "resolvers/filestore/FilestoreLinks.h"
#include "resolvers/filestore/FilestoreLogin.h"
#include "resolvers/filestore/FilestoreNames.h"

#include <algorithm>
#include <array>
#include <functional>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

struct Parser
{
    const char* name;
    std::function<void(const QString&)> parse;
};

const Link& pageUrl()
{
    static const Link url = *Link::parse(u"https://filestore.example/page"_s);
    return url;
}

std::vector<Parser> parsers()
{
    const QString domain = u"filestore.example"_s;
    const QStringList known{domain, u"rapidgator.net"_s};
    return {
        {"extractDirectLink", [domain](const QString& page) { (void)extractDirectLink(page, pageUrl(), domain); }},
        {"extractTitleName", [](const QString& page) { (void)extractTitleName(page); }},
        {"findDownloadForm", [](const QString& page) { (void)findDownloadForm(page, pageUrl()); }},
        {"loginFields", [](const QString& page) { (void)loginFields(page, u"a"_s, u"b"_s); }},
        {"tellsRefusedLogin", [](const QString& page) { (void)tellsRefusedLogin(page); }},
        {"parseAccountPage", [](const QString& page) { (void)parseAccountPage(page, WallTime()); }},
        {"containsCaptcha", [](const QString& page) { (void)containsCaptcha(page); }},
        {"saysWrongPassword", [](const QString& page) { (void)saysWrongPassword(page); }},
        {"containerPasswordBody", [](const QString& page) { (void)containerPasswordBody(page, u"x"_s); }},
        {"fileCryptLinks",
         [known](const QString& page) { (void)readPageLinks(page, pageUrl(), HrefScan::fileCrypt(), known); }},
        {"lfileCryptLinks",
         [known](const QString& page) { (void)readPageLinks(page, pageUrl(), HrefScan::lfileCrypt(), known); }},
        {"extractKeeplinksHrefs", [known](const QString& page) { (void)extractKeeplinksHrefs(page, known); }},
        {"followMetaRefresh", [](const QString& page) { (void)followMetaRefresh(page, pageUrl()); }},
    };
}

/// What a hostile page repeats.
constexpr std::array<const char16_t*, 12> fragments{
    u"<input type=\"hidden\" name=\"n%1\" value=\"v\">",
    u"<form action=\"/a\"><form>",
    u"<a href=\"https://filestore.example/dl/%1\">",
    u"<a href='http://rapidgator.net/file/%1&amp;x=.zip'>",
    u"<a href=\"https://filestore.example/page.zi",
    u"<meta http-equiv=\"refresh\" content=\"1 ",
    u"<input type=\"hidden\" name=\"",
    u"CNLPOP('a','00','AA=='); ",
    u"<h1 <title data-url=\"\" ",
    u"/go/a%1 open('/go/b%1') ",
    u"traffic 1 GB expires 31/12/2035 ",
    u"&amp;\"'\u0000\uFFFD",
};

QString pageOf(const char16_t* fragment, qsizetype size)
{
    QString page;
    page.reserve(size + 100);
    const QString text = QString::fromUtf16(fragment);
    for (int i = 0; page.size() < size; ++i)
        page += text.contains(u"%1") ? text.arg(i) : text.isEmpty() ? u"\""_s : text;
    return page;
}

struct ParseTime
{
    double milliseconds = 0; ///< of a usual page
    double growth = 0;       ///< how much longer a page takes that is ten times as long
};

double millisecondsFor(const Parser& parser, const std::vector<QString>& pages)
{
    return costOf([&] { std::ranges::for_each(pages, parser.parse); }).cpu * 1000;
}

/// The machine may run at another speed a moment later, so that only times that follow each other are compared.
ParseTime measure(const Parser& parser, const char16_t* fragment)
{
    constexpr std::size_t rounds = 11;
    constexpr int copies = 10;
    constexpr double measurable = 0.5; // what takes no time has no growth to be measured
    const std::vector<QString> usual(copies, pageOf(fragment, 100'000));
    const std::vector<QString> tenfold{pageOf(fragment, 1'000'000)};
    std::vector<double> times;
    std::vector<double> growths;
    for (std::size_t round = 0; round < rounds; ++round) {
        times.push_back(millisecondsFor(parser, usual) / copies);
        growths.push_back(millisecondsFor(parser, tenfold) / std::max(times.back(), measurable));
    }
    std::ranges::sort(times);
    std::ranges::sort(growths);
    return {times[rounds / 2], growths[rounds / 2]};
}

} // namespace

void benchPages(Report& report)
{
    report.note(u"What hostile pages of services cost, and how much more ten times as much of them does:"_s);
    ParseTime worst;
    for (const Parser& parser : parsers()) {
        for (const char16_t* const fragment : fragments) {
            const ParseTime time = measure(parser, fragment);
            if (time.milliseconds > worst.milliseconds || time.growth > worst.growth)
                report.note(u"  %1: %2 ms, and %3 times that, of "_s.arg(QLatin1StringView(parser.name))
                                .arg(time.milliseconds, 0, 'f', 2)
                                .arg(time.growth, 0, 'f', 1) +
                            QString::fromUtf16(fragment));
            worst.milliseconds = std::max(worst.milliseconds, time.milliseconds);
            worst.growth = std::max(worst.growth, time.growth);
        }
    }
    report.add(u"page_parse_100kb_ms_max"_s, worst.milliseconds, 50);
    report.add(u"page_parse_growth_max"_s, worst.growth, 12);
}

} // namespace vormel::bench
