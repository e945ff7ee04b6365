#pragma once

#include "model/ItemId.h"

namespace vormel {

/// What happens to a finished file: it may be an archive, or the last part of one. UI thread only.
class PostDownload
{
public:
    PostDownload() = default;
    PostDownload(const PostDownload&) = delete;
    PostDownload& operator=(const PostDownload&) = delete;
    virtual ~PostDownload() = default;

    /// Called for each item that has just become complete while extraction is switched on. Returns at once; the work
    /// goes on in the background.
    virtual void autoExtractAfterDownload(const ItemId& item) = 0;

    /// The user's wish to try a failed extraction once more.
    virtual void retryExtraction(const ItemId& item) = 0;

    /// Is the item's archive, or the set that it is a part of, being worked on, or waiting for its turn?
    [[nodiscard]] virtual bool isWorkingOn(const ItemId& item) const = 0;
    /// Ends that work. The archive stays as it was, and nothing is left behind unless the files were being placed
    /// already; its state is idle soon after. Nothing happens when there is none.
    virtual void stopWorkOn(const ItemId& item) = 0;
};

} // namespace vormel
