#pragma once

#include "app/update/Version.h"

#include <QUrl>

namespace vormel {

/// A version that a feed offers.
struct AppcastItem
{
    Version version;
    QUrl page; ///< https; where it can be downloaded
};

/// What a feed says. Without an item it was understood but offers nothing that can be used.
struct Appcast
{
    std::optional<AppcastItem> newest;
};

/// Reads an RSS feed of releases. An item's version is its sparkle:shortVersionString, else its sparkle:version, else
/// the last word of its title; of the first two, elements and attributes of the enclosure count alike. Items without a
/// version or an https link are passed over. Nothing for what is no such feed, and for a feed with a document type of
/// its own: entities are where small documents become large.
[[nodiscard]] std::optional<Appcast> readAppcast(const QByteArray& document);

} // namespace vormel
