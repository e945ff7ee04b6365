#include "archive/workspace/WorkMark.h"

#include "archive/workspace/OpenFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace vormel {

namespace {

constexpr std::string_view words =
    "Vormel unpacks an archive here. This folder may be removed when Vormel is not running.\n";

bool saysSo(int mark)
{
    std::array<char, words.size() + 1> text{};
    const ssize_t length = ::pread(mark, text.data(), text.size(), 0);
    return length >= 0 && std::string_view(text.data(), static_cast<std::size_t>(length)) == words;
}

/// Killed before it could say so: then there is nothing else yet.
bool isUnsaid(int folder, const struct stat& mark)
{
    const auto entries = mark.st_size == 0 ? entriesOf(folder) : std::nullopt;
    return entries && entries->size() == 1;
}

} // namespace

FileDescriptor putWorkMark(int folder)
{
    constexpr mode_t mode = 0600;
    FileDescriptor mark(::openat(folder, workMarkName, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    // It says what it is only once it is locked, and not at all where nothing can be locked: a folder that stays
    // behind for good is better than one that is taken away from a tool.
    if (mark.isOpen() && ::flock(mark.get(), LOCK_EX) == 0 &&
        ::write(mark.get(), words.data(), words.size()) == static_cast<ssize_t>(words.size()))
        ::fsync(mark.get());
    return mark;
}

FileDescriptor claimWorkMark(int folder)
{
    // Not waiting, in case somebody put a pipe there.
    FileDescriptor mark(::openat(folder, workMarkName, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const auto facts = factsOf(mark.get());
    if (!facts || !S_ISREG(facts->st_mode) || facts->st_uid != ::geteuid() ||
        ::flock(mark.get(), LOCK_EX | LOCK_NB) != 0 || !(saysSo(mark.get()) || isUnsaid(folder, *facts)))
        mark.close();
    return mark;
}

} // namespace vormel
