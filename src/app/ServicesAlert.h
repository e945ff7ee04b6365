#pragma once

#include "model/ServicesProblem.h"

#include <QMessageBox>

#include <optional>

namespace vormel {

class AppSettings;

/// Says why the user's file of services is not taken. Blocks nothing, and goes when it is closed.
class ServicesAlert final : public QMessageBox
{
    Q_OBJECT

public:
    ServicesAlert(const ServicesProblem& problem, AppLanguage language, QWidget* parent);
};

/// Shows the alert over the window, which owns it, if there is a problem.
void tellOfServices(const std::optional<ServicesProblem>& problem, const AppSettings& settings, QWidget& window);

} // namespace vormel
