#include "screenshots/AdditionScenes.h"

#include "screenshots/QueueScenes.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

void openAddSheet(Stage& stage, const QString& text)
{
    fillQueue(stage);
    QGuiApplication::clipboard()->setText(text);
    stage.part<QAbstractButton>("addURLs").click();
}

void handedLinks(Stage& stage)
{
    openAddSheet(stage, {});
    QTest::keyClicks(&stage.part("linkEditor"), u"https://files.example/typed.zip"_s);
    stage.window.offerLinks({fixtures::link(u"https://container.example/c/8F2A"_s),
                             fixtures::link(u"https://files.example/handed.part1.rar"_s),
                             fixtures::link(u"https://files.example/handed.part2.rar"_s)});
}

void copiedLinks(Stage& stage)
{
    fillQueue(stage);
    Notice notice;
    notice.key = u"clipboard"_s;
    notice.glyph = Glyph::linkBadgePlus;
    notice.text = [](AppLanguage language) { return pair(language, u"3 links copied", u"3 link copiati"); };
    notice.actions = {{{u"Add…", u"Aggiungi…"}, [] {}}};
    stage.desktop.notices.show(std::move(notice));
}

void chooser(Stage& stage)
{
    openAddSheet(stage, u"https://terabytez.example/1\nhttps://terabytez.example/2\nhttps://filestore.example/1\n"
                        u"https://www.other-host.example/1"_s);
    stage.part<QAbstractButton>("add").click();
}

void hostQuestion(Stage& stage)
{
    fillQueue(stage);
    stage.engine.manager().addURLs({fixtures::link(u"https://container.example/c/1"_s)}, std::nullopt);
    stage.settle();
    const std::variant<std::vector<Link>, ContainerError> links =
        std::vector{fixtures::link(u"http://terabytez.example/1"_s), fixtures::link(u"http://terabytez.example/2"_s),
                    fixtures::link(u"http://filestore.example/1"_s),
                    fixtures::link(u"http://another-host-with-a-long-name.example/1"_s)};
    stage.log->containers.back().answer->deliver(links);
}

void addAgain(Stage& stage)
{
    fillQueue(stage);
    std::vector<Link> links;
    for (const char* name : {"manual.pdf", "more.part1.rar", "more.part2.rar", "more.part3.rar", "notes.txt"})
        links.push_back(fixtures::link(u"https://files.example/"_s + QString::fromLatin1(name)));
    stage.engine.manager().addURLs(links, std::nullopt);
}

} // namespace

std::vector<Scene> additionScenes()
{
    return {
        {"queue-added", addAgain},
        {"sheet-add-empty", [](Stage& stage) { openAddSheet(stage, {}); }},
        {"sheet-add-links",
         [](Stage& stage) {
             openAddSheet(stage, u"https://files.example/a.part1.rar\nhttps://files.example/a.part2.rar\n"
                                 u"https://container.example/c/8F2A"_s);
         }},
        {"sheet-add-handed", handedLinks},
        {"sheet-add-chooser", chooser},
        {"notice-copied", copiedLinks},
        {"sheet-hosts", hostQuestion},
    };
}

} // namespace vormel::screenshots
