#include "ui/queue/accessibility/AccessibleQueue.h"

#include "ui/queue/SetAndFile.h"

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// Before the list is there, as in the program.
struct QueueAccessibility
{
    QueueAccessibility() { installQueueAccessibility(); }
};

class AccessibleQueueTest : public ::testing::Test, QueueAccessibility, protected fixtures::SetAndFile
{
protected:
    QAccessibleInterface& list() { return *QAccessible::queryAccessibleInterface(&view); }
    QAccessibleInterface& row(int place) { return *list().child(place); }
};

const QString& toggle = QAccessibleActionInterface::toggleAction();
const QString& press = QAccessibleActionInterface::pressAction();

TEST_F(AccessibleQueueTest, ARowKeepsItsInterfaceWhereverItGoes)
{
    QAccessibleInterface& plain = row(1);
    EXPECT_EQ(list().indexOfChild(&plain), 1);
    row(0).actionInterface()->doAction(toggle);
    EXPECT_EQ(list().childCount(), 4);
    EXPECT_EQ(&row(3), &plain);
    EXPECT_EQ(list().indexOfChild(&plain), 3);
    EXPECT_EQ(plain.parent(), &list());
}

TEST_F(AccessibleQueueTest, StatesTellTheTruth)
{
    row(0).actionInterface()->doAction(toggle);
    QAccessibleInterface& member = row(1);
    EXPECT_TRUE(row(0).state().expanded);
    EXPECT_FALSE(row(0).state().collapsed);
    EXPECT_FALSE(member.state().expandable);
    EXPECT_FALSE(member.state().invisible);
    member.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(member.state().focused);
    EXPECT_TRUE(member.state().selected);
    EXPECT_EQ(list().focusChild(), &member);
    row(0).actionInterface()->doAction(toggle);
    EXPECT_TRUE(row(0).state().collapsed);
    EXPECT_TRUE(member.state().invisible);
    EXPECT_EQ(list().indexOfChild(&member), -1);
    view.resize(700, 60);
    turnEventLoop();
    EXPECT_TRUE(row(1).state().offscreen);
}

TEST_F(AccessibleQueueTest, WhatIsAtAPointIsFoundDownToTheButton)
{
    QAccessibleInterface& plain = row(1);
    QAccessibleInterface& remove = *plain.child(plain.childCount() - 1);
    const QPoint point = remove.rect().center();
    EXPECT_EQ(list().childAt(point.x(), point.y()), &plain);
    EXPECT_EQ(plain.childAt(point.x(), point.y()), &remove);
    EXPECT_EQ(plain.indexOfChild(&remove), plain.childCount() - 1);
    EXPECT_EQ(remove.parent(), &plain);
}

TEST_F(AccessibleQueueTest, AButtonThatTheRowShowsNoMoreIsInvalidAndDoesNothing)
{
    QAccessibleInterface& resume = *row(1).child(0);
    EXPECT_EQ(resume.text(QAccessible::Name), u"Resume");
    items[2]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    EXPECT_FALSE(resume.isValid());
    resume.actionInterface()->doAction(press);
    EXPECT_EQ(items[2]->status().kind(), DownloadStatus::completed);
}

TEST_F(AccessibleQueueTest, ARowThatLeftTheQueueIsInvalidAndThenForgotten)
{
    QAccessibleInterface* const plain = &row(1);
    QAccessibleInterface* const remove = plain->child(plain->childCount() - 1);
    const QAccessible::Id rowId = QAccessible::uniqueId(plain);
    const QAccessible::Id buttonId = QAccessible::uniqueId(remove);
    remove->actionInterface()->doAction(press);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    EXPECT_FALSE(plain->isValid());
    EXPECT_TRUE(plain->state().invalid);
    plain->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    turnEventLoop();
    EXPECT_EQ(QAccessible::accessibleInterface(rowId), nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(buttonId), nullptr);
}

TEST_F(AccessibleQueueTest, RowsAndButtonsSpeakTheLanguageOfTheProgram)
{
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(row(1).child(0)->text(QAccessible::Name), u"Riprendi");
    EXPECT_TRUE(row(1).text(QAccessible::Name).contains(u"In pausa"));
}

} // namespace
} // namespace vormel
