#include "SpliceClient.h"

#include "Measure.h"
#include "platform/storage/FileDescriptor.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

FileDescriptor connected(quint16 port)
{
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        giveUp(u"no connection to the server"_s);
    return socket;
}

/// Reads up to the blank line, byte by byte, so that nothing of the body is taken; gives the length of the body.
qint64 takeHead(int socket)
{
    QByteArray head;
    char byte = 0;
    while (!head.endsWith("\r\n\r\n")) {
        if (::read(socket, &byte, 1) != 1)
            giveUp(u"the server closed inside its head"_s);
        head += byte;
    }
    const qsizetype at = head.indexOf("Content-Length: ");
    return head.mid(at + 16, head.indexOf('\r', at) - at - 16).toLongLong();
}

} // namespace

void spliceToFile(quint16 port, const QByteArray& path, const QByteArray& file)
{
    const FileDescriptor socket = connected(port);
    const QByteArray request = "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
    if (::write(socket.get(), request.constData(), static_cast<size_t>(request.size())) != request.size())
        giveUp(u"the request was not taken"_s);
    qint64 left = takeHead(socket.get());
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        giveUp(u"no pipe"_s);
    const FileDescriptor out(ends[0]);
    const FileDescriptor in(ends[1]);
    constexpr int pipeSize = 1024 * 1024;
    ::fcntl(in.get(), F_SETPIPE_SZ, pipeSize);
    const FileDescriptor target(::open(file.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    while (left > 0) {
        ssize_t taken = ::splice(socket.get(), nullptr, in.get(), nullptr, pipeSize, SPLICE_F_MOVE | SPLICE_F_MORE);
        if (taken <= 0)
            giveUp(u"the body ended early"_s);
        left -= taken;
        while (taken > 0) {
            const ssize_t given = ::splice(out.get(), nullptr, target.get(), nullptr, static_cast<size_t>(taken),
                                           SPLICE_F_MOVE | SPLICE_F_MORE);
            if (given <= 0)
                giveUp(u"the file took no more"_s);
            taken -= given;
        }
    }
}

} // namespace vormel::bench
