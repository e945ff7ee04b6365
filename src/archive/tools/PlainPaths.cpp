#include "archive/tools/PlainPaths.h"

#include "archive/ExtractionError.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

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

/// Does the file belong to the archive: itself, part2, or a volume of the older kind, name.r00?
bool isVolumeOf(const QString& name, const QString& archive, const QString& base)
{
    static const QRegularExpression olderVolume(QStringLiteral("^\\.[r-z]\\d\\d+$"),
                                                QRegularExpression::CaseInsensitiveOption);
    if (name == archive)
        return true;
    if (!name.startsWith(base))
        return false;
    if (isSetMember(archive))
        return isRarPart(name) && setBaseName(name) == base;
    return olderVolume.match(name.mid(base.size())).hasMatch();
}

std::unique_ptr<QTemporaryDir> privateFolder()
{
    const QString preferred = QDir::tempPath();
    const QString parent = isPlain(preferred + QStringLiteral("/x.zip")) ? preferred : QStringLiteral("/tmp");
    auto folder = std::make_unique<QTemporaryDir>(parent + QStringLiteral("/vormel-XXXXXX"));
    if (!folder->isValid())
        throw ToolLaunchError(folder->errorString());
    return folder;
}

} // namespace

PlainPaths::PlainPaths(const QString& archive, const QString& destination)
    : m_archive(archive)
    , m_destination(destination)
    , m_base(volumeBase(lastComponent(archive)))
{
    const bool isDestinationPlain = !destination.contains(u'*');
    if (isPlain(archive) && isDestinationPlain)
        return;
    m_links = privateFolder();
    if (!isPlain(archive))
        linkArchive(archive);
    if (!isDestinationPlain) {
        m_destination = m_links->filePath(QStringLiteral("destination"));
        link(destination, m_destination);
    }
}

PlainPaths::~PlainPaths() = default;

void PlainPaths::linkArchive(const QString& archive)
{
    const QString name = lastComponent(archive);
    const QDir folder(archive.chopped(name.size()));
    const auto plainName = [this](const QString& real) {
        return m_links->filePath(plainBase + real.mid(m_base.size()));
    };
    for (const QString& entry : folder.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (isVolumeOf(entry, name, m_base))
            link(folder.filePath(entry), plainName(entry));
    m_archive = plainName(name);
}

void PlainPaths::link(const QString& target, const QString& name)
{
    if (!QFile::link(target, name))
        throw ToolLaunchError(QStringLiteral("Cannot make a link in ") + m_links->path());
}

QString PlainPaths::realName(const QString& volume) const
{
    return m_links && volume.startsWith(plainBase) ? m_base + volume.mid(plainBase.size()) : volume;
}

} // namespace vormel
