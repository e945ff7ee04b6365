#include "ui/accounts/AccountsPage.h"
#include "ui/accounts/Plans.h"

#include <QLineEdit>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// As wide as the page is in the smallest window, with a row in each state and all that a row can show.
class AccountsFitTest : public fixtures::AccountsPage, public ::testing::WithParamInterface<AppLanguage>
{
protected:
    AccountsFitTest()
    {
        engine.settings().language.set(GetParam());
        page.resize(519, 420);
        for (int i = 0; i < 4; ++i)
            add(u"a.long.name.of.a.user.%1@a.long.domain.example"_s.arg(i), SupportedHost::terabytez, false);
        for (int place : {1, 2, 3})
            click(place, "checkAccount");
        const QDateTime end(QDate(2026, 9, 30), QTime(12, 0));
        answer(0, PremiumAccountInfo{u"Premium"_s, end, 1023 * fixtures::gibibyte, 1023 * fixtures::gibibyte});
        answer(1, ResolverError::networkError(u"The server's certificate is not trusted."_s));
        engine.secrets.moveTo(SecretStore::Place::ownFile);
        fixtures::turnEventLoop();
    }
};

TEST_P(AccountsFitTest, NothingIsCutOffInTheSmallestWindow)
{
    const auto& scroll = fixtures::partOf<QScrollArea>(page, "accountsPage");
    EXPECT_LE(scroll.widget()->width(), scroll.viewport()->width());
    for (const QLabel* label : page.findChildren<QLabel*>()) {
        const QString name = label->objectName();
        if (!label->isVisible() || name == u"accountUsername")
            continue; // has a tool tip
        const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        EXPECT_GE(label->height(), needed) << qPrintable(label->text());
        const int width = label->wordWrap() ? label->minimumSizeHint().width() : label->sizeHint().width();
        EXPECT_GE(label->width(), width) << qPrintable(label->text());
    }
    for (const auto* button : page.findChildren<QAbstractButton*>()) {
        if (!button->isVisible())
            continue;
        EXPECT_GE(button->width(), button->sizeHint().width()) << qPrintable(button->text());
        EXPECT_GE(button->height(), button->minimumSizeHint().height()) << qPrintable(button->text());
    }
}

TEST_P(AccountsFitTest, ControlsStayInTheirRowsAndApart)
{
    for (const AccountRow* row : rows()) {
        QRect before;
        for (const AccountRow::Control each : AccountRow::allControls) {
            const QRect place = row->control(each)->geometry();
            EXPECT_TRUE(row->rect().contains(place));
            EXPECT_FALSE(place.intersects(before));
            before = place;
        }
        EXPECT_GE(fixtures::partOf<QLabel>(*row, "accountUsername").width(), 60);
    }
}

TEST_P(AccountsFitTest, WhatHasNoRoomBesideTheControlsIsBelowTheNames)
{
    const auto place = [this](const char* name) {
        return QRect(part(2, name).mapTo(&row(2), QPoint()), part(2, name).size());
    };
    for (const char* note : {"accountDisabled", "checkMessage"})
        EXPECT_GT(place(note).top(), place("accountUsername").bottom()) << note;
    // Also of one that nothing else is told of.
    EXPECT_EQ(part(0, "accountDisabled").mapTo(&row(0), QPoint()).x(),
              part(0, "accountUsername").mapTo(&row(0), QPoint()).x());
    page.resize(800, 420);
    fixtures::turnEventLoop();
    for (const char* note : {"accountDisabled", "checkMessage"}) {
        EXPECT_LT(place(note).right(), place("checkAccount").left()) << note;
        EXPECT_LT(place(note).top(), place("checkAccount").bottom()) << note;
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, AccountsFitTest, ::testing::Values(AppLanguage::english, AppLanguage::italian));

} // namespace
} // namespace vormel
