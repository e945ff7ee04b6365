#include "ui/sheets/captcha/CaptchaHostChooser.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/Part.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using fixtures::partOf;

PendingHostSelection::HostGroup offeredHost(const QString& host, std::size_t files)
{
    return {host, std::vector<Link>(files, link(u"https://%1/f"_s.arg(host)))};
}

class CaptchaHostChooserTest : public ::testing::Test
{
protected:
    CaptchaHostChooserTest()
    {
        chooser.resize(700, 450);
        chooser.show();
        chooser.offer({offeredHost(u"terabytez.example"_s, 2), offeredHost(u"a.example"_s, 1)});
        chooser.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&chooser));
    }
    QListView& hosts() { return partOf<QListView>(chooser, "captchaHosts"); }
    QString shown(int row, int role) { return hosts().model()->index(row, 0).data(role).toString(); }
    void click(int row)
    {
        const QRect place = hosts().visualRect(hosts().model()->index(row, 0));
        QTest::mouseClick(hosts().viewport(), Qt::LeftButton, {}, place.center());
    }

    CaptchaHostChooser chooser{nullptr};
    QSignalSpy chosen{&chooser, &CaptchaHostChooser::chosen};
    QSignalSpy all{&chooser, &CaptchaHostChooser::allChosen};
    QSignalSpy cancelled{&chooser, &CaptchaHostChooser::cancelled};
};

TEST_F(CaptchaHostChooserTest, TellsTheHostsAndTheirFiles)
{
    EXPECT_EQ(partOf<QLabel>(chooser, "captchaChooserTitle").text(), u"Choose Download Server");
    EXPECT_EQ(partOf<QLabel>(chooser, "captchaChooserText").text(),
              u"Links are available on 2 servers. Select the one you have a premium account for.");
    EXPECT_EQ(partOf<QPushButton>(chooser, "addAllCaptchaHosts").text(), u"Add all hosts");
    EXPECT_EQ(partOf<QPushButton>(chooser, "cancelCaptchaChoice").text(), u"Cancel");
    EXPECT_EQ(hosts().model()->rowCount(), 2);
    EXPECT_EQ(shown(0, Qt::DisplayRole), u"terabytez.example\n2 files");
    EXPECT_EQ(shown(0, Qt::AccessibleTextRole), u"terabytez.example, 2 files");
    EXPECT_EQ(shown(1, Qt::AccessibleTextRole), u"a.example, 1 file");
}

TEST_F(CaptchaHostChooserTest, AClickTakesThatHostOnce)
{
    click(1);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen.front().front().toInt(), 1);
}

TEST_F(CaptchaHostChooserTest, TheKeyboardTakesAHost)
{
    EXPECT_TRUE(hosts().hasFocus());
    QTest::keyClick(&hosts(), Qt::Key_Return);
    QTest::keyClick(&hosts(), Qt::Key_Down);
    QTest::keyClick(&hosts(), Qt::Key_Enter);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(chosen.front().front().toInt(), 0);
    EXPECT_EQ(chosen.back().front().toInt(), 1);
    QTest::keyClick(&hosts(), Qt::Key_Tab);
    EXPECT_TRUE(partOf<QPushButton>(chooser, "addAllCaptchaHosts").hasFocus());
}

TEST_F(CaptchaHostChooserTest, TheButtonsTakeAllOrNone)
{
    QTest::mouseClick(&partOf<QPushButton>(chooser, "addAllCaptchaHosts"), Qt::LeftButton);
    EXPECT_EQ(all.size(), 1);
    QTest::mouseClick(&partOf<QPushButton>(chooser, "cancelCaptchaChoice"), Qt::LeftButton);
    EXPECT_EQ(cancelled.size(), 1);
    EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(CaptchaHostChooserTest, ManyHostsNeedNoWidgetEach)
{
    HostGroupModel::Groups groups;
    for (int i = 0; i < 20'000; ++i)
        groups.push_back(offeredHost(u"host%1.example"_s.arg(i), 1));
    const qsizetype before = chooser.findChildren<QWidget*>().size();
    chooser.offer(groups);
    fixtures::turnEventLoop();
    EXPECT_LE(chooser.findChildren<QWidget*>().size(), before + 1); // a scroll bar may come
    EXPECT_EQ(hosts().model()->rowCount(), 20'000);
    QTest::keyClick(&hosts(), Qt::Key_End);
    QTest::keyClick(&hosts(), Qt::Key_Return);
    EXPECT_EQ(chosen.back().front().toInt(), 19'999);
}

TEST_F(CaptchaHostChooserTest, AHostIsNeverTakenForMarkup)
{
    chooser.offer({offeredHost(u"a.example"_s, 1), {u"<b>x</b>"_s, {}}});
    EXPECT_EQ(shown(1, Qt::ToolTipRole), u"&lt;b&gt;x&lt;/b&gt;");
}

TEST_F(CaptchaHostChooserTest, ItsModelKeepsTheRulesOfModels)
{
    const QAbstractItemModelTester tester(hosts().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    chooser.offer({offeredHost(u"a.example"_s, 1), offeredHost(u"b.example"_s, 1), offeredHost(u"c.example"_s, 1)});
    EXPECT_EQ(hosts().model()->rowCount(), 3);
}

} // namespace
} // namespace vormel
