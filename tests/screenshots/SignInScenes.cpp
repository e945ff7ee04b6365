#include "screenshots/SignInScenes.h"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

/// Where the page would be; it has colours of its own, whatever the desktop's are.
QWidget* standIn()
{
    auto* page = new QLabel(u"The host's own page"_s);
    page->setAlignment(Qt::AlignCenter);
    page->setStyleSheet(u"background: white; color: black"_s);
    page->setFocusPolicy(Qt::StrongFocus);
    return page;
}

void open(Stage& stage, const QString& text)
{
    stage.desktop.web.onPage = [text](fixtures::ScriptedPage& page) {
        page.onWidget = standIn;
        page.onScript = [text](const QString& /*script*/) -> std::optional<QVariant> { return text; };
    };
    static_cast<void>(stage.engine.manager().questions().awaitLogin(ItemId::make(), SupportedHost::terabytez,
                                                                    stage.engine.clock.steadyNow()));
    stage.settle();
}

void arrive(Stage& stage, const QString& text, const QString& url, WebPage::Connection connection)
{
    open(stage, text);
    stage.desktop.web.pages.at(0)->shownConnection = connection;
    stage.desktop.web.pages.at(0)->arrivesAt(url);
}

void found(Stage& stage)
{
    arrive(stage, u"my username logout"_s, u"https://terabytez.example/account/"_s, WebPage::Connection::verified);
}

void unprotectedPage(Stage& stage)
{
    arrive(stage, u"logout"_s, u"http://login.a.very.long.name.that.fits.nowhere.terabytez.example/"_s,
           WebPage::Connection::unprotected);
}

/// As the keyboard shows it, on the line of the host.
void focus(Stage& stage)
{
    found(stage);
    stage.part("hostLine").setFocus(Qt::TabFocusReason);
}

void missing(Stage& stage)
{
    stage.desktop.web.missing = WebBrowser::Absence::notInstalled;
    open(stage, QString());
}

void failed(Stage& stage)
{
    open(stage, QString());
    stage.desktop.web.pages.at(0)->ends(WebPage::End::failed);
}

} // namespace

std::vector<Scene> signInScenes()
{
    return {
        {"sheet-sign-in", found},         {"sheet-sign-in-unprotected", unprotectedPage},
        {"sheet-sign-in-focus", focus},   {"sheet-sign-in-missing", missing},
        {"sheet-sign-in-failed", failed},
    };
}

} // namespace vormel::screenshots
