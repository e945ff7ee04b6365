#pragma once

#include "model/Services.h"
#include "model/ServicesProblem.h"

#include <QLatin1StringView>

#include <optional>
#include <span>

namespace vormel {

/// One value of the services, or one list of them, as a file names it.
struct ServicesField
{
    enum class Form
    {
        name,
        domain,
        rootUrl,
    };

    QLatin1StringView key;
    Form form = Form::name;
    bool isList = false;
    std::span<QString> (*values)(Services& services) = nullptr; ///< where it goes; as many as a list must have
};

[[nodiscard]] std::span<const ServicesField> servicesFields();
/// Null for a key that there is not.
[[nodiscard]] const ServicesField* servicesField(QStringView key);

/// What is wrong with a value by itself, if anything.
[[nodiscard]] std::optional<ServicesProblem::Reason> wrongForm(const QString& text, ServicesField::Form form);

} // namespace vormel
