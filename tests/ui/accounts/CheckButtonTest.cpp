#include "ui/accounts/CheckButton.h"

#include "fixtures/Contrast.h"
#include "fixtures/Palettes.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace vormel {
namespace {

using Status = AccountTestStatus;

constexpr Status::Kind allKinds[] = {Status::idle, Status::testing, Status::success, Status::failed};

class CheckButtonTest : public ::testing::Test
{
protected:
    ~CheckButtonTest() override { QApplication::setPalette(QPalette()); }
    QString textIn(AppLanguage language)
    {
        QStringList texts;
        for (const Status::Kind kind : allKinds) {
            button.showKind(kind, language);
            texts << button.text();
        }
        return texts.join(u'|');
    }
    void show(Status::Kind kind)
    {
        button.showKind(kind, AppLanguage::english);
        button.resize(button.sizeHint());
        button.show();
        button.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&button));
    }
    /// Of the pixel in the middle of the text that is told best from that ground.
    double bestContrast(const QColor& ground)
    {
        constexpr int edge = 6;
        const QImage picture = button.grab().toImage();
        double best = 0;
        for (int y = edge; y < picture.height() - edge; ++y) {
            for (int x = picture.width() / 2; x < picture.width() - edge; ++x)
                best = std::max(best, fixtures::contrastOf(picture.pixelColor(x, y), ground));
        }
        return best;
    }

    CheckButton button{nullptr};
    QSignalSpy asked{&button, &CheckButton::checkRequested};
};

TEST_F(CheckButtonTest, SaysWhatItDoesInBothLanguages)
{
    EXPECT_EQ(textIn(AppLanguage::english), u"Check|Checking...|Refresh|Retry");
    EXPECT_EQ(textIn(AppLanguage::italian), u"Verifica|Verifica in corso...|Aggiorna|Riprova");
}

TEST_F(CheckButtonTest, HasAnIconWhereOneCanCheckForTheFirstTimeOrAgain)
{
    for (const Status::Kind kind : allKinds) {
        show(kind);
        EXPECT_EQ(button.icon().isNull(), kind == Status::testing || kind == Status::failed) << int{kind};
    }
}

TEST_F(CheckButtonTest, AsksForACheckByMouseAndKeyboard)
{
    int expected = 0;
    for (const Status::Kind kind : {Status::idle, Status::success, Status::failed}) {
        show(kind);
        button.setFocus();
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        QTest::keyClick(&button, Qt::Key_Return);
        expected += 3;
        EXPECT_EQ(asked.count(), expected) << int{kind};
    }
}

TEST_F(CheckButtonTest, DoesNothingDuringACheckButKeepsTheFocus)
{
    show(Status::idle);
    button.setFocus();
    show(Status::testing);
    EXPECT_TRUE(button.hasFocus());
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(asked.count(), 0);
}

TEST_F(CheckButtonTest, TurnsOnlyDuringACheck)
{
    show(Status::testing);
    const QImage before = button.grab().toImage();
    EXPECT_TRUE(QTest::qWaitFor([&] { return button.grab().toImage() != before; }));
    show(Status::idle);
    EXPECT_TRUE(QAbstractEventDispatcher::instance()->registeredTimers(&button).isEmpty());
}

TEST_F(CheckButtonTest, CanBeReadOnEveryDesktop)
{
    for (const QPalette& palette : fixtures::allPalettes()) {
        QApplication::setPalette(palette);
        for (const Status::Kind kind : allKinds) {
            show(kind);
            const QColor plate = button.grab().toImage().pixelColor(button.width() / 2, 4);
            EXPECT_GE(bestContrast(plate), fixtures::readable) << int{kind};
        }
    }
}

} // namespace
} // namespace vormel
