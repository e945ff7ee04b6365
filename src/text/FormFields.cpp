#include "text/FormFields.h"

#include <algorithm>

namespace vormel {

const QString* fieldValue(const FormFields& fields, QStringView name)
{
    const auto found =
        std::find_if(fields.begin(), fields.end(), [name](const auto& field) { return field.first == name; });
    return found == fields.end() ? nullptr : &found->second;
}

void setField(FormFields& fields, const QString& name, const QString& value)
{
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const auto& field) { return field.first == name; });
    if (found == fields.end())
        fields.emplace_back(name, value);
    else
        found->second = value;
}

void removeField(FormFields& fields, QStringView name)
{
    std::erase_if(fields, [name](const auto& field) { return field.first == name; });
}

} // namespace vormel
