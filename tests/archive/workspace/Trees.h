#pragma once

#include "archive/workspace/WorkFolder.h"
#include "platform/storage/FileDescriptor.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace vormel {

/// Well beyond what a path can name.
inline constexpr int veryDeep = 3'000;

/// A folder by its path, for the tests' own work with handles.
[[nodiscard]] FileDescriptor folderAt(const QString& path);

/// Makes folders called "d" in one another and gives the innermost one. No path reaches that far.
[[nodiscard]] FileDescriptor makeDeepFolders(int parent, int depth = veryDeep);
/// Goes down those folders again.
[[nodiscard]] FileDescriptor deepFolder(int parent, int depth = veryDeep);

void writeIn(int folder, const QByteArray& name, const QByteArray& bytes);
/// Null if the file is not there.
[[nodiscard]] QByteArray readIn(int folder, const QByteArray& name);

/// Runs something on a small stack and with few descriptors, as recursion and one handle for each level need many.
void runInNarrowPlace(const std::function<void()>& work);

/// The names in a folder as they are on disk, sorted.
[[nodiscard]] QList<QByteArray> namesIn(int folder);

/// Does something in a process of its own, in the midst of which that is killed.
void runAndBeKilled(const std::function<void()>& work);

} // namespace vormel
