#include "ui/sheets/LinkEditor.h"

#include "fixtures/EventLoop.h"

#include <QApplication>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class LinkEditorTest : public ::testing::Test
{
protected:
    LinkEditorTest()
    {
        editor.resize(300, 200);
        editor.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&editor));
    }
    /// What the other side is told of each step; no action where it is refused.
    QList<Qt::DropAction> answers(Qt::DropActions possible, const QMimeData& data)
    {
        QList<Qt::DropAction> told;
        const auto tell = [&](QDropEvent&& event) {
            event.ignore();
            QApplication::sendEvent(editor.viewport(), &event);
            told << (event.isAccepted() ? event.dropAction() : Qt::IgnoreAction);
        };
        tell(QDragEnterEvent({50, 50}, possible, &data, Qt::LeftButton, {}));
        tell(QDragMoveEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        tell(QDropEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        return told;
    }

    LinkEditor editor;
};

TEST_F(LinkEditorTest, TakesACopyOfWhatAnotherProgramProposesToMove)
{
    QMimeData data;
    data.setText(u"https://h.example/a.zip"_s);
    const std::pair<Qt::DropActions, Qt::DropAction> proposals[] = {
        {Qt::CopyAction | Qt::MoveAction, Qt::CopyAction},
        {Qt::CopyAction, Qt::CopyAction},
        {Qt::LinkAction | Qt::MoveAction, Qt::LinkAction},
        {Qt::MoveAction, Qt::IgnoreAction},
    };
    for (const auto& [possible, taken] : proposals) {
        editor.clear();
        EXPECT_EQ(answers(possible, data), QList<Qt::DropAction>(3, taken)) << possible.toInt();
        EXPECT_EQ(editor.toPlainText().isEmpty(), taken == Qt::IgnoreAction) << possible.toInt();
    }
}

TEST_F(LinkEditorTest, RefusesWhatIsNoText)
{
    QMimeData data;
    data.setImageData(QImage(1, 1, QImage::Format_RGB32));
    EXPECT_EQ(answers(Qt::CopyAction, data), QList<Qt::DropAction>(3, Qt::IgnoreAction));
    EXPECT_EQ(editor.toPlainText(), u"");
}

} // namespace
} // namespace vormel
