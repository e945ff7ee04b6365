#pragma once

#include "model/ItemId.h"

namespace vormel {

/// What happens to a finished file: it may be an archive, or the last part of one.
class PostDownload
{
public:
    PostDownload() = default;
    PostDownload(const PostDownload&) = delete;
    PostDownload& operator=(const PostDownload&) = delete;
    virtual ~PostDownload() = default;

    /// Called on the UI thread for each item that has just become complete while extraction is switched on. Returns at
    /// once; the work goes on in the background.
    virtual void autoExtractAfterDownload(const ItemId& item) = 0;
};

} // namespace vormel
