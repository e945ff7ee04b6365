#pragma once

#include <QString>

namespace vormel {

class MainWindow;

} // namespace vormel

namespace vormel::demo {

/// The page of the accounts, as a person uses it. The window must outlive it.
class AccountsOnScreen
{
public:
    struct Login
    {
        QString hostDomain;
        QString username;
        QString password;
    };

    explicit AccountsOnScreen(MainWindow& window)
        : m_window(window)
    {}

    /// For a new account.
    void openSheet() const;
    void fillIn(const Login& login) const;
    void save() const;

    // What a claim lacks; nothing where it holds.
    [[nodiscard]] QString missingSheet() const;
    [[nodiscard]] QString missingEntry() const;
    /// The sheet is gone, and the page lists so many accounts.
    [[nodiscard]] QString missingAccounts(qsizetype accounts) const;

private:
    MainWindow& m_window;
};

} // namespace vormel::demo
