#pragma once

#include "kit/Theme.h"
#include "ui/accounts/AccountTestStatus.h"

#include <QWidget>

namespace vormel {

/// What stands for a status.
[[nodiscard]] QColor dotColor(AccountTestStatus::Kind kind, const Theme& theme);

/// A small dot that shows how a check stands; decoration only, hence silent for assistive technology.
class StatusDot final : public QWidget
{
    Q_OBJECT

public:
    explicit StatusDot(QWidget* parent);

    void setKind(AccountTestStatus::Kind kind);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AccountTestStatus::Kind m_kind = AccountTestStatus::idle;
};

} // namespace vormel
