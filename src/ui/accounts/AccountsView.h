#pragma once

#include <QWidget>

namespace vormel {

class AppSettings;
class EmptyState;

/// The page of the premium accounts. The settings must outlive it.
class AccountsView final : public QWidget
{
    Q_OBJECT

public:
    explicit AccountsView(AppSettings& settings, QWidget* parent = nullptr);

private:
    void retranslate();

    AppSettings& m_settings;
    EmptyState* m_empty;
};

} // namespace vormel
