#include "archive/workspace/HarmlessTree.h"

#include "archive/workspace/MemberName.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/TreeSurvey.h"
#include "archive/workspace/TreeWalk.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace vormel {

namespace {

constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;

/// Does what the survey found needful.
class Mending final : public TreeVisitor
{
public:
    Mending(const TreeSurvey& survey, Backslash backslash)
        : m_survey(survey)
        , m_backslash(backslash)
    {}

    [[nodiscard]] int systemError() const { return m_systemError; }

    std::vector<QByteArray> arrive(int folder, const QByteArray& name) override
    {
        std::vector<QByteArray> folders;
        const auto here = factsOf(folder);
        const auto entries = here ? entriesOf(folder) : std::nullopt;
        if (!entries) {
            note(errno);
            return folders;
        }
        if (name.isEmpty())
            m_inheritedBits = here->st_mode & S_ISGID;
        for (const FolderEntry& entry : *entries) {
            const auto facts = factsOf(folder, entry.name);
            if (!facts)
                note(errno);
            else if (m_survey.isHarmful(identityOf(*here), entry.name, *facts))
                noteUnless(::unlinkat(folder, entry.name.constData(), 0) == 0);
            else
                mend(folder, entry, *facts, folders);
        }
        return folders;
    }

    /// A folder gets its name last, when nobody has to find it again.
    void comeBack(int folder, const QByteArray& name) override
    {
        note(giveReadableName(folder, {name, S_IFDIR}, m_backslash));
    }

private:
    void mend(int folder, const FolderEntry& entry, const struct stat& facts, std::vector<QByteArray>& folders)
    {
        const mode_t mode = facts.st_mode & ALLPERMS;
        const mode_t wanted = wantedMode(entry, mode);
        if (entry.type != S_IFLNK && wanted != mode)
            noteUnless(changeMode(folder, entry.name, wanted));
        if (entry.isFolder())
            folders.push_back(entry.name);
        else
            note(giveReadableName(folder, entry, m_backslash));
    }

    /// A folder keeps the bit that its place gives to every folder made there. Its owner has access since the survey.
    [[nodiscard]] mode_t wantedMode(const FolderEntry& entry, mode_t mode) const
    {
        return entry.isFolder() ? mode & (permissions | m_inheritedBits) : (mode & permissions) | S_IRUSR;
    }

    void note(int error)
    {
        if (m_systemError == 0)
            m_systemError = error;
    }
    void noteUnless(bool isDone)
    {
        if (!isDone)
            note(errno);
    }

    const TreeSurvey& m_survey;
    Backslash m_backslash;
    mode_t m_inheritedBits = 0;
    int m_systemError = 0;
};

} // namespace

int makeHarmless(const QString& root, ArchiveFormat format)
{
    const QByteArray path = QFile::encodeName(root);
    const FileDescriptor top = openFolder(AT_FDCWD, path);
    // A member may have been the folder itself, with any permissions.
    if (!top.isOpen() || !giveOwnerAccess(AT_FDCWD, path))
        return errno;
    TreeSurvey survey;
    if (const int error = survey.look(openFolder(top.get(), ".")))
        return error;
    Mending mending(survey, format == ArchiveFormat::zip ? Backslash::separator : Backslash::letter);
    const int error = walkTree(openFolder(top.get(), "."), mending);
    return error != 0 ? error : mending.systemError();
}

} // namespace vormel
