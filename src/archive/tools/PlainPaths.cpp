#include "archive/tools/PlainPaths.h"

#include "archive/tools/ExtractionError.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QLatin1StringView plainBase("archive");

/// Patterns, and whatever would break the lines that tools print.
bool isPlain(const QString& archive)
{
    const bool isZip = archive.endsWith(u".zip", Qt::CaseInsensitive);
    return std::none_of(archive.begin(), archive.end(), [isZip](QChar letter) {
        return letter == u'?' || letter == u'*' || (isZip && letter == u'[') || letter < u' ' || letter == QChar(0x7f);
    });
}

/// What the names of all volumes begin with.
QString volumeBase(const QString& name)
{
    return isSetMember(name) ? setBaseName(name) : withoutPathExtension(name);
}

/// The names of all files that belong to the archive: itself, part2, or a volume of the older kind, name.r00.
QStringList volumesOf(const QString& archive)
{
    static const QRegularExpression olderVolume(u"^\\.[r-z]\\d\\d+$"_s, QRegularExpression::CaseInsensitiveOption);
    const QString name = lastComponent(archive);
    const QString base = volumeBase(name);
    const auto isVolume = [&](const QString& entry) {
        if (entry == name)
            return true;
        if (isSetMember(name))
            return isSetMember(entry) && setBaseName(entry) == base;
        return entry.startsWith(base) && olderVolume.match(entry.mid(base.size())).hasMatch();
    };
    QStringList volumes = QDir(archive.chopped(name.size())).entryList(QDir::Files | QDir::Hidden | QDir::System);
    volumes.removeIf([&](const QString& entry) { return !isVolume(entry); });
    return volumes;
}

bool hasRecovery(const QString& archive)
{
    const QStringList volumes = volumesOf(archive);
    return std::any_of(volumes.begin(), volumes.end(), [](const QString& volume) { return isRevName(volume); });
}

std::unique_ptr<QTemporaryDir> privateFolder()
{
    const QString preferred = QDir::tempPath();
    const QString parent = isPlain(preferred + u"/x.zip"_s) ? preferred : u"/tmp"_s;
    auto folder = std::make_unique<QTemporaryDir>(parent + u"/vormel-XXXXXX"_s);
    if (!folder->isValid())
        throw ToolLaunchError(folder->errorString());
    return folder;
}

} // namespace

PlainPaths::PlainPaths(const QString& archive, const QString& destination, Recovery recovery)
    : m_archive(archive)
    , m_destination(destination)
    , m_base(volumeBase(lastComponent(archive)))
    , m_linkBase(isPlain(lastComponent(archive)) ? m_base : plainBase)
{
    const bool needsLinks = !isPlain(archive) || (recovery == Recovery::keptAway && hasRecovery(archive));
    const bool hasStar = destination.contains(u'*');
    if (!needsLinks && !hasStar)
        return;
    m_links = privateFolder();
    if (needsLinks)
        linkArchive(archive, recovery);
    if (hasStar) {
        m_destination = m_links->filePath(u"destination"_s);
        link(destination, m_destination);
    }
}

PlainPaths::~PlainPaths() = default;

void PlainPaths::linkArchive(const QString& archive, Recovery recovery)
{
    const QString name = lastComponent(archive);
    const QString folder = archive.chopped(name.size());
    const auto plainName = [this](const QString& real) {
        return m_links->filePath(m_linkBase + real.mid(m_base.size()));
    };
    for (const QString& volume : volumesOf(archive))
        if (recovery == Recovery::leftBeside || !isRevName(volume))
            link(folder + volume, plainName(volume));
    m_archive = plainName(name);
}

void PlainPaths::link(const QString& target, const QString& name)
{
    if (!QFile::link(target, name))
        throw ToolLaunchError(u"Cannot make a link in "_s + m_links->path());
}

QString PlainPaths::realName(const QString& volume) const
{
    return m_links && volume.startsWith(m_linkBase) ? m_base + volume.mid(m_linkBase.size()) : volume;
}

} // namespace vormel
