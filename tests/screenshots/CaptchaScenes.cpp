#include "screenshots/CaptchaScenes.h"

#include "fixtures/EventLoop.h"
#include "ui/sheets/captcha/CaptchaSheetView.h"

#include <QAbstractButton>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

/// Where the container's page would be.
QWidget* containerStandIn()
{
    auto* page = new QLabel(u"I am not a robot"_s);
    page->setAlignment(Qt::AlignCenter);
    page->setStyleSheet(u"background: white; color: black"_s);
    return page;
}

/// The page has this in it.
void openContainer(Stage& stage, const QJsonObject& told)
{
    const QString text = QString::fromUtf8(QJsonDocument(told).toJson());
    stage.desktop.web.onPage = [text](fixtures::ScriptedPage& page) {
        page.onWidget = containerStandIn;
        page.onScript = [text](const QString& /*script*/) { return QVariant(text); };
    };
    const Link container = fixtures::link(u"https://container.example/c/8F2A"_s);
    stage.engine.manager().questions().ask(PendingCaptcha{ItemId::make(), container, std::nullopt});
    stage.settle();
    stage.desktop.web.pages.at(0)->arrivesAt(container.absoluteString());
}

void extractLinks(Stage& stage, const QJsonObject& told, const char* awaited)
{
    openContainer(stage, told);
    stage.part<QAbstractButton>("extractLinks").click();
    static_cast<void>(fixtures::waitUntil([&] { return stage.part(awaited).isVisible(); }));
    stage.settle();
}

void hostChoice(Stage& stage)
{
    const QString links = u"https://terabytez.example/1 https://terabytez.example/2 https://rapidgator.net/file/1 "
                          "https://another-host-with-a-long-name.example/1"_s;
    extractLinks(stage, {{u"cnlUrls"_s, links}}, "captchaHosts");
}

} // namespace

std::vector<Scene> captchaScenes()
{
    return {
        {"sheet-captcha", [](Stage& stage) { openContainer(stage, {}); }},
        {"sheet-captcha-error", [](Stage& stage) { extractLinks(stage, {}, "captchaError"); }},
        {"sheet-captcha-progress",
         [](Stage& stage) {
             extractLinks(stage, {{u"html"_s, u"<a href=\"/Link/1.html\"><a href=\"/Link/2.html\">"_s}},
                          "captchaProgress");
         }},
        {"sheet-captcha-hosts", hostChoice},
    };
}

} // namespace vormel::screenshots
