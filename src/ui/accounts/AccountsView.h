#pragma once

#include <QWidget>

namespace vormel {

class AppSettings;

/// The page of the premium accounts. The settings must outlive it.
class AccountsView final : public QWidget
{
    Q_OBJECT

public:
    explicit AccountsView(const AppSettings& settings, QWidget* parent = nullptr);
};

} // namespace vormel
