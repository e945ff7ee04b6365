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
    EXPECT_EQ(page.findChildren<QGroupBox*>().size(), 6);
    const char* const order[] = {"supportSection",    "languageSection", "downloadSection",
                                 "extractionSection", "toolsSection",    "installSection"};
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
            const auto* button = qobject_cast<const QAbstractButton*>(control);
            EXPECT_TRUE(!control->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
                << control->metaObject()->className() << ' ' << qPrintable(control->objectName());
        }
    }
}

TEST_F(SettingsViewTest, TheTabKeyGoesDownThePage)
{
    page.activateWindow();
    part("buyBeer").setFocus();
    int last = -1;
    for (qsizetype i = 0; i < controls().size() - 2; ++i) { // one stop for the two languages; the last stays
        QWidget* focused = page.focusWidget();
        ASSERT_NE(focused, nullptr);
        const int y = focused->mapTo(page.widget(), focused->rect().center()).y();
        EXPECT_GE(y, last - 3) << qPrintable(focused->objectName());
        last = y;
        QTest::keyClick(focused, Qt::Key_Tab);
    }
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
