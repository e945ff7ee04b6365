#include "archive/workspace/TreeSurvey.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>

namespace vormel {

namespace {

/// Empty, as no target is, if it cannot be read.
QByteArray targetOf(int folder, const QByteArray& name)
{
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlinkat(folder, name.constData(), target.data(), target.size());
    return length < 0 ? QByteArray() : QByteArray(target.data(), static_cast<qsizetype>(length));
}

} // namespace

int TreeSurvey::look(FileDescriptor top)
{
    const int error = walkTree(std::move(top), *this);
    judge();
    return error != 0 ? error : m_systemError;
}

bool TreeSurvey::isHarmful(const FileIdentity& folder, const QByteArray& name, const struct stat& facts) const
{
    if (S_ISLNK(facts.st_mode))
        return m_escapingLinks.contains({folder, name});
    if (S_ISREG(facts.st_mode))
        return facts.st_nlink > 1 && m_namesOutside.value(identityOf(facts)) != 0;
    return !S_ISDIR(facts.st_mode);
}

std::vector<QByteArray> TreeSurvey::arrive(int folder, const QByteArray& name)
{
    m_path.push_back(m_judge.addFolder(m_path.empty() ? 0 : m_path.back(), name));
    std::vector<QByteArray> folders;
    const auto entries = entriesOf(folder);
    if (!entries) {
        m_systemError = errno;
        return folders;
    }
    for (const FolderEntry& entry : *entries) {
        if (!entry.isFolder())
            lookAt(folder, entry);
        else if (giveOwnerAccess(folder, entry.name))
            folders.push_back(entry.name);
        else
            m_systemError = errno;
    }
    return folders;
}

void TreeSurvey::comeBack(int, const QByteArray&)
{
    m_path.pop_back();
}

void TreeSurvey::lookAt(int folder, const FolderEntry& entry)
{
    if (entry.type == S_IFLNK) {
        lookAtLink(folder, entry.name);
        return;
    }
    const auto facts = entry.type == S_IFREG ? factsOf(folder, entry.name) : std::nullopt;
    if (!facts || facts->st_nlink <= 1)
        return;
    const auto known = m_namesOutside.constFind(identityOf(*facts));
    const nlink_t names = known == m_namesOutside.constEnd() ? facts->st_nlink : *known;
    m_namesOutside.insert(identityOf(*facts), names - 1);
}

void TreeSurvey::lookAtLink(int folder, const QByteArray& name)
{
    const auto here = factsOf(folder);
    if (!here) {
        m_systemError = errno;
        return;
    }
    m_foldersWithLinks.insert(m_path.back(), identityOf(*here));
    m_judge.addLink(m_path.back(), name, targetOf(folder, name));
}

void TreeSurvey::judge()
{
    for (const LinkJudge::Link& link : m_judge.leadingOut())
        m_escapingLinks.insert({m_foldersWithLinks.value(link.folder), link.name});
}

} // namespace vormel
