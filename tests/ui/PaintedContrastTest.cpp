#include "app/MainWindow.h"
#include "fixtures/Contrast.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/Palettes.h"
#include "kit/ReadableStyle.h"
#include "kit/Theme.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Focusable.h"
#include "ui/Part.h"
#include "ui/accounts/AccountEditView.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/list/RenamePopover.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"
#include "ui/sheets/HostSelectionSheetView.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::contrastOf;
using fixtures::describe;
using fixtures::focusable;
using fixtures::partOf;
using fixtures::readable;
using fixtures::turnEventLoop;
using fixtures::visible;

QImage picture(QWidget& widget, const QRect& part = QRect(0, 0, -1, -1))
{
    return widget.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
}

/// How many pixels tell the two pictures apart.
int tellingPixels(const QImage& before, const QImage& after)
{
    EXPECT_EQ(before.size(), after.size());
    int count = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            const QRgb was = before.pixel(x, y);
            const QRgb is = after.pixel(x, y);
            count += was != is && contrastOf(QColor(was), QColor(is)) >= visible ? 1 : 0;
        }
    }
    return count;
}

QColor mostFrequent(const QImage& image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QRgb most = 0;
    for (auto count = counts.begin(); count != counts.end(); ++count) {
        if (*count > counts.value(most))
            most = count.key();
    }
    return QColor(most);
}

/// In each of the palettes, with a group and a plain row.
class PaintedContrastTest : public ::testing::TestWithParam<int>
{
protected:
    PaintedContrastTest()
    {
        QApplication::setPalette(fixtures::allPalettes().at(GetParam()));
        engine.add(
            {u"https://h.example/a.part1.rar"_s, u"https://h.example/a.part2.rar"_s, u"https://h.example/b.zip"_s});
        engine.manager().accounts().set({fixtures::account(SupportedHost::filestore, u"anna"_s)});
        show(window);
    }
    ~PaintedContrastTest() override { QApplication::setPalette(QPalette()); }

    static void show(QWidget& widget)
    {
        widget.show();
        widget.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&widget));
        turnEventLoop();
        QTest::keyClick(&widget, Qt::Key_Tab); // from here on the focus is moved by the keyboard
    }
    static void expectFocusShows(QWidget& part)
    {
        if (QWidget* const focused = QApplication::focusWidget())
            focused->clearFocus();
        turnEventLoop();
        const QImage before = picture(part);
        part.setFocus(Qt::TabFocusReason);
        turnEventLoop();
        ASSERT_TRUE(part.hasFocus()) << describe(part);
        // As many as a line around it has, at least on two of its sides.
        const int least = qMin(part.width() + part.height(), 200);
        EXPECT_GE(tellingPixels(before, picture(part)), least) << describe(part);
    }
    static void expectFocusShowsOnAllOf(QWidget& whole)
    {
        show(whole);
        const QList<QWidget*> parts = focusable(whole);
        EXPECT_FALSE(parts.isEmpty());
        for (QWidget* const part : parts)
            expectFocusShows(*part);
    }
    QueueView& list() { return partOf<QueueView>(window, "queueView"); }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
};

TEST_P(PaintedContrastTest, EveryControlOfEveryPageShowsThatItHasTheFocus)
{
    desktop.managers.manager = PackageManager::apt;
    engine.settings().useCustomExtractionFolder.set(true);
    list().setCurrentIndex(list().model()->index(0, 0));
    for (const Page page : allPages) {
        window.showPage(page);
        turnEventLoop();
        for (QWidget* const part : focusable(window))
            expectFocusShows(*part);
    }
}

TEST_P(PaintedContrastTest, ARowThatIsCurrentAndNotSelectedShowsTheFocus)
{
    list().selectionModel()->setCurrentIndex(list().model()->index(1, 0), QItemSelectionModel::Clear);
    expectFocusShows(list());
}

TEST_P(PaintedContrastTest, TheSheetForLinksShowsWhereTheFocusIs)
{
    auto* sheet = new AddURLView(engine.settings(), engine.manager().resolvers(), &window);
    sheet->show();
    partOf<QPlainTextEdit>(*sheet, "linkEditor").setPlainText(u"https://h.example/a"_s);
    expectFocusShowsOnAllOf(*sheet);
}

TEST_P(PaintedContrastTest, TheQuestionForAPasswordShowsWhereTheFocusIs)
{
    expectFocusShowsOnAllOf(*new ArchivePasswordSheetView({}, engine.settings(), &window));
}

TEST_P(PaintedContrastTest, TheFormOfAnAccountShowsWhereTheFocusIs)
{
    expectFocusShowsOnAllOf(*new AccountEditView(engine.settings(), hostLabels(HostProfiles()), &window));
}

TEST_P(PaintedContrastTest, TheQuestionForHostsShowsWhereTheFocusIs)
{
    PendingHostSelection pending;
    pending.groups.push_back({u"One"_s, {fixtures::link(u"https://one.example/a"_s)}});
    pending.groups.push_back({u"Two"_s, {fixtures::link(u"https://two.example/a"_s)}});
    expectFocusShowsOnAllOf(*new HostSelectionSheetView(pending, engine.settings(), &window));
}

