#include "ui/Part.h"
#include "ui/queue/SetAndFile.h"
#include "ui/queue/list/RenamePopover.h"
#include "ui/queue/rows/HeaderLayout.h"
#include "ui/queue/rows/RowLayout.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class QueueButtonsTest : public ::testing::Test, protected fixtures::OpenSetAndFile
{
protected:
    HeaderLayout headerLayout() const
    {
        return {RowMetrics(view.font()), header().data(QueueModel::headerRole).value<HeaderContent>(),
                view.visualRect(header()), Qt::LeftToRight};
    }
    RowLayout rowLayout(const QModelIndex& index) const
    {
        return {RowMetrics(view.font()), index.data(QueueModel::contentRole).value<RowContent>(),
                view.visualRect(index), Qt::LeftToRight};
    }
    static QPoint placeOf(const std::vector<ButtonPlace>& places, RowButton button)
    {
        for (const ButtonPlace& place : places) {
            if (place.button == button)
                return place.rect.center();
        }
        ADD_FAILURE() << "there is no button " << static_cast<int>(button);
        return {};
    }
    void click(QPoint point) { QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point); }
    QString toolTipAt(QPoint point)
    {
        QToolTip::hideText();
        QHelpEvent event(QEvent::ToolTip, point, view.viewport()->mapToGlobal(point));
        QApplication::sendEvent(view.viewport(), &event);
        return QToolTip::text();
    }
    RenamePopover* popover() { return view.findChild<RenamePopover*>(); }
};

TEST_F(QueueButtonsTest, AClickOnAButtonRunsItAndItsRowBecomesTheCurrentOne)
{
    click(placeOf(rowLayout(plain()).buttons, RowButton::stop));
    EXPECT_EQ(items[2]->status().kind(), DownloadStatus::stopped);
    EXPECT_EQ(view.currentIndex(), plain());
    EXPECT_EQ(view.selectedRow(), plain());
    click(placeOf(rowLayout(member(1)).buttons, RowButton::stop));
    EXPECT_EQ(view.selectedRow(), member(1));
    EXPECT_EQ(items[1]->status().kind(), DownloadStatus::stopped);
    EXPECT_EQ(items[0]->status().kind(), DownloadStatus::paused);
    click(placeOf(headerLayout().buttons, RowButton::removeGroup));
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(QueueButtonsTest, AButtonThatThePointerLeftIsNotRun)
{
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, placeOf(rowLayout(plain()).buttons, RowButton::stop));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, placeOf(rowLayout(plain()).buttons, RowButton::remove));
    EXPECT_EQ(items[2]->status().kind(), DownloadStatus::paused);
    EXPECT_EQ(engine.manager().items().size(), 3U);
}

TEST_F(QueueButtonsTest, NothingComesIntoSightBelowAButtonThatIsDown)
{
    view.resize(700, 80);
    turnEventLoop();
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, placeOf(headerLayout().buttons, RowButton::removeGroup));
    view.reveal({items[2]->id()});
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, headerLayout().summary.center());
    view.reveal({items[2]->id()});
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
}

TEST_F(QueueButtonsTest, ASecondQuickClickDoesNotHitWhatCameUnderThePointer)
{
    const QPoint stop = placeOf(headerLayout().buttons, RowButton::stopGroup);
    click(stop);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, stop);
    EXPECT_EQ(items[0]->status().kind(), DownloadStatus::stopped); // the place is that of Start now
    EXPECT_EQ(popover(), nullptr);
    EXPECT_TRUE(view.isExpanded(header()));
    const QPoint remove = placeOf(headerLayout().buttons, RowButton::removeGroup);
    click(remove);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, remove);
    EXPECT_EQ(engine.manager().items().size(), 1U); // the row below has moved up
}

TEST_F(QueueButtonsTest, AFailedArchiveStepHasItsOwnRetry)
{
    items[2]->setStatus(DownloadStatus::completed);
    items[2]->setLocalPath(engine.sandbox.write(u"Downloads/b.zip"_s, "x"));
    items[2]->setExtractionStatus(ExtractionStatus::failure(u"no volume"_s));
    turnEventLoop();
    click(placeOf(rowLayout(plain()).buttons, RowButton::retryExtraction));
    EXPECT_NE(items[2]->extractionStatus(), ExtractionStatus::failure(u"no volume"_s));
}

