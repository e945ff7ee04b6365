#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace vormel {

/// The systems that a ZIP may say it was made on.
enum class ZipHost
{
    dos = 0,
    unixLike = 3,
    windows = 11,
};

/// A member with its name byte by byte, which packers would not write.
struct RawMember
{
    QByteArray name;
    QByteArray contents;
    bool saysUtf8 = false;
};

/// Writes a ZIP with nothing compressed. The prefix stands in front of it, as in archives that unpack themselves.
void writeRawZip(const QString& path, ZipHost host, const QList<RawMember>& members, const QByteArray& prefix = {});

} // namespace vormel
