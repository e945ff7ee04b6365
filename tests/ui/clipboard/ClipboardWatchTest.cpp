#include "ui/clipboard/ClipboardWatch.h"

#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/clipboard/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Has what the test copies, and counts how often somebody reads it.
class ScriptedClipboard final : public Clipboard
{
public:
    [[nodiscard]] bool isOurs() const override { return m_isOurs; }
    [[nodiscard]] QString text() const override
    {
        ++reads;
        return m_text;
    }
    void copy(const QString& text, bool isOurs = false)
    {
        m_text = text;
        m_isOurs = isOurs;
        Q_EMIT changed();
    }

    mutable int reads = 0;

private:
    QString m_text;
    bool m_isOurs = false;
};

class ClipboardWatchTest : public ::testing::Test
{
protected:
    ClipboardWatchTest()
    {
        engine.settings().watchClipboard.set(true);
        QObject::connect(&watch, &ClipboardWatch::wanted, [this](const std::vector<Link>& links) {
            for (const Link& link : links)
                wanted << link.absoluteString();
        });
    }
    QString offer(AppLanguage language = AppLanguage::english) const
    {
        const Notice* const notice = desktop.notices.find(u"clipboard"_s);
        return notice ? notice->text(language) : QString();
    }
    void accept() { desktop.notices.run(u"clipboard"_s, 0); }

    fixtures::EngineOnScript engine{fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>())};
    fixtures::FakeDesktop desktop{engine};
    ScriptedClipboard clipboard;
    ClipboardWatch watch{{clipboard, engine.manager(), desktop.notices}};
    QStringList wanted;
};

const QString known = u"https://filestore.example/1"_s;

TEST_F(ClipboardWatchTest, OffersKnownLinksAndAddsNone)
{
    clipboard.copy(known + u"\nhttps://container.example/c\nhttps://news.example/1\nwords"_s);
    EXPECT_EQ(offer(), u"2 links copied");
    EXPECT_EQ(offer(AppLanguage::italian), u"2 link copiati");
    EXPECT_EQ(wanted, QStringList());
    accept();
    EXPECT_EQ(wanted, (QStringList{known, u"https://container.example/c"_s}));
    EXPECT_EQ(offer(), u"");
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(ClipboardWatchTest, CountsASingleLinkInBothLanguages)
{
    clipboard.copy(known);
    EXPECT_EQ(offer(), u"1 link copied");
    EXPECT_EQ(offer(AppLanguage::italian), u"1 link copiato");
}

TEST_F(ClipboardWatchTest, LeavesOtherTextsAlone)
{
    for (const QString& text : {u"words"_s, u"https://news.example/1"_s, QString(), u"see "_s + known}) {
        clipboard.copy(text);
        EXPECT_EQ(offer(), u"") << text.toStdString();
    }
}

TEST_F(ClipboardWatchTest, LeavesLinksAloneThatAreInTheQueue)
{
    engine.add(known);
    clipboard.copy(known.toUpper());
    EXPECT_EQ(offer(), u"");
    clipboard.copy(known + u"\nhttps://filestore.example/2"_s);
    EXPECT_EQ(offer(), u"1 link copied");
    accept();
    EXPECT_EQ(wanted, QStringList{u"https://filestore.example/2"_s});
}

TEST_F(ClipboardWatchTest, ATextIsOfferedOnce)
{
    clipboard.copy(known);
    desktop.notices.takeBack(u"clipboard"_s);
    clipboard.copy(known);
    EXPECT_EQ(offer(), u"");
    clipboard.copy(u"words"_s);
    clipboard.copy(known); // copied again later, as somebody means it
    EXPECT_EQ(offer(), u"1 link copied");
}

TEST_F(ClipboardWatchTest, ANewerOfferTakesThePlaceOfTheOlder)
{
    clipboard.copy(known);
    clipboard.copy(known + u"\nhttps://filestore.example/2"_s);
    EXPECT_EQ(offer(), u"2 links copied");
    clipboard.copy(u"words"_s);
    EXPECT_EQ(offer(), u"2 links copied"); // it stays for its time
}

TEST_F(ClipboardWatchTest, TheOfferGoesByItself)
{
    clipboard.copy(known);
    engine.clock.advance(std::chrono::seconds(19));
    EXPECT_NE(offer(), u"");
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(offer(), u"");
}

TEST_F(ClipboardWatchTest, OurOwnCopiesAreNotRead)
{
    clipboard.copy(known, true);
    EXPECT_EQ(offer(), u"");
    EXPECT_EQ(clipboard.reads, 0);
}

TEST_F(ClipboardWatchTest, WhatIsVeryLongIsNotLookedAt)
{
    clipboard.copy(known + u'\n' + QString(1024 * 1024, u' '));
    EXPECT_EQ(offer(), u"");
}

TEST_F(ClipboardWatchTest, SwitchedOffItReadsNothingAndTakesItsOfferBack)
{
    clipboard.copy(known);
    EXPECT_NE(offer(), u"");
    engine.settings().watchClipboard.set(false);
    EXPECT_EQ(offer(), u"");
    const int reads = clipboard.reads;
    clipboard.copy(u"https://filestore.example/2"_s);
    EXPECT_EQ(offer(), u"");
    EXPECT_EQ(clipboard.reads, reads);
    engine.settings().watchClipboard.set(true);
    EXPECT_EQ(clipboard.reads, reads); // what was copied before is nobody's offer
    clipboard.copy(u"https://filestore.example/3"_s);
    EXPECT_EQ(offer(), u"1 link copied");
}

TEST_F(ClipboardWatchTest, AnotherSettingLeavesTheOfferAlone)
{
    clipboard.copy(known);
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(offer(), u"1 link copied");
}

TEST(ClipboardWatchEndTest, TakesItsOfferWithIt)
{
    fixtures::EngineOnScript engine{fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>())};
    fixtures::FakeDesktop desktop(engine);
    engine.settings().watchClipboard.set(true);
    ScriptedClipboard clipboard;
    {
        const ClipboardWatch watch({clipboard, engine.manager(), desktop.notices});
        clipboard.copy(known);
        EXPECT_NE(desktop.notices.find(u"clipboard"_s), nullptr);
    }
    EXPECT_EQ(desktop.notices.find(u"clipboard"_s), nullptr);
}

TEST(DesktopClipboardTest, TellsOfCopiesAndWhoseTheyAre)
{
    const DesktopClipboard clipboard;
    QSignalSpy changes(&clipboard, &Clipboard::changed);
    QGuiApplication::clipboard()->setText(known);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(clipboard.text(), known);
    EXPECT_EQ(clipboard.isOurs(), QGuiApplication::clipboard()->ownsClipboard());
}

} // namespace
} // namespace vormel
