#include "sites/services/LinkPage.h"

#include "sites/services/Html.h"
#include "sites/services/PageScripts.h"
#include "sites/services/Statuses.h"

namespace vormel::sites {

namespace {

constexpr int oneDay = 24 * 60 * 60; // longer than anybody waits

std::string linkPageText(LinkPage kind, const std::string& target)
{
    switch (kind) {
    case LinkPage::newTab:
        return "<a id=\"out\" target=\"_blank\">Go</a>" +
               scriptElement("const out = document.getElementById('out'); out.href = " + inPieces(target) +
                             "; out.click(); out.removeAttribute('href')");
    case LinkPage::newWindow:
        return scriptElement("window.open(" + inPieces(target) + ")");
    case LinkPage::refresh:
        return "<meta http-equiv=\"refresh\" content=\"" + std::to_string(oneDay) + "; url=" + target + "\">";
    case LinkPage::script:
        return scriptElement("setTimeout(() => { location.href = '" + target + "' }, " + std::to_string(oneDay) +
                             "000)");
    case LinkPage::moving:
        return scriptElement("location.href = " + inPieces(target));
    case LinkPage::link:
        return anchorTo(target);
    case LinkPage::endless:
        return scriptElement("for (;;) {}");
    case LinkPage::redirect:
    case LinkPage::nothing:
        break;
    }
    return "<p>Nothing to see</p>";
}

} // namespace

Answer linkPageAnswer(LinkPage kind, const std::string& target)
{
    return kind == LinkPage::redirect ? Answer::redirect(found, target)
                                      : Answer::page(ok, htmlPage("Link", linkPageText(kind, target)));
}

std::string urlsField(const std::string& lines)
{
    return hiddenField("urls", lines);
}

std::string anchorTo(const std::string& address)
{
    return "<a href=\"" + address + "\">Link</a>";
}

} // namespace vormel::sites
