#include "text/Hex.h"

#include <algorithm>

namespace vormel {

std::optional<QByteArray> bytesFromHex(QStringView text)
{
    const auto isDigit = [](QChar letter) {
        const char16_t small = letter.unicode() | 0x20U;
        return (letter >= u'0' && letter <= u'9') || (small >= u'a' && small <= u'f');
    };
    if (text.size() % 2 != 0 || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    return QByteArray::fromHex(text.toLatin1());
}

} // namespace vormel
