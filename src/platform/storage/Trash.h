#pragma once

#include <QString>

namespace vormel {

/// Where the user looks for files that the program took away.
class Trash
{
public:
    Trash() = default;
    Trash(const Trash&) = delete;
    Trash& operator=(const Trash&) = delete;
    virtual ~Trash() = default;

    /// Moves a file, or a folder with all that is in it. False if it is still where it was. Any thread.
    virtual bool moveToTrash(const QString& path) = 0;
};

/// The Trash of the desktop.
class DesktopTrash final : public Trash
{
public:
    bool moveToTrash(const QString& path) override;
};

} // namespace vormel
