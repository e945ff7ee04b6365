#include "platform/desktop/SingleInstance.h"

#include "platform/desktop/InstanceMessage.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Nothing for a path that is too long for a socket.
std::optional<sockaddr_un> socketAddress(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof(address.sun_path))
        return std::nullopt;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

const sockaddr* generic(const sockaddr_un& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

bool tellsSenders(int socket)
{
    const int yes = 1;
    return ::setsockopt(socket, SOL_SOCKET, SO_PASSCRED, &yes, sizeof(yes)) == 0;
}

FileDescriptor datagramSocket()
{
    return FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

} // namespace

SingleInstance::SingleInstance(const QString& folder, QObject* parent)
    : QObject(parent)
    , m_socketPath(QFile::encodeName(folder + u"/vormel.socket"_s))
{
    QDir().mkpath(folder);
    const QByteArray lockPath = QFile::encodeName(folder + u"/vormel.lock"_s);
    m_lock = FileDescriptor(::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    m_isFirst = takeLock();
    if (m_isFirst)
        listen();
}

SingleInstance::~SingleInstance()
{
    stopListening();
}

bool SingleInstance::takeLock() const
{
    return !m_lock.isOpen() || ::flock(m_lock.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool SingleInstance::tryToBecomeFirst()
{
    if (!m_isFirst && takeLock()) {
        m_isFirst = true;
        listen();
    }
    return m_isFirst;
}

void SingleInstance::stopListening()
{
    if (!m_socket.isOpen())
        return;
    ::unlink(m_socketPath.constData());
    m_notifier.reset();
    m_socket.close();
}

void SingleInstance::listen()
{
    const std::optional<sockaddr_un> address = socketAddress(m_socketPath);
    if (!address)
        return;
    // A killed program leaves its socket behind; the lock says that it is nobody's.
    ::unlink(m_socketPath.constData());
    m_socket = datagramSocket();
    if (!m_socket.isOpen() || !tellsSenders(m_socket.get()) ||
        ::bind(m_socket.get(), generic(*address), sizeof(*address)) != 0) {
        m_socket.close();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SingleInstance::takeRequests);
}

void SingleInstance::takeRequests()
{
    while (const std::optional<InstanceMessage> message = receiveInstanceMessage(m_socket.get())) {
        if (message->sender == ::getuid())
            Q_EMIT showRequested(message->text);
    }
}

bool SingleInstance::askFirstToShow(const QString& text) const
{
    const std::optional<sockaddr_un> address = socketAddress(m_socketPath);
    const FileDescriptor socket = datagramSocket();
    return address && socket.isOpen() && sendInstanceMessage(socket.get(), *address, text);
}

} // namespace vormel
