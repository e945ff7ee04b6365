#include "ui/queue/accessibility/RowOrder.h"

#include <QStandardItemModel>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Five rows at the top; the second and the fourth have two and three below them.
class RowOrderTest : public ::testing::Test
{
protected:
    RowOrderTest()
    {
        for (int row = 0; row < 5; ++row)
            model.appendRow(new QStandardItem(QString::number(row)));
        addBelow(1, 2);
        addBelow(3, 3);
        view.setModel(&model);
    }
    void addBelow(int row, int count)
    {
        for (int below = 0; below < count; ++below)
            model.item(row)->appendRow(new QStandardItem(u"%1.%2"_s.arg(row).arg(below)));
    }
    QModelIndex top(int row) const { return model.index(row, 0); }
    /// As it is numbered; the way back must lead to the same place.
    static QString read(const RowOrder& order)
    {
        QStringList texts;
        for (int place = 0; place < order.count(); ++place) {
            texts << order.at(place).data().toString();
            EXPECT_EQ(order.placeOf(order.at(place)), place);
        }
        return texts.join(u' ');
    }

    QStandardItemModel model;
    QTreeView view;
};

TEST_F(RowOrderTest, RowsBelowClosedOnesHaveNoPlace)
{
    const RowOrder order(view);
    EXPECT_EQ(read(order), u"0 1 2 3 4");
    EXPECT_EQ(order.placeOf(model.index(0, 0, top(1))), -1);
    EXPECT_EQ(order.placeOf({}), -1);
    EXPECT_FALSE(order.at(5).isValid());
    EXPECT_FALSE(order.at(-1).isValid());
}

TEST_F(RowOrderTest, RowsBelowOpenOnesStandBehindThem)
{
    const RowOrder order(view);
    view.expand(top(1));
    EXPECT_EQ(read(order), u"0 1 1.0 1.1 2 3 4");
    view.expand(top(3));
    EXPECT_EQ(read(order), u"0 1 1.0 1.1 2 3 3.0 3.1 3.2 4");
    view.collapse(top(1));
    EXPECT_EQ(read(order), u"0 1 2 3 3.0 3.1 3.2 4");
}

TEST_F(RowOrderTest, FollowsRowsThatComeAndGo)
{
    const RowOrder order(view);
    view.expand(top(3));
    EXPECT_EQ(order.count(), 8);
    model.removeRow(0);
    EXPECT_EQ(read(order), u"1 2 3 3.0 3.1 3.2 4");
    model.removeRow(1, top(2));
    EXPECT_EQ(read(order), u"1 2 3 3.0 3.2 4");
    model.appendRow(new QStandardItem(u"5"_s));
    EXPECT_EQ(read(order), u"1 2 3 3.0 3.2 4 5");
    model.clear();
    EXPECT_EQ(order.count(), 0);
}

} // namespace
} // namespace vormel
