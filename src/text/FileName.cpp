#include "text/FileName.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// The end of a name that is cut elsewhere: extension and part number, by which the files of a set differ.
constexpr qsizetype keptTail = 40;

/// Names beyond this fill no row of any list.
constexpr qsizetype maxReadable = 1000;
/// What is kept of their end: enough for every extension and the number of a volume.
constexpr qsizetype readableTail = 200;

qsizetype extensionDot(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && dot + 1 < name.size() ? dot : -1;
}

bool isHarmful(QChar c)
{
    return c == u'/' || c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.category() == QChar::Other_Control);
}

QString cutToBytes(QString text, qsizetype bytes)
{
    // Each character takes a byte at least; without this first cut a huge name would be measured once per character.
    text.truncate(bytes);
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    while (text.toUtf8().size() > bytes)
        text.chop(text.size() > 1 && text.back().isLowSurrogate() ? 2 : 1);
    return text;
}

QString shortened(const QString& name, qsizetype maxBytes)
{
    constexpr qsizetype maxBytesPerUnit = 3;
    if (name.size() * maxBytesPerUnit <= maxBytes || name.toUtf8().size() <= maxBytes)
        return name;
    qsizetype cut = std::max<qsizetype>(name.size() - keptTail, 0);
    if (name[cut].isLowSurrogate())
        ++cut;
    const QString tail = name.mid(cut);
    return cutToBytes(name.left(cut), maxBytes - tail.toUtf8().size()) + tail;
}

QString withoutPartEnding(QString name)
{
    constexpr QStringView ending = u".download";
    while (name.endsWith(ending, Qt::CaseInsensitive))
        name.chop(ending.size());
    return name;
}

} // namespace

QString pathExtension(QStringView name)
{
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? QString() : name.mid(dot + 1).toString();
}

QString withoutPathExtension(QStringView name)
{
    const qsizetype dot = extensionDot(name);
    return (dot < 0 ? name : name.left(dot)).toString();
}

QString numberedFileName(const QString& name, int number)
{
    const QString numbered = withoutPathExtension(name) + u" ("_s + QString::number(number) + u')';
    const QString extension = pathExtension(name);
    return extension.isEmpty() ? numbered : numbered + u'.' + extension;
}

QString lastComponent(QStringView path)
{
    while (path.endsWith(u'/'))
        path.chop(1);
    return path.mid(path.lastIndexOf(u'/') + 1).toString();
}

QString safeFileName(const QString& name, qsizetype maxBytes)
{
    QString safe = name;
    if (std::any_of(name.begin(), name.end(), isHarmful))
        std::replace_if(safe.begin(), safe.end(), isHarmful, QChar(u'_'));
    // Lone halves of a surrogate pair have no UTF-8 form, so the name on disk would not be the name asked for.
    if (!safe.isValidUtf16())
        safe = QString::fromUtf8(safe.toUtf8());
    safe = withoutPartEnding(std::move(safe));
    if (safe.isEmpty() || safe == u"." || safe == u"..")
        return u"_"_s;
    return shortened(safe, maxBytes);
}

QString readableName(const QString& name)
{
    if (name.size() <= maxReadable)
        return name;
    qsizetype tail = name.size() - readableTail;
    if (name[tail].isLowSurrogate())
        ++tail;
    qsizetype head = maxReadable - readableTail;
    if (name[head - 1].isHighSurrogate())
        --head;
    return name.left(head) + name.mid(tail);
}

} // namespace vormel
