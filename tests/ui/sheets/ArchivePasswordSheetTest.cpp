#include "fixtures/EngineOnScript.h"
#include "ui/Part.h"
#include "ui/sheets/ArchivePasswordSheetView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ArchivePasswordSheetTest : public ::testing::Test
{
protected:
    void open(bool wasWrong = false, const QString& name = u"a.part1.rar"_s)
    {
        const PendingExtractionPassword pending{ItemId::make(), name, wasWrong};
        sheet = std::make_unique<ArchivePasswordSheetView>(pending, engine.settings(), nullptr);
        confirmed = std::make_unique<QSignalSpy>(sheet.get(), &ArchivePasswordSheetView::confirmed);
        rejected = std::make_unique<QSignalSpy>(sheet.get(), &QDialog::rejected);
        sheet->show();
        sheet->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet.get()));
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(*sheet, name);
    }
    QLineEdit& field() { return part<QLineEdit>("archivePassword"); }
    QStringList texts()
    {
        return {part<QLabel>("passwordTitle").text(), part<QLabel>("wrongPassword").text(),
                part<QPushButton>("extract").text(), part<QPushButton>("cancelPassword").text()};
    }

    fixtures::EngineOnScript engine;
    std::unique_ptr<ArchivePasswordSheetView> sheet;
    std::unique_ptr<QSignalSpy> confirmed;
    std::unique_ptr<QSignalSpy> rejected;
};

TEST_F(ArchivePasswordSheetTest, AsksInBothLanguages)
{
    open();
    EXPECT_EQ(part<QLabel>("passwordTitle").text(), u"Archive Password Required");
    EXPECT_EQ(part<QLabel>("archiveName").text(), u"a.part1.rar");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(part<QLabel>("passwordTitle").text(), u"Password archivio richiesta");
    EXPECT_EQ(field().placeholderText(), u"Password");
}

TEST_F(ArchivePasswordSheetTest, SaysThatThePasswordWasWrongOnlyWhenItWas)
{
    open();
    EXPECT_FALSE(part<QLabel>("wrongPassword").isVisible());
    open(true);
    EXPECT_TRUE(part<QLabel>("wrongPassword").isVisible());
    EXPECT_EQ(texts().join(u'|'), u"Wrong Password|The password you entered was incorrect. Try again.|Extract|Cancel");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(texts().join(u'|'), u"Password errata|La password inserita non è corretta. Riprova.|Estrai|Annulla");
}

TEST_F(ArchivePasswordSheetTest, TheFieldHidesWhatIsTypedAndHasTheFocus)
{
    open();
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(field().echoMode(), QLineEdit::Password);
    EXPECT_EQ(field().width(), 280);
}

TEST_F(ArchivePasswordSheetTest, ReturnAndExtractGiveThePasswordAsTyped)
{
    open();
    QTest::keyClicks(&field(), u"  "_s);
    QTest::keyClick(&field(), Qt::Key_Return);
    ASSERT_EQ(confirmed->count(), 1);
    EXPECT_EQ(confirmed->at(0).at(0).toString(), u"  ");
    EXPECT_FALSE(sheet->isVisible());
    open();
    QTest::keyClicks(&field(), u" s3cret"_s);
    QTest::mouseClick(&part<QPushButton>("extract"), Qt::LeftButton);
    ASSERT_EQ(confirmed->count(), 1);
    EXPECT_EQ(confirmed->at(0).at(0).toString(), u" s3cret");
    EXPECT_EQ(rejected->count(), 0);
}

TEST_F(ArchivePasswordSheetTest, AnEmptyFieldGivesNothing)
{
    open();
    EXPECT_FALSE(part<QPushButton>("extract").isEnabled());
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(confirmed->count() + rejected->count(), 0);
    EXPECT_TRUE(sheet->isVisible());
}

TEST_F(ArchivePasswordSheetTest, EveryOtherWayOutIsCancel)
{
    open();
    QTest::mouseClick(&part<QPushButton>("cancelPassword"), Qt::LeftButton);
    EXPECT_EQ(rejected->count(), 1);
    open();
    QTest::keyClick(sheet.get(), Qt::Key_Escape);
    EXPECT_EQ(rejected->count(), 1);
    open();
    sheet->close();
    EXPECT_EQ(rejected->count(), 1);
    EXPECT_EQ(confirmed->count(), 0);
}

TEST_F(ArchivePasswordSheetTest, ALongNameIsCutInTheMiddle)
{
    open(false, u"Long.name."_s.repeated(20) + u"end.rar"_s);
    const QString shown = part<QLabel>("archiveName").text();
    EXPECT_TRUE(shown.startsWith(u"Long.name."));
    EXPECT_TRUE(shown.endsWith(u"end.rar"));
    EXPECT_LT(shown.size(), 100);
    EXPECT_LT(sheet->width(), 500);
}

} // namespace
} // namespace vormel