TEST_P(PaintedContrastTest, ThePopoverForANameShowsWhereTheFocusIs)
{
    expectFocusShowsOnAllOf(*new RenamePopover(u"a"_s, AppLanguage::english, &window));
}

TEST_P(PaintedContrastTest, TheTextsOfASelectedRowCanBeReadOnIt)
{
    list().setCurrentIndex(list().model()->index(1, 0));
    turnEventLoop();
    const QImage row = picture(*list().viewport(), list().visualRect(list().currentIndex()));
    EXPECT_GE(contrastOf(mostFrequent(row), list().palette().color(QPalette::HighlightedText)), readable);
}

TEST_P(PaintedContrastTest, TheTextsOfARowUnderThePointerCanBeReadOnIt)
{
    const QModelIndex index = list().model()->index(1, 0);
    const QRect place = list().visualRect(index);
    QMouseEvent move(QEvent::MouseMove, place.center(), list().viewport()->mapToGlobal(place.center()), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &move);
    turnEventLoop();
    const QColor ground = mostFrequent(picture(*list().viewport(), place));
    EXPECT_NE(ground, list().palette().color(QPalette::Base));
    const Theme theme(list().palette());
    for (const Tint tint : {Tint::text, Tint::secondary, Tint::tertiary, Tint::orange, Tint::green, Tint::red})
        EXPECT_GE(contrastOf(ground, theme.color(tint)), readable) << static_cast<int>(tint);
}

TEST_P(PaintedContrastTest, TheChosenPageCanBeReadInTheSidebar)
{
    auto& sidebar = partOf<QListWidget>(window, "sidebar");
    const QImage row = picture(*sidebar.viewport(), sidebar.visualItemRect(sidebar.currentItem()));
    EXPECT_GE(contrastOf(mostFrequent(row), sidebar.palette().color(QPalette::HighlightedText)), readable);
}

TEST_P(PaintedContrastTest, TheInvitationToDropCanBeReadAboveTheList)
{
    engine.add({u"https://h.example/c.zip"_s, u"https://h.example/d.zip"_s, u"https://h.example/e.zip"_s,
                u"https://h.example/f.zip"_s});
    list().setCurrentIndex(list().model()->index(3, 0));
    auto& page = partOf<QWidget>(window, "downloadQueueView");
    QMimeData data;
    data.setText(u"https://h.example/x.zip"_s);
    QDragEnterEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&page, &event);
    auto& words = partOf<QLabel>(page, "dropText");
    const QColor color = words.palette().color(QPalette::WindowText);
    const QRect place(words.mapTo(&page, QPoint()), words.size());
    EXPECT_NE(mostFrequent(picture(page, place)), color);
    words.setText(QString()); // what is behind them
    const QImage ground = picture(page, place);
    double least = 21;
    for (int y = 0; y < ground.height(); ++y) {
        for (int x = 0; x < ground.width(); ++x)
            least = std::min(least, contrastOf(QColor(ground.pixel(x, y)), color));
    }
    EXPECT_GE(least, readable);
}

TEST_P(PaintedContrastTest, WhatCanBeTypedIntoHasAnEdgeThatIsSeen)
{
    auto& sheet = *new AddURLView(engine.settings(), engine.manager().resolvers(), &window);
    sheet.show();
    partOf<QPlainTextEdit>(sheet, "linkEditor").setPlainText(u"https://h.example/a"_s);
    auto& popover = *new RenamePopover(u"a"_s, AppLanguage::english, &window);
    popover.show();
    window.showPage(Page::settings);
    turnEventLoop();
    for (QWidget* const field : {&partOf<QWidget>(sheet, "linkEditor"), &partOf<QWidget>(popover, "draftName"),
                                 &partOf<QWidget>(window, "concurrentDownloads")}) {
        field->clearFocus();
        const QImage painted = picture(*field);
        const QColor edge(painted.pixel(0, painted.height() / 2));
        EXPECT_GE(contrastOf(edge, mostFrequent(painted)), visible) << describe(*field);
    }
}

INSTANTIATE_TEST_SUITE_P(Palettes, PaintedContrastTest, ::testing::Range(0, 4));

TEST(ReadableStyle, WhatQtItselfHighlightsAndHintsAtCanBeRead)
{
    ReadableStyle style;
    for (const QPalette& before : fixtures::allPalettes()) {
        QPalette palette = before;
        style.polish(palette);
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            const auto color = [&](QPalette::ColorRole role) { return palette.color(group, role); };
            EXPECT_GE(contrastOf(color(QPalette::HighlightedText), color(QPalette::Highlight)), readable);
            EXPECT_GE(contrastOf(color(QPalette::PlaceholderText), color(QPalette::Base)), readable);
        }
    }
}

TEST(ReadableStyle, TheApplicationsOwnPaletteIsThatOfTheStyle)
{
    const QPalette palette = QApplication::palette();
    EXPECT_GE(contrastOf(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), readable);
}

} // namespace
} // namespace vormel
