#pragma once

#include "text/FormFields.h"
#include "text/Link.h"

#include <optional>

namespace vormel {

// The forms on the pages of Filestore. Pure; any thread. The fields of a form stand in the order in which their names
// first came.

/// A form that leads to a file.
struct DownloadForm
{
    Link action;
    FormFields fields;
};

/// The hidden inputs that have both a name and a value. Of several with one name the last gives the value.
[[nodiscard]] FormFields parseHiddenInputs(QStringView html);

/// The first form whose "op" speaks of a download, else the first with an "id" or "rand".
[[nodiscard]] std::optional<DownloadForm> findDownloadForm(const QString& html, const Link& baseUrl);

/// Where a form is posted to: the page itself if nothing usable is named. What begins with "http" is never relative.
[[nodiscard]] Link resolveFormAction(const QString& action, const Link& baseUrl);

/// Asks for the premium way where a form lets one choose.
void applyPremiumFields(FormFields& fields);

} // namespace vormel
