#pragma once

#include "model/ItemId.h"
#include "text/Link.h"

#include <optional>
#include <vector>

namespace vormel {

/// A container wants a CAPTCHA solved.
struct PendingCaptcha
{
    ItemId placeholderID;
    Link containerURL;
    std::optional<QString> password; ///< of the container, as it came with the link

    friend bool operator==(const PendingCaptcha&, const PendingCaptcha&) = default;
};

/// The same files lie on several hosts; which one shall it be?
struct PendingHostSelection
{
    struct HostGroup
    {
        QString displayName;
        std::vector<Link> urls;

        friend bool operator==(const HostGroup&, const HostGroup&) = default;
    };

    std::vector<HostGroup> groups;
    std::vector<Link> allURLs; ///< all links of the container, as the resolver gave them
    ItemId containerID = {};   ///< of its row, which is gone; none where links were grouped for another purpose

    friend bool operator==(const PendingHostSelection&, const PendingHostSelection&) = default;
};

/// An archive wants its password.
struct PendingExtractionPassword
{
    ItemId itemID;
    QString archiveName;
    bool wasWrongPassword = false; ///< one was given and refused

    friend bool operator==(const PendingExtractionPassword&, const PendingExtractionPassword&) = default;
};

} // namespace vormel
