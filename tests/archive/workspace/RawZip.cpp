#include "archive/workspace/RawZip.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

namespace vormel {

namespace {

QByteArray little16(int number)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(static_cast<quint16>(number), bytes.data());
    return bytes;
}

QByteArray little32(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray sizeOf(const QByteArray& bytes)
{
    return little32(static_cast<quint32>(bytes.size()));
}

quint32 checksum(const QByteArray& bytes)
{
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xedb88320U : 0U);
    }
    return ~sum;
}

/// What a member's two headers have in common.
QByteArray description(const RawMember& member)
{
    constexpr int version = 20;
    constexpr int utf8Flag = 0x800;
    constexpr int date = 0x5821;
    return little16(version) + little16(member.saysUtf8 ? utf8Flag : 0) + little16(0) + little16(0) + little16(date) +
           little32(checksum(member.contents)) + sizeOf(member.contents) + sizeOf(member.contents) +
           little16(static_cast<int>(member.name.size())) + little16(0);
}

} // namespace

void writeRawZip(const QString& path, ZipHost host, const QList<RawMember>& members, const QByteArray& prefix)
{
    constexpr int version = 20;
    constexpr quint32 plainFile = 0100644;
    const int maker = static_cast<int>(host) * 256 + version;
    QByteArray files;
    QByteArray directory;
    for (const RawMember& member : members) {
        const quint32 attributes = host == ZipHost::unixLike ? plainFile << 16U : 0;
        directory += "PK\1\2" + little16(maker) + description(member) + QByteArray(6, '\0') + little32(attributes) +
                     sizeOf(files) + member.name;
        files += "PK\3\4" + description(member) + member.name + member.contents;
    }
    const QByteArray count = little16(static_cast<int>(members.size()));
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(prefix + files + directory + "PK\5\6" + QByteArray(4, '\0') + count + count + sizeOf(directory) +
               sizeOf(files) + QByteArray(2, '\0'));
}

} // namespace vormel
