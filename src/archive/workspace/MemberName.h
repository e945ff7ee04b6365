#pragma once

namespace vormel {

struct FolderEntry;

/// What a "\" in the name of a member is.
enum class Backslash
{
    letter,
    separator, ///< it ends the name of a folder
};

/// Gives an unpacked entry of the folder its readable name (ReadableName.h), and moves it into the folders that stand
/// before its backslashes. They never lead up. A name that is taken gets a number. 0, or the system's error number.
[[nodiscard]] int giveReadableName(int folder, const FolderEntry& entry, Backslash backslash);

} // namespace vormel
