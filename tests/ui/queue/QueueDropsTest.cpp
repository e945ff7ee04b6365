#include "ui/queue/QueuePage.h"

#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class QueueDropsTest : public fixtures::QueuePage
{
protected:
    bool enter(const QMimeData& data)
    {
        QDragEnterEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QApplication::sendEvent(&page, &event);
        return event.isAccepted();
    }
    /// What the other program is told of each step of a drag that proposes an action; no action where it is refused.
    QList<Qt::DropAction> answers(Qt::DropActions possible, const QMimeData& data)
    {
        QList<Qt::DropAction> told;
        const auto tell = [&](QDropEvent&& event) {
            event.ignore();
            QApplication::sendEvent(&page, &event);
            told << (event.isAccepted() ? event.dropAction() : Qt::IgnoreAction);
        };
        tell(QDragEnterEvent({50, 50}, possible, &data, Qt::LeftButton, {}));
        tell(QDragMoveEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        tell(QDropEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        turnEventLoop();
        return told;
    }
    bool drop(const QMimeData& data)
    {
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QApplication::sendEvent(&page, &event);
        turnEventLoop();
        return event.isAccepted();
    }
};

TEST_F(QueueDropsTest, DroppedTextAddsItsHttpLinks)
{
    QMimeData data;
    data.setText(u"see\nhttps://H.example/a.zip\n ftp://h.example/b\nhttp://h.example/c.zip"_s);
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(part("dropOverlay").isVisible());
    EXPECT_TRUE(drop(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_EQ(queue(), (QStringList{u"https://H.example/a.zip"_s, u"http://h.example/c.zip"_s}));
}

TEST_F(QueueDropsTest, NoDropIsEverAMove)
{
    // Where several are possible, Qt proposes to move.
    const std::pair<Qt::DropActions, Qt::DropAction> proposals[] = {
        {Qt::CopyAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction | Qt::TargetMoveAction, Qt::CopyAction},
        {Qt::LinkAction, Qt::LinkAction},
        {Qt::MoveAction | Qt::LinkAction, Qt::LinkAction},
        {Qt::MoveAction, Qt::IgnoreAction},
    };
    qsizetype added = 0;
    for (const auto& [possible, taken] : proposals) {
        QMimeData data;
        data.setText(u"https://h.example/%1.zip"_s.arg(added));
        EXPECT_EQ(answers(possible, data), QList<Qt::DropAction>(3, taken)) << possible.toInt();
        added += taken == Qt::IgnoreAction ? 0 : 1;
        EXPECT_EQ(queue().size(), added) << possible.toInt();
        EXPECT_FALSE(part("dropOverlay").isVisible());
    }
}

TEST_F(QueueDropsTest, DroppedAddressesAddTheirHttpLinksOnce)
{
    QMimeData data;
    data.setUrls({QUrl(u"file:///etc/passwd"_s), QUrl(u"https://h.example/a%20b.zip"_s)});
    data.setText(u"https://h.example/title-of-the-page"_s);
    EXPECT_TRUE(enter(data)); // without it no drop is delivered
    EXPECT_TRUE(drop(data));
    EXPECT_EQ(queue(), QStringList{u"https://h.example/a%20b.zip"_s});
}

TEST_F(QueueDropsTest, ADropWithoutLinksAddsNothingAndSaysNothing)
{
    QMimeData data;
    data.setUrls({QUrl(u"file:///etc/passwd"_s)});
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(drop(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_TRUE(queue().isEmpty());
}

TEST_F(QueueDropsTest, RefusesDropsThatAreNeitherAddressesNorText)
{
    QMimeData data;
    data.setImageData(QImage(1, 1, QImage::Format_RGB32));
    EXPECT_FALSE(enter(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_FALSE(drop(data));
}

TEST_F(QueueDropsTest, TheOverlayLiesOverTheWholePageAndGoesWithTheDrag)
{
    engine.add(u"https://h.example/a.zip"_s);
    QMimeData data;
    data.setText(u"https://h.example/b.zip"_s);
    enter(data);
    EXPECT_EQ(part("dropOverlay").geometry(), page.rect());
    EXPECT_EQ(page.children().last(), &part("dropOverlay"));
    EXPECT_EQ(part<QLabel>("dropText").text(), u"Drop URLs to add");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(part<QLabel>("dropText").text(), u"Trascina URL qui");
    QDragLeaveEvent leave;
    QApplication::sendEvent(&page, &leave);
    EXPECT_FALSE(part("dropOverlay").isVisible());
}

} // namespace
} // namespace vormel