TEST_F(QueueButtonsTest, TheButtonUnderThePointerIsSeen)
{
    const QPoint place = placeOf(rowLayout(plain()).buttons, RowButton::remove);
    const QRect row = view.visualRect(plain());
    view.setCurrentIndex(plain()); // a press does that
    QTest::mouseMove(view.viewport(), row.center());
    turnEventLoop();
    const QImage before = view.viewport()->grab(row).toImage();
    QTest::mouseMove(view.viewport(), place);
    turnEventLoop();
    const QImage hovered = view.viewport()->grab(row).toImage();
    EXPECT_NE(hovered, before);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, place);
    EXPECT_NE(view.viewport()->grab(row).toImage(), hovered);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, row.center());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(view.viewport(), &leave);
    EXPECT_EQ(view.viewport()->grab(row).toImage(), before);
}

TEST_F(QueueButtonsTest, ToolTipsTellWhatIsUnderThePointer)
{
    EXPECT_EQ(toolTipAt(placeOf(rowLayout(plain()).buttons, RowButton::resume)), u"Resume");
    EXPECT_EQ(toolTipAt(headerLayout().title.center()), u"Double-click to rename this group");
    EXPECT_TRUE(toolTipAt(rowLayout(plain()).name.center()).contains(u"b.zip"));
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(toolTipAt(headerLayout().title.center()), u"Doppio clic per rinominare il gruppo");
    EXPECT_EQ(toolTipAt(placeOf(headerLayout().buttons, RowButton::stopGroup)),
              u"Ferma il gruppo — resta fuori dalla coda finché non lo avvii");
}

TEST_F(QueueButtonsTest, ADoubleClickOnTheTitleAsksForAName)
{
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, headerLayout().title.center());
    ASSERT_NE(popover(), nullptr);
    auto& draft = fixtures::partOf<QLineEdit>(*popover(), "draftName");
    EXPECT_EQ(draft.text(), u"a");
    draft.setText(u"My film"_s);
    QTest::keyClick(&draft, Qt::Key_Return);
    EXPECT_EQ(header().data(QueueModel::nameRole).toString(), u"My film");
}

TEST_F(QueueButtonsTest, F2RenamesGroupsOnly)
{
    view.setCurrentIndex(plain());
    QTest::keyClick(&view, Qt::Key_F2);
    EXPECT_EQ(popover(), nullptr);
    view.setCurrentIndex(header());
    QTest::keyClick(&view, Qt::Key_F2);
    EXPECT_NE(popover(), nullptr);
}

TEST_F(QueueButtonsTest, DeleteRemovesARowOrAWholeGroup)
{
    view.setCurrentIndex(plain());
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    view.setCurrentIndex(header());
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_TRUE(engine.manager().items().empty());
    QTest::keyClick(&view, Qt::Key_Delete); // nothing is selected
}

TEST_F(QueueButtonsTest, DeleteRemovesNothingThatNobodySelected)
{
    const auto expectNothingRemoved = [this](const char* why, std::size_t count = 3) {
        EXPECT_FALSE(view.selectedRow().isValid()) << why;
        QTest::keyClick(&view, Qt::Key_Delete);
        EXPECT_EQ(engine.manager().items().size(), count) << why;
    };
    QTest::keyClick(&view, Qt::Key_Tab); // the focus comes back by the keyboard, and a row with it
    view.setFocus(Qt::TabFocusReason);
    view.selectionModel()->setCurrentIndex(header(), QItemSelectionModel::NoUpdate);
    expectNothingRemoved("a row that the focus came to");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, rowLayout(plain()).name.center());
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, rowLayout(plain()).name.center());
    EXPECT_EQ(view.currentIndex(), plain());
    expectNothingRemoved("a row that was deselected");
    view.setCurrentIndex(member(0));
    view.collapse(header());
    EXPECT_EQ(view.currentIndex(), header());
    expectNothingRemoved("the group of a row that was selected");
    view.setCurrentIndex(plain());
    engine.manager().commands().removeItems({items[2]->id()}); // as extraction may, for instance
    turnEventLoop();
    EXPECT_TRUE(view.currentIndex().isValid());
    expectNothingRemoved("the neighbour of a row that went", 2);
}

TEST_F(QueueButtonsTest, ARowRemovedByItsButtonLeavesNothingSelected)
{
    click(placeOf(rowLayout(plain()).buttons, RowButton::remove));
    turnEventLoop();
    EXPECT_EQ(engine.manager().items().size(), 2U);
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    QTest::keyClick(&view, Qt::Key_Space); // selects the current one
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_LT(engine.manager().items().size(), 2U);
}

