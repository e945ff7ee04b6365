#pragma once

#include "model/AppLanguage.h"
#include "platform/secrets/SecretStore.h"

#include <QWidget>

namespace vormel {

class Accounts;
class AppSettings;
class StyledLabel;

/// Where passwords are kept, if that is not where the user would expect them; else empty.
[[nodiscard]] QString passwordPlaceText(SecretStore::Place place, AppLanguage language);

/// Says so at the foot of the page. Both must outlive it.
class PasswordPlaceNote final : public QWidget
{
    Q_OBJECT

public:
    PasswordPlaceNote(const Accounts& accounts, const AppSettings& settings, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showPlace();

    const Accounts& m_accounts;
    const AppSettings& m_settings;
    StyledLabel* m_text;
};

} // namespace vormel
