#pragma once

#include "text/FormEncoding.h"

namespace vormel {

/// The hidden inputs of a page whose type, name and value come in this order: the matches of
/// `<input[^>]+type=["']hidden["'][^>]+name=["']([^"']+)["'][^>]+value=["']([^"']*)["']`, in any letter case. A name
/// that comes again keeps its place and takes the later value.
[[nodiscard]] FormFields parseFileCryptHiddenInputs(const QString& html);

/// What is posted to open a container: the hidden inputs of its page, and the password in place of any of that name.
[[nodiscard]] QByteArray containerPasswordBody(const QString& html, const QString& password);

} // namespace vormel
