#include "app/LinkFile.h"

#include "platform/storage/FileDescriptor.h"
#include "text/HttpLinks.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

LinkFile failed(LinkFile::Problem problem)
{
    return {{}, problem};
}

} // namespace

LinkFile readLinkFile(const QString& path)
{
    // The open of a pipe would wait for whoever writes to it.
    const FileDescriptor opened(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!opened.isOpen())
        return failed(errno == ENOENT ? LinkFile::Problem::missing : LinkFile::Problem::unreadable);
    struct stat status = {};
    if (::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return failed(LinkFile::Problem::unreadable);
    QFile file;
    if (!file.open(opened.get(), QIODevice::ReadOnly))
        return failed(LinkFile::Problem::unreadable);
    // One more than may be, as a file may grow, and those of the system tell no size.
    const QByteArray bytes = file.read(LinkFile::maxBytes + 1);
    if (file.error() != QFile::NoError)
        return failed(LinkFile::Problem::unreadable);
    if (bytes.size() > LinkFile::maxBytes)
        return failed(LinkFile::Problem::tooLarge);
    std::vector<Link> links = httpLinks(QString::fromUtf8(bytes));
    if (links.empty())
        return failed(LinkFile::Problem::empty);
    return {std::move(links), std::nullopt};
}

std::optional<QString> pathOfFile(const Link& address)
{
    const QUrl url = address.toUrl();
    const bool isHere = url.host().isEmpty() || url.host() == u"localhost";
    if (url.scheme() != u"file" || !isHere || url.path().isEmpty())
        return std::nullopt;
    return url.path(QUrl::FullyDecoded);
}

bool isElsewhere(const QString& address)
{
    static const QRegularExpression anyPlace(u"^(?!https?:)[a-z][a-z0-9+.-]*://."_s,
                                             QRegularExpression::CaseInsensitiveOption);
    const std::optional<Link> link = Link::parse(address);
    return anyPlace.match(address).hasMatch() && !(link && pathOfFile(*link));
}

TextPair problemText(LinkFile::Problem problem)
{
    switch (problem) {
    case LinkFile::Problem::missing:
        return {u"No such file", u"Il file non esiste"};
    case LinkFile::Problem::unreadable:
        return {u"The file can't be read", u"Impossibile leggere il file"};
    case LinkFile::Problem::tooLarge:
        return {u"The file is larger than 4 MiB", u"Il file supera i 4 MiB"};
    case LinkFile::Problem::empty:
        return {u"There is no link in the file", u"Nel file non c'è alcun link"};
    }
    Q_UNREACHABLE();
}

} // namespace vormel
