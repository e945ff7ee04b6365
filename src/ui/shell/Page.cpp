#include "ui/shell/Page.h"

namespace vormel {

Glyph pageGlyph(Page page)
{
    switch (page) {
    case Page::downloads:
        return Glyph::arrowDownCircleFill;
    case Page::accounts:
        return Glyph::personKeyFill;
    case Page::settings:
        return Glyph::gearFill;
    }
    Q_UNREACHABLE();
}

QString pageLabel(Page page, AppLanguage language)
{
    switch (page) {
    case Page::downloads:
        return pair(language, u"Downloads", u"Download");
    case Page::accounts:
        return pair(language, u"Accounts", u"Account");
    case Page::settings:
        return pair(language, u"Settings", u"Impostazioni");
    }
    Q_UNREACHABLE();
}

QString pageTitle(Page page, AppLanguage language)
{
    if (page == Page::accounts)
        return pair(language, u"Premium Accounts", u"Account Premium");
    return pageLabel(page, language);
}

} // namespace vormel
