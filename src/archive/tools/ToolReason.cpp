#include "archive/tools/ToolReason.h"

#include "text/BoundedRegex.h"

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using namespace std::string_view_literals;

template <std::size_t Count>
bool startsWithAny(const QByteArray& line, const std::array<std::string_view, Count>& beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(), [&](std::string_view beginning) {
        return std::string_view(line.constData(), static_cast<std::size_t>(line.size())).substr(0, beginning.size()) ==
               beginning;
    });
}

template <std::size_t Count>
bool endsWithAny(const QByteArray& line, const std::array<std::string_view, Count>& ends)
{
    return std::any_of(ends.begin(), ends.end(), [&](std::string_view end) {
        return line.trimmed().endsWith(QByteArray::fromRawData(end.data(), static_cast<qsizetype>(end.size())));
    });
}

/// A line about one member that says nothing but that it was its turn.
bool isMemberInTurn(const QByteArray& line)
{
    static constexpr std::array rar{"Extracting  "sv, "Testing     "sv, "Creating    "sv, "Skipping    "sv};
    static constexpr std::array zip{" extracting: "sv, "  inflating: "sv, "   creating: "sv, "    linking: "sv,
                                    "  exploding: "sv};
    if (line.startsWith("...         "))
        return true;
    static constexpr std::array olderSevenZip{"CRC Failed"sv, "Data Error"sv, "Wrong password?"sv,
                                              "Unsupported Method"sv};
    if (startsWithAny(line, rar)) // older 7-Zips tell what is wrong in the same line
        return !endsWithAny(line, olderSevenZip);
    return startsWithAny(line, zip) && !line.contains(" bad CRC ");
}

bool isBannerOrCount(const QByteArray& line)
{
    static constexpr std::array beginnings{"UNRAR "sv,
                                           "RAR "sv,
                                           "Trial version"sv,
                                           "Evaluation copy"sv,
                                           "Extracting from "sv,
                                           "Testing archive "sv,
                                           "Total errors:"sv,
                                           "7-Zip "sv,
                                           "p7zip Version"sv,
                                           " 64-bit locale="sv,
                                           "Scanning the drive"sv,
                                           "Extracting archive:"sv,
                                           "Processing archive:"sv,
                                           "ERRORS:"sv,
                                           "WARNINGS:"sv,
                                           "Sub items Errors:"sv,
                                           "Archives with "sv,
                                           "Open Errors:"sv,
                                           "Warnings:"sv,
                                           "Can't open as archive:"sv,
                                           "Files:"sv,
                                           "Folders:"sv,
                                           "Size:"sv,
                                           "Compressed:"sv,
                                           "Archive:  "sv,
                                           "finishing deferred symbolic links"sv};
    return startsWithAny(line, beginnings);
}

/// What 7-Zip tells of an archive that it has opened: "Physical Size = 12", "1 file, 12 bytes (1 KiB)".
bool isProperty(const QString& line)
{
    static const BoundedRegex property(uR"(^(--+$|[A-Z][A-Za-z ]* = |\d+ files?, \d))"_s);
    return static_cast<bool>(property.search(line));
}

/// Says that it ended badly and not why, or only names the archive.
bool isLesser(const QByteArray& line)
{
    static constexpr std::array beginnings{"No files to extract"sv, "Program aborted"sv, "Break signaled"sv,
                                           "System ERROR:"sv};
    const bool isEndOfTar = line.contains("tar: Error is not recoverable") ||
                            line.contains("tar: Exiting with failure") || line.contains("tar: Child returned status");
    return isEndOfTar || startsWithAny(line, beginnings) || (line.startsWith("ERROR: /") && !line.contains(" : "));
}

/// The words that speak of a password, without the name of a member or of the archive that may stand beside them.
QString wordsOf(const QString& line)
{
    if (line.endsWith(u"- checksum error") || line.contains(u": packed data checksum error in volume "))
        return {};
    if (line.startsWith(u"ERROR: /"))
        return line.mid(line.lastIndexOf(u" : ") + 1).toLower();
    return line.left(line.startsWith(u"ERROR: ") ? line.indexOf(u" : ") : -1).toLower();
}

bool containsAny(const QString& text, std::initializer_list<QStringView> phrases)
{
    return std::any_of(phrases.begin(), phrases.end(), [&](QStringView phrase) { return text.contains(phrase); });
}

/// As much as anybody reads.
void keepIn(QStringList& lines, const QString& line)
{
    constexpr qsizetype maxLines = 40;
    if (lines.size() < maxLines && !lines.contains(line))
        lines << line;
}

} // namespace

void ToolReason::readLine(const QByteArray& line)
{
    if (isMemberInTurn(line) || isBannerOrCount(line))
        return;
    const QString text = QString::fromUtf8(line).trimmed();
    if (text.isEmpty() || isProperty(text))
        return;
    const QString words = wordsOf(text);
    m_blamesPassword =
        m_blamesPassword ||
        containsAny(words, {u"enter password", u"password incorrect", u"wrong password", u"encrypted file:",
                            u"cannot open encrypted", u"can not open encrypted", u"needs a password",
                            // unzip 6 says these of a wrong and of a missing one
                            u"incorrect password", u"unable to get password"});
    m_isUnsureOfPassword =
        m_isUnsureOfPassword || containsAny(words, {u"wrong password?", u"corrupt file or wrong password"});
    // 7-Zip names an archive that it cannot open twice.
    const bool isRepeated = !m_lesser.isEmpty() && m_lesser.last() == u"ERROR: "_s + text;
    keepIn(isLesser(line) || isRepeated ? m_lesser : m_lines, text);
}

QString ToolReason::text() const
{
    return (m_lines.isEmpty() ? m_lesser : m_lines).join(u'\n');
}

ToolReason toolReason(const QString& output)
{
    ToolReason reason;
    for (const QStringView line : QStringView(output).tokenize(u'\n'))
        reason.readLine(line.toUtf8());
    return reason;
}

} // namespace vormel
