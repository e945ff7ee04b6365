#include "ui/accounts/PasswordPlaceNote.h"

#include "ui/accounts/AccountsPage.h"

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class PasswordPlaceNoteTest : public fixtures::AccountsPage
{
protected:
    [[nodiscard]] QWidget& note() const { return fixtures::partOf<QWidget>(page, "passwordPlaceNote"); }
    [[nodiscard]] QString shown() const { return fixtures::partOf<QLabel>(note(), "passwordPlaceText").text(); }
    void moveTo(SecretStore::Place place)
    {
        engine.secrets.moveTo(place);
        fixtures::turnEventLoop();
    }
};

TEST_F(PasswordPlaceNoteTest, IsNotThereWhileAKeyringKeepsThePasswords)
{
    EXPECT_FALSE(note().isVisible());
    moveTo(SecretStore::Place::ownFile);
    EXPECT_TRUE(note().isVisible());
    moveTo(SecretStore::Place::keyring);
    EXPECT_FALSE(note().isVisible());
}

TEST_F(PasswordPlaceNoteTest, SaysInBothLanguagesThatAFileKeepsThem)
{
    moveTo(SecretStore::Place::ownFile);
    EXPECT_EQ(shown(), u"No keyring answers, so passwords are kept in a file that only you can read.");
    EXPECT_EQ(note().accessibleName(), shown());
    useItalian();
    EXPECT_EQ(shown(), u"Nessun portachiavi risponde: le password sono in un file che solo tu puoi leggere.");
    EXPECT_EQ(note().accessibleName(), shown());
}

TEST_F(PasswordPlaceNoteTest, SaysInBothLanguagesThatNothingKeepsThem)
{
    moveTo(SecretStore::Place::nowhere);
    EXPECT_EQ(shown(), u"No keyring answers, so passwords are not kept.");
    useItalian();
    EXPECT_EQ(shown(), u"Nessun portachiavi risponde: le password non vengono conservate.");
}

TEST_F(PasswordPlaceNoteTest, IsOneLineBelowTheAccountsAlsoInTheSmallestWindow)
{
    add(u"anna"_s);
    page.resize(519, 420);
    for (const AppLanguage language : allLanguages) {
        engine.settings().language.set(language);
        for (const SecretStore::Place place : {SecretStore::Place::ownFile, SecretStore::Place::nowhere}) {
            moveTo(place);
            const auto& text = fixtures::partOf<QLabel>(note(), "passwordPlaceText");
            EXPECT_LE(text.fontMetrics().horizontalAdvance(text.text()), text.width()) << qPrintable(text.text());
            EXPECT_EQ(note().geometry().bottom(), page.rect().bottom());
        }
    }
}

} // namespace
} // namespace vormel
