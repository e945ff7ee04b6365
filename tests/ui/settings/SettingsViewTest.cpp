#include "ui/settings/SettingsView.h"

#include "ui/settings/SettingsPage.h"

#include <QGroupBox>

namespace vormel {
namespace {

class SettingsViewTest : public fixtures::SettingsPage
{
protected:
    [[nodiscard]] QList<QWidget*> controls() const
    {
        QList<QWidget*> all;
        for (QWidget* widget : page.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus && !widget->focusProxy() &&
                !widget->objectName().startsWith(u"qt_"))
                all << widget;
        }
        return all;
    }
};

TEST_F(SettingsViewTest, HasItsSectionsInOrder)
{
    EXPECT_EQ(page.findChildren<QGroupBox*>().size(), 7);
    const char* const order[] = {"supportSection", "languageSection", "downloadSection", "extractionSection",
                                 "toolsSection",   "installSection",  "desktopSection"};
    int last = -1;
    for (const char* name : order) {
        const int y = part(name).mapTo(page.widget(), QPoint()).y();
        EXPECT_GT(y, last) << name;
        last = y;
    }
}

TEST_F(SettingsViewTest, EveryControlHasANameInBothLanguages)
{
    settings().useCustomExtractionFolder.set(true);
    settings().deleteArchiveAfterExtract.set(true);
    for (const AppLanguage language : allLanguages) {
        settings().language.set(language);
        EXPECT_GT(controls().size(), 15);
        for (const QWidget* control : controls()) {
            EXPECT_FALSE(control->accessibleName().isEmpty())
                << control->metaObject()->className() << ' ' << qPrintable(control->objectName());
        }
    }
}

TEST_F(SettingsViewTest, TheTabKeyGoesDownThePage)
{
    activate();
    part("buyBeer").setFocus();
    int stops = 0;
    int last = -1;
    do {
        QWidget* focused = page.focusWidget();
        ASSERT_NE(focused, nullptr);
        const int y = focused->mapTo(page.widget(), focused->rect().center()).y();
        EXPECT_GE(y, last - 3) << qPrintable(focused->objectName()); // those of one row may be a little apart
        last = y;
        ++stops;
        QTest::keyClick(focused, Qt::Key_Tab);
    } while (page.focusWidget() != &part("buyBeer") && stops < 50);
    // One for both languages, three for a folder.
    EXPECT_EQ(stops, 20);
}

TEST_F(SettingsViewTest, NothingIsCutOffInANarrowWindow)
{
    settings().useCustomExtractionFolder.set(true);
    settings().deleteArchiveAfterExtract.set(true);
    page.resize(520, 420);
    for (const AppLanguage language : allLanguages) {
        settings().language.set(language);
        fixtures::turnEventLoop();
        EXPECT_LE(page.widget()->width(), page.viewport()->width());
        for (const QLabel* label : page.findChildren<QLabel*>()) {
            if (!label->isVisible() || label->objectName() == u"path")
                continue;
            const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
            EXPECT_GE(label->height(), needed) << qPrintable(label->text());
            if (!label->wordWrap()) {
                EXPECT_GE(label->width(), label->sizeHint().width()) << qPrintable(label->text());
            }
        }
    }
}

} // namespace
} // namespace vormel