TEST_F(QueueButtonsTest, APressOnAHalfHiddenRowDoesNotScrollItAwayFromThePointer)
{
    view.resize(700, view.visualRect(plain()).center().y() + 6);
    turnEventLoop();
    const int before = view.visualRect(plain()).top();
    click(placeOf(rowLayout(plain()).buttons, RowButton::stop));
    EXPECT_EQ(view.visualRect(plain()).top(), before);
    EXPECT_EQ(items[2]->status().kind(), DownloadStatus::stopped);
}

TEST_F(QueueButtonsTest, LeftAndRightCloseAndOpenAGroup)
{
    view.setCurrentIndex(header());
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_FALSE(view.isExpanded(header()));
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_TRUE(view.isExpanded(header()));
}

TEST_F(QueueButtonsTest, TheTriangleOpensAndClosesAndItsRowBecomesTheCurrentOne)
{
    click(headerLayout().disclosure.center());
    EXPECT_FALSE(view.isExpanded(header()));
    click(headerLayout().disclosure.center());
    EXPECT_TRUE(view.isExpanded(header()));
    EXPECT_EQ(view.currentIndex(), header());
    EXPECT_EQ(view.selectedRow(), header());
}

TEST_F(QueueButtonsTest, AltAndArrowsMoveTheSelectedGroup)
{
    view.setCurrentIndex(member(1));
    QTest::keyClick(&view, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(engine.manager().items().front(), items[2]);
    EXPECT_EQ(view.currentIndex().data(QueueModel::idRole).value<ItemId>(), items[1]->id());
    QTest::keyClick(&view, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(engine.manager().items().front(), items[0]);
}

TEST_F(QueueButtonsTest, ADoubleClickAndEnterOpenWhatIsFinished)
{
    const QUrl file = QUrl::fromLocalFile(engine.sandbox.write(u"Downloads/b.zip"_s, "x"));
    const QPoint name = rowLayout(plain()).name.center();
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, name);
    view.setCurrentIndex(plain());
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
    items[2]->setLocalPath(file.toLocalFile());
    items[2]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, name);
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, name);
    QTest::mouseDClick(view.viewport(), Qt::RightButton, {}, name);
    EXPECT_EQ(desktop.opener.opened, QList{file});
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(&view, Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(desktop.opener.opened, (QList{file, file, file}));
}

TEST_F(QueueButtonsTest, AHeldEnterOpensOnce)
{
    items[2]->setLocalPath(engine.sandbox.write(u"Downloads/b.zip"_s, "x"));
    items[2]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    view.setCurrentIndex(plain());
    for (const bool isRepeated : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, isRepeated);
        QCoreApplication::sendEvent(&view, &press);
    }
    EXPECT_EQ(desktop.opener.opened.size(), 1);
}

TEST_F(QueueButtonsTest, EnterOpensAndClosesAGroup)
{
    view.setCurrentIndex(header());
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_FALSE(view.isExpanded(header()));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(view.isExpanded(header()));
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
}

TEST_F(QueueButtonsTest, EverythingHasItsPlaceInTheSmallestWindow)
{
    items[0]->setFilename(u"Long.name."_s.repeated(20) + u".part1.rar"_s);
    items[1]->setFilename(u"Long.name."_s.repeated(20) + u".part2.rar"_s);
    items[0]->setStatus(DownloadStatus::completed);
    items[1]->setStatus(DownloadStatus::downloading);
    engine.settings().language.set(AppLanguage::italian);
    view.resize(520, 400); // what the smallest window leaves for the list
    turnEventLoop();
    view.expand(header()); // it is another set now
    const HeaderLayout layout = headerLayout();
    EXPECT_EQ(layout.buttons.size(), 5U);
    EXPECT_LT(layout.title.right(), layout.buttons.front().rect.left());
    EXPECT_GT(layout.title.width(), 200);
    for (const QRect& rect : layout.shown())
        EXPECT_TRUE(view.viewport()->rect().contains(rect));
    const RowLayout row = rowLayout(member(1));
    EXPECT_GE(row.status.width(), QFontMetrics(RowMetrics(view.font()).captionFont).horizontalAdvance(u"Download"_s));
    EXPECT_LT(row.status.right(), row.buttons.front().rect.left());
}

} // namespace
} // namespace vormel
