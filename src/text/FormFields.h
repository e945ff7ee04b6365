#pragma once

#include "text/FormEncoding.h"

namespace vormel {

// A form whose names are each there once. Their order is that in which they first came.

/// Null for a name that is not there.
[[nodiscard]] const QString* fieldValue(const FormFields& fields, QStringView name);
/// A name that is there keeps its place; a new one comes last.
void setField(FormFields& fields, const QString& name, const QString& value);
void removeField(FormFields& fields, QStringView name);

} // namespace vormel
