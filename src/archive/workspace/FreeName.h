#pragma once

#include <QByteArray>

#include <sys/types.h>

#include <functional>

namespace vormel {

struct FolderEntry;

/// Where an entry ended, or the system's error number.
struct NewPlace
{
    QByteArray name;
    int systemError = 0;
};

/// The entry's name with a number: "name (1).ext", or "name.ext (1)" for a folder. The name itself for 0.
[[nodiscard]] QByteArray numberedName(const FolderEntry& entry, int number);

/// Moves an entry into another folder, under its name or under the first free one with a number from that on. Replaces
/// nothing. Names that isKept says are taken too.
[[nodiscard]] NewPlace moveToFreeName(int fromFolder, const QByteArray& from, int toFolder, const FolderEntry& entry,
                                      int firstNumber, const std::function<bool(const QByteArray&)>& isKept);

} // namespace vormel
