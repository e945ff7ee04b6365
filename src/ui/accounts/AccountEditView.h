#pragma once

#include "model/HostAccount.h"
#include "platform/async/Lifetime.h"
#include "ui/accounts/HostLabel.h"

#include <QCoroTask>
#include <QDialog>

#include <optional>

class QComboBox;
class QLineEdit;

namespace vormel {

class Accounts;
class AppSettings;
class SheetButton;
class StyledLabel;
class ToggleSwitch;

/// The form of an account, a new one or one that there is. The stored password may come late: until then the form can
/// be worked on, and what was typed stays. Settings and accounts must outlive it.
class AccountEditView final : public QDialog
{
    Q_OBJECT

public:
    AccountEditView(AppSettings& settings, const std::vector<HostLabel>& hosts, QWidget* parent);
    /// Takes everything from the account, and its password from where that is kept.
    void edit(const HostAccount& existingAccount, Accounts& accounts);

Q_SIGNALS:
    /// By the user, behind the end of the sheet. The account has the id of the one that is edited, or a new one.
    void saved(const vormel::HostAccount& account, const QString& password);

private:
    void setUpParts(const std::vector<HostLabel>& hosts);
    void layOut();
    void connectParts();
    void bindTexts();
    void showTitle();
    [[nodiscard]] QCoro::Task<> fillPassword(Accounts& accounts, HostAccount account, Lifetime::Watch lifetime);
    void setAwaitingPassword(bool isAwaiting);
    void judge();
    void save();

    AppSettings& m_settings;
    QUuid m_id; ///< null for a new account
    bool m_isAwaitingPassword = false;
    bool m_isPasswordTouched = false;
    StyledLabel* m_title;
    StyledLabel* m_hostLabel;
    QComboBox* m_host;
    StyledLabel* m_usernameLabel;
    QLineEdit* m_username;
    StyledLabel* m_passwordLabel;
    QLineEdit* m_password;
    StyledLabel* m_enabledLabel;
    ToggleSwitch* m_enabled;
    SheetButton* m_cancel;
    SheetButton* m_save;
    Lifetime m_lifetime;
};

} // namespace vormel
