#include "platform/desktop/InstanceMessage.h"

#include "platform/storage/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace vormel {

namespace {

/// With these nobody can change or cut the file any more, so that reading it needs no care.
constexpr int allSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

FileDescriptor sealed(const QByteArray& bytes)
{
    FileDescriptor file(::memfd_create("vormel-links", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool isDone = file.isOpen() && ::write(file.get(), bytes.constData(), size) == bytes.size() &&
                        ::fcntl(file.get(), F_ADD_SEALS, allSeals) == 0;
    return isDone ? std::move(file) : FileDescriptor();
}

QString unsealed(const FileDescriptor& file)
{
    // Also tells it from any other kind of file, which might keep its reader waiting.
    const int seals = ::fcntl(file.get(), F_GET_SEALS);
    struct stat status = {};
    if (seals < 0 || (seals & allSeals) != allSeals || ::fstat(file.get(), &status) != 0 || status.st_size < 0 ||
        status.st_size > InstanceMessage::maxTextBytes)
        return {};
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    const ssize_t count = ::pread(file.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), 0);
    return count == bytes.size() ? QString::fromUtf8(bytes) : QString();
}

/// Room for what may come beside the bytes, as the system wants it laid out.
template <std::size_t size>
struct Ancillary
{
    alignas(cmsghdr) std::array<char, size> bytes{};
};

template <typename T>
T valueOf(const cmsghdr& header)
{
    T value{};
    std::memcpy(&value, CMSG_DATA(&header), sizeof(value));
    return value;
}

/// Every descriptor that came is ours to close; the first one counts.
FileDescriptor firstDescriptor(const cmsghdr& header)
{
    FileDescriptor first;
    const std::size_t count = (header.cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
        int number = -1;
        std::memcpy(&number, CMSG_DATA(&header) + i * sizeof(int), sizeof(int));
        FileDescriptor came(number);
        if (i == 0)
            first = std::move(came);
    }
    return first;
}

} // namespace

bool sendInstanceMessage(int socket, const sockaddr_un& address, const QString& text)
{
    sockaddr_un target = address;
    char mark = '!';
    iovec content = {&mark, sizeof(mark)};
    msghdr message = {};
    message.msg_name = &target;
    message.msg_namelen = sizeof(target);
    message.msg_iov = &content;
    message.msg_iovlen = 1;

    const QByteArray bytes = text.toUtf8();
    FileDescriptor file;
    Ancillary<CMSG_SPACE(sizeof(int))> room;
    if (!bytes.isEmpty()) {
        file = bytes.size() <= InstanceMessage::maxTextBytes ? sealed(bytes) : FileDescriptor();
        if (!file.isOpen())
            return false;
        const int number = file.get();
        message.msg_control = room.bytes.data();
        message.msg_controllen = room.bytes.size();
        cmsghdr* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(header), &number, sizeof(number));
    }
    return ::sendmsg(socket, &message, MSG_NOSIGNAL) == sizeof(mark);
}

std::optional<InstanceMessage> receiveInstanceMessage(int socket)
{
    char mark = 0;
    iovec content = {&mark, sizeof(mark)};
    Ancillary<CMSG_SPACE(sizeof(int)) + CMSG_SPACE(sizeof(ucred))> room;
    msghdr message = {};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = room.bytes.data();
    message.msg_controllen = room.bytes.size();
    if (::recvmsg(socket, &message, MSG_CMSG_CLOEXEC) < 0)
        return std::nullopt;

    InstanceMessage received{static_cast<uid_t>(-1), {}};
    for (const cmsghdr* header = CMSG_FIRSTHDR(&message); header;
         header = CMSG_NXTHDR(&message, const_cast<cmsghdr*>(header))) {
        if (header->cmsg_level != SOL_SOCKET)
            continue;
        if (header->cmsg_type == SCM_CREDENTIALS)
            received.sender = valueOf<ucred>(*header).uid;
        else if (header->cmsg_type == SCM_RIGHTS)
            received.text = unsealed(firstDescriptor(*header));
    }
    return received;
}

} // namespace vormel
