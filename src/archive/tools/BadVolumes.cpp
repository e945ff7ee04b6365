#include "archive/tools/BadVolumes.h"

#include "model/SetName.h"
#include "text/BoundedRegex.h"
#include "text/FileName.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// The path of the volume that the line blames by name, or nothing.
QString blamedVolume(const QString& line)
{
    static const std::array patterns{
        BoundedRegex::ignoringCase(uR"(^cannot find volume\s+(\S.*\.rar)$)"_s),
        BoundedRegex::ignoringCase(uR"(^checksum error in (?:volume\s+)?(\S.*\.rar)$)"_s),
        // A member's name has no slash at its beginning.
        BoundedRegex::ignoringCase(
            uR"(^(?:volume\s+)?(/.*?\.part\d+\.rar)\s*[-:]?\s.*(?:CRC|checksum|corrupt|failed|damaged))"_s),
        // Of a file that is something else, such as a web page: of a later volume, and of the first.
        BoundedRegex::ignoringCase(uR"(^(?:error: )?bad archive\s+(\S.*\.rar)$)"_s),
        BoundedRegex::ignoringCase(uR"(^(\S.*\.rar) is not RAR archive$)"_s),
    };
    for (const BoundedRegex& pattern : patterns)
        if (const BoundedRegex::Result found = pattern.search(line))
            return found.match.captured(1);
    return {};
}

/// The line without the member's name that may stand before a complaint of a volume. The last one is the tool's.
QString withoutMember(const QString& line)
{
    const qsizetype complaint = line.lastIndexOf(u" checksum error in ", -1, Qt::CaseInsensitive);
    return complaint < 0 ? line : line.mid(complaint + 1);
}

/// Does the line complain of the archive that is being tested without naming it?
bool complainsOfTestedArchive(const QString& line)
{
    static const BoundedRegex header =
        BoundedRegex::ignoringCase(uR"(^(?:error: )?(?:(?:(?:the|main|archive|file) )*header is corrupt)"
                                   uR"(|corrupt header(?: is)?(?: found)?)[.!]?$)"_s);
    return line.compare(u"Unexpected end of archive", Qt::CaseInsensitive) == 0 || header.search(line) ||
           line == u"Recovery record is corrupt." || line.endsWith(u" - the file header is corrupt");
}

/// Does the line say how far it is with a member?
bool isProgress(const QByteArray& line)
{
    return line.startsWith("Testing     ") || line.startsWith("...         ") || line.startsWith("Skipping    ") ||
           line.startsWith("Testing the recovery record");
}

/// Such a line has figures that are drawn over each other, and an end.
bool isEndOfProgress(const QByteArray& line)
{
    return line.contains('\b') || (line.trimmed().endsWith(" OK") && !line.startsWith("All OK"));
}

} // namespace

BadVolumes::BadVolumes(const QString& archive)
    : m_folder(archive.chopped(lastComponent(archive).size()))
    , m_base(setBaseName(lastComponent(archive)))
    , m_tested(archive)
{}

void BadVolumes::readLine(const QByteArray& line)
{
    if (isProgress(line))
        return;
    if (isEndOfProgress(line)) { // and its beginning stood in another line
        m_hasBrokenNames = true;
        return;
    }
    const QString text = QString::fromUtf8(line).trimmed();
    if (!text.contains(u' ') || text.startsWith(u"WARNING: "))
        return;
    if (!readArchive(text))
        readComplaint(text);
}

/// Lines that name a volume.
bool BadVolumes::readArchive(const QString& line)
{
    static const BoundedRegex testing = BoundedRegex::ignoringCase(uR"(^testing archive\s+(\S.*\.rar)$)"_s);
    if (const BoundedRegex::Result found = testing.search(line)) {
        if (isVolume(found.match.captured(1)))
            m_tested = found.match.captured(1);
        return true;
    }
    const QString blamed = blamedVolume(withoutMember(line));
    if (blamed.isEmpty() || !isVolume(blamed))
        return false;
    (blamed.startsWith(m_folder) ? m_named : m_believed).insert(lastComponent(blamed));
    return true;
}

/// Lines that name a member, or nothing.
void BadVolumes::readComplaint(const QString& line)
{
    static const BoundedRegex prompt =
        BoundedRegex::ignoringCase(uR"(^enter password \(will not be echoed\)(?: for .*)?:$)"_s);
    if (prompt.search(line)) {
        m_wantsPassword = true;
        return;
    }
    const bool isOfMember = line.endsWith(u" - checksum error", Qt::CaseInsensitive);
    // In a solid set each member behind a bad one is bad as well.
    const bool isBlame = isOfMember ? m_named.isEmpty() && m_believed.isEmpty() : complainsOfTestedArchive(line);
    if (isBlame)
        m_believed.insert(lastComponent(m_tested));
}

bool BadVolumes::isVolume(const QString& path) const
{
    return setBaseName(lastComponent(path)).compare(m_base, Qt::CaseInsensitive) == 0;
}

QStringList BadVolumes::names() const
{
    QStringList sorted = (m_hasBrokenNames ? m_named : m_named + m_believed).values();
    sorted.sort();
    return sorted;
}

} // namespace vormel
