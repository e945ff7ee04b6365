#include "ui/accounts/AccountEditView.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/Part.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class AccountEditViewTest : public ::testing::Test
{
protected:
    void open(const std::optional<HostAccount>& existing = {})
    {
        sheet = std::make_unique<AccountEditView>(engine.settings(), hostLabels(HostProfiles()), nullptr);
        saved.clear();
        QObject::connect(
            sheet.get(), &AccountEditView::saved, sheet.get(),
            [this](const HostAccount& account, const QString& password) { saved.emplace_back(account, password); });
        if (existing)
            sheet->edit(*existing, engine.manager().accounts());
        sheet->show();
        sheet->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(sheet.get()));
    }
    template <typename T>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(*sheet, name);
    }
    QComboBox& host() { return part<QComboBox>("accountHost"); }
    QLineEdit& username() { return part<QLineEdit>("accountUsername"); }
    QLineEdit& password() { return part<QLineEdit>("accountPassword"); }
    QCheckBox& isEnabled() { return part<QCheckBox>("accountEnabled"); }
    QPushButton& saveButton() { return part<QPushButton>("saveAccount"); }
    QStringList texts()
    {
        return {part<QLabel>("accountTitle").text(),
                host().accessibleName(),
                username().accessibleName(),
                password().accessibleName(),
                isEnabled().accessibleName(),
                part<QLabel>("accountEnabledLabel").text(),
                part<QPushButton>("cancelAccount").text(),
                saveButton().text()};
    }
    HostAccount stored(const QString& secret)
    {
        const HostAccount account{QUuid::createUuid(), SupportedHost::terabytez, u"anna"_s, false};
        engine.secrets.kept.insert(keychainAccountKey(account, HostProfiles()), secret);
        return account;
    }

    fixtures::EngineOnScript engine;
    std::unique_ptr<AccountEditView> sheet;
    std::vector<std::pair<HostAccount, QString>> saved;
};

TEST_F(AccountEditViewTest, SpeaksBothLanguages)
{
    open();
    EXPECT_EQ(texts().join(u'|'),
              u"New Account|Host|Username / Email|Password|Account enabled|Account enabled|Cancel|Save");
    EXPECT_EQ(sheet->windowTitle(), u"New Account");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(texts().join(u'|'),
              u"Nuovo Account|Host|Nome utente / Email|Password|Account abilitato|Account abilitato|Annulla|Salva");
    open(stored(u"s3cret"_s));
    EXPECT_EQ(texts().front(), u"Modifica Account");
    engine.settings().language.set(AppLanguage::english);
    EXPECT_EQ(texts().front(), u"Edit Account");
    EXPECT_EQ(sheet->windowTitle(), u"Edit Account");
}

TEST_F(AccountEditViewTest, IsAsWideAsItIs)
{
    for (const AppLanguage language : allLanguages) {
        engine.settings().language.set(language);
        open();
        EXPECT_EQ(sheet->width(), 360);
    }
}

TEST_F(AccountEditViewTest, OffersTheHostsByTheirDomains)
{
    open();
    ASSERT_EQ(host().count(), 2);
    EXPECT_EQ(host().itemText(0), u"filestore.example");
    EXPECT_EQ(host().itemText(1), u"terabytez.example");
}

TEST_F(AccountEditViewTest, BeginsEmptyForAnEnabledAccountWithTheFocusOnTheName)
{
    open();
    EXPECT_EQ(host().currentText(), u"filestore.example");
    EXPECT_EQ(username().text() + password().text(), u"");
    EXPECT_TRUE(isEnabled().isChecked());
    EXPECT_TRUE(username().hasFocus());
    EXPECT_EQ(password().echoMode(), QLineEdit::Password);
}

TEST_F(AccountEditViewTest, SavesOnlyWithANameAndAPassword)
{
    open();
    EXPECT_FALSE(saveButton().isEnabled());
    QTest::keyClicks(&username(), u"anna"_s);
    EXPECT_FALSE(saveButton().isEnabled());
    QTest::keyClick(&username(), Qt::Key_Return);
    EXPECT_TRUE(saved.empty());
    EXPECT_TRUE(sheet->isVisible());
    QTest::keyClicks(&password(), u"x"_s);
    EXPECT_TRUE(saveButton().isEnabled());
    username().clear();
    EXPECT_FALSE(saveButton().isEnabled());
}

