#include "archive/BadVolumes.h"

#include "model/SetName.h"
#include "text/BoundedRegex.h"
#include "text/FileName.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <optional>

namespace vormel {

namespace {

BoundedRegex ignoringCase(const QString& pattern)
{
    return BoundedRegex(pattern, QRegularExpression::CaseInsensitiveOption);
}

/// Walks through the lines of a tool's output and collects the volumes that it blames. No pattern looks at more than
/// one line, nor at more of it than a path and some words need, so that an endless line costs no more than a short one.
class Blame
{
public:
    void readLine(const QString& line)
    {
        // Most lines only count.
        const bool mentionsVolume = line.contains(u".rar", Qt::CaseInsensitive);
        if (mentionsVolume)
            readNamedVolume(line);
        if (mentionsVolume || !m_tested.isEmpty())
            readTestedVolume(line);
        if (mentionsVolume || !m_carried.isEmpty())
            readVolumeBeforeComplaint(line);
    }

    [[nodiscard]] const QSet<QString>& names() const { return m_names; }

private:
    void add(const QString& path) { m_names.insert(lastComponent(path)); }

    /// The complaint and the volume in one breath.
    void readNamedVolume(const QString& line)
    {
        static const std::array patterns{
            ignoringCase(QStringLiteral(R"(cannot find volume\s+(\S+\.rar))")),
            ignoringCase(QStringLiteral(R"(checksum error in (?:volume\s+)?(\S+\.rar))")),
            // unrar 6 and rar 7 say these of a file that is something else, such as a web page: of a later volume, and
            // of the first.
            ignoringCase(QStringLiteral(R"(bad archive\s+(\S+\.rar))")),
            ignoringCase(QStringLiteral(R"((?<!\S)(\S+\.rar) is not RAR archive)")),
        };
        for (const BoundedRegex& pattern : patterns)
            if (const BoundedRegex::Result found = pattern.search(line))
                add(found.match.captured(1));
    }

    /// unrar 6 and rar 7 do not name a volume that is cut short, nor the one in which a damaged file ends: it is the
    /// one that they were just testing. A file's error alone says nothing new when a volume is to blame already, as
    /// that file, and in a solid set each one behind it, can be bad because of that volume.
    void readTestedVolume(const QString& line)
    {
        static const BoundedRegex testing = ignoringCase(QStringLiteral(R"(^Testing archive\s+(\S+\.rar)\s*$)"));
        static const BoundedRegex fileIsBad = ignoringCase(QStringLiteral(R"(- checksum error\s*$)"));
        if (const BoundedRegex::Result found = testing.search(line))
            m_tested = found.match.captured(1);
        else if (m_tested.isEmpty())
            return;
        else if (line.startsWith(u"Unexpected end of archive", Qt::CaseInsensitive) ||
                 (m_names.isEmpty() && fileIsBad.search(line)))
            add(m_tested);
    }

    /// A volume and, behind it or at the start of the next line that is not blank, a word of complaint.
    void readVolumeBeforeComplaint(const QString& line)
    {
        static const BoundedRegex complaint =
            ignoringCase(QStringLiteral(R"(.*(CRC|checksum|corrupt|failed|damaged))"));
        static const BoundedRegex volume = ignoringCase(QStringLiteral(R"((?<!\S)(\S+\.part\d+\.rar)[-:]?(?=\s))"));
        static const BoundedRegex trailing = ignoringCase(QStringLiteral(R"((?<!\S)(\S+\.part\d+\.rar)\s*[-:]?\s*$)"));
        QString rest = line;
        if (const BoundedRegex::Result complained = complaint.search(line)) {
            const BoundedRegex::Result named = volume.search(line);
            if (!m_carried.isEmpty())
                add(m_carried);
            else if (named && named.match.capturedEnd() <= complained.match.capturedStart(1))
                add(named.match.captured(1));
            rest = line.mid(complained.match.capturedEnd(1));
        }
        const BoundedRegex::Result last = trailing.search(rest);
        m_carried = last ? last.match.captured(1) : QString();
    }

    QSet<QString> m_names;
    QString m_tested;
    QString m_carried;
};

/// The patterns take paths without blanks. Those of the set's own path are replaced for the time being by a character
/// that stands in no name.
constexpr QChar standIn(u'\uE000');

QString withBlanksHidden(QString line, const QString& part)
{
    if (!part.contains(u' '))
        return line;
    QString hidden = part;
    hidden.replace(u' ', standIn);
    return line.replace(part, hidden, Qt::CaseInsensitive);
}

} // namespace

QStringList badVolumes(const QString& output, const QString& archive)
{
    constexpr qsizetype longestLine = 4096;
    const QString name = lastComponent(archive);
    const QString folder = archive.chopped(name.size());
    Blame blame;
    bool isHeaderCorrupt = false;
    for (const QStringView line : QStringView(output).tokenize(u'\n')) {
        const QString text = line.left(longestLine).toString();
        if (text.trimmed().isEmpty())
            continue;
        isHeaderCorrupt = isHeaderCorrupt || text.contains(u"header is corrupt", Qt::CaseInsensitive) ||
                          text.contains(u"corrupt header", Qt::CaseInsensitive);
        blame.readLine(withBlanksHidden(withBlanksHidden(text, folder), setBaseName(name)));
    }
    QSet<QString> names = blame.names();
    if (isHeaderCorrupt)
        names.insert(name);
    QStringList sorted = names.values();
    for (QString& bad : sorted)
        bad.replace(standIn, u' ');
    sorted.sort();
    return sorted;
}

} // namespace vormel
