#pragma once

#include "kit/SheetButton.h"
#include "ui/accounts/AccountTestStatus.h"

#include <QBasicTimer>

namespace vormel {

/// Begins the check of an account, and says how it stands. While a check is under way it is a turning indicator that
/// does nothing, but keeps its place and the focus.
class CheckButton final : public SheetButton
{
    Q_OBJECT

public:
    explicit CheckButton(QWidget* parent);

    void showKind(AccountTestStatus::Kind kind, AppLanguage language);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void checkRequested();

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] bool isTesting() const { return m_kind == AccountTestStatus::testing; }
    [[nodiscard]] QColor textColor() const;
    void paintTesting();

    AccountTestStatus::Kind m_kind = AccountTestStatus::idle;
    int m_angle = 0; ///< of the indicator
    QBasicTimer m_turning;
};

} // namespace vormel