TEST_F(AccountEditViewTest, GivesANewAccountAnIdOfItsOwn)
{
    QSet<QUuid> ids;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        open();
        QTest::keyClicks(&username(), u" anna"_s);
        QTest::keyClicks(&password(), u" s3cret"_s);
        host().setCurrentIndex(1);
        isEnabled().click();
        QTest::keyClick(&password(), key);
        ASSERT_EQ(saved.size(), 1U);
        const HostAccount& account = saved[0].first;
        EXPECT_EQ(account, (HostAccount{account.id, SupportedHost::terabytez, u" anna"_s, false}));
        EXPECT_EQ(saved[0].second, u" s3cret");
        EXPECT_FALSE(account.id.isNull());
        EXPECT_FALSE(sheet->isVisible());
        ids << account.id;
    }
    EXPECT_EQ(ids.size(), 2);
}

TEST_F(AccountEditViewTest, TakesAnAccountWithItsPasswordAndKeepsItsId)
{
    const HostAccount account = stored(u"s3cret"_s);
    open(account);
    EXPECT_EQ(host().currentText(), u"terabytez.example");
    EXPECT_EQ(username().text(), u"anna");
    EXPECT_EQ(password().text(), u"s3cret");
    EXPECT_FALSE(isEnabled().isChecked());
    QTest::mouseClick(&saveButton(), Qt::LeftButton);
    ASSERT_EQ(saved.size(), 1U);
    EXPECT_EQ(saved[0], std::pair(account, u"s3cret"_s));
}

TEST_F(AccountEditViewTest, WaitsForALockedKeyringAndSaysSo)
{
    engine.secrets.lock();
    open(stored(u"s3cret"_s));
    EXPECT_EQ(password().placeholderText(), u"Waiting for the stored password…");
    EXPECT_FALSE(saveButton().isEnabled());
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(password().placeholderText(), u"In attesa della password salvata…");
    engine.secrets.unlock();
    EXPECT_EQ(password().text(), u"s3cret");
    EXPECT_EQ(password().placeholderText(), u"");
    EXPECT_TRUE(saveButton().isEnabled());
}

TEST_F(AccountEditViewTest, NeverOverwritesWhatWasTypedMeanwhile)
{
    engine.secrets.lock();
    open(stored(u"s3cret"_s));
    QTest::keyClicks(&password(), u"new"_s);
    EXPECT_TRUE(saveButton().isEnabled());
    engine.secrets.unlock();
    EXPECT_EQ(password().text(), u"new");
    engine.secrets.lock();
    open(stored(u"s3cret"_s));
    QTest::keyClicks(&password(), u"n"_s);
    QTest::keyClick(&password(), Qt::Key_Backspace);
    QTest::keyClick(&username(), Qt::Key_End);
    QTest::keyClicks(&username(), u"-b"_s);
    engine.secrets.unlock();
    EXPECT_EQ(password().text(), u""); // the user wants another one
    EXPECT_EQ(username().text(), u"anna-b");
    EXPECT_FALSE(saveButton().isEnabled());
}

TEST_F(AccountEditViewTest, WithoutAStoredPasswordSaveWaitsForOne)
{
    open(stored(u""_s));
    EXPECT_EQ(password().placeholderText(), u"");
    EXPECT_FALSE(saveButton().isEnabled());
    QTest::keyClicks(&password(), u"x"_s);
    EXPECT_TRUE(saveButton().isEnabled());
}

TEST_F(AccountEditViewTest, MayBeClosedBeforeAKeyringAnswers)
{
    engine.secrets.lock();
    open(stored(u"s3cret"_s));
    sheet.reset();
    engine.secrets.unlock();
    EXPECT_TRUE(saved.empty());
}

TEST_F(AccountEditViewTest, EveryOtherWayOutSavesNothing)
{
    for (int way = 0; way < 3; ++way) {
        open(stored(u"s3cret"_s));
        if (way == 0)
            QTest::mouseClick(&part<QPushButton>("cancelAccount"), Qt::LeftButton);
        else if (way == 1)
            QTest::keyClick(sheet.get(), Qt::Key_Escape);
        else
            sheet->close();
        EXPECT_FALSE(sheet->isVisible()) << way;
        EXPECT_TRUE(saved.empty()) << way;
    }
}

TEST_F(AccountEditViewTest, TabGoesDownTheFormAndToTheButtons)
{
    open(stored(u"s3cret"_s));
    host().setFocus();
    QStringList order;
    for (int i = 0; i < 6; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(u' '),
              u"accountHost accountUsername accountPassword accountEnabled cancelAccount saveAccount");
    EXPECT_EQ(QApplication::focusWidget(), &host());
}

} // namespace
} // namespace vormel
