#include "resolvers/captcha/CaptchaPage.h"

#include "resolvers/containers/ClickNLoad.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/KnownHosts.h"
#include "text/BoundedRegex.h"
#include "text/Newline.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool separatesLinks(QChar letter)
{
    return letter == u' ' || letter == u'\t' || isNewline(letter);
}

bool hasHttpHost(const Link& link)
{
    return link.isHttp() && !link.host().isEmpty();
}

std::vector<Link> filesOfCalls(const QString& html, const QStringList& knownFileHosts)
{
    std::vector<Link> files = decodeCNLLinks(html);
    std::erase_if(files, [&](const Link& link) { return !acceptKnownHost(link, knownFileHosts); });
    std::transform(files.begin(), files.end(), files.begin(), &upgradeToHTTPS);
    return withoutDuplicates(std::move(files));
}

} // namespace

QString captchaPageScript()
{
    return uR"js((function() {
    var cnlInput = document.querySelector('input[name="urls"]');
    var txtAnchor = document.querySelector('a[href$=".txt"]');
    return JSON.stringify({
        cnlUrls: cnlInput ? cnlInput.value : null,
        txtHref: txtAnchor ? txtAnchor.href : null,
        html: document.documentElement.outerHTML
    });
})())js"_s;
}

std::optional<CaptchaPage> readCaptchaPage(const QString& told, const Link& containerURL,
                                           const QStringList& knownFileHosts)
{
    const QJsonDocument document = QJsonDocument::fromJson(told.toUtf8());
    if (!document.isObject())
        return std::nullopt;
    CaptchaPage page;
    page.html = document[u"html"].toString();
    page.calls = filesOfCalls(page.html, knownFileHosts);
    page.field = parseLinkList(document[u"cnlUrls"].toString());
    const std::optional<Link> textList = Link::parse(document[u"txtHref"].toString());
    if (textList && hasHttpHost(*textList))
        page.textList = textList;
    page.linkPages = extractLinkPages(page.html, containerURL);
    return page;
}

std::vector<Link> parseLinkList(QStringView text)
{
    std::vector<Link> links;
    for (auto begin = text.begin(); begin != text.end();) {
        const auto end = std::find_if(begin, text.end(), separatesLinks);
        const std::optional<Link> link = Link::parse(QStringView(begin, end));
        if (link && hasHttpHost(*link))
            links.push_back(*link);
        begin = end == text.end() ? end : end + 1;
    }
    return withoutDuplicates(std::move(links));
}

std::vector<Link> extractLinkPages(const QString& html, const Link& containerURL)
{
    static const BoundedRegex address(uR"(href=["'](/Link/[A-Za-z0-9]+\.html)["'])"_s);
    const QString base = containerURL.scheme() + u"://"_s + containerURL.host().toString();
    std::vector<Link> pages;
    for (const QStringView path : address.captures(html, 1)) {
        const std::optional<Link> page = Link::parse(QString(base).append(path));
        if (page && hasHttpHost(*page))
            pages.push_back(*page);
    }
    return withoutDuplicates(std::move(pages));
}

} // namespace vormel
