#include "app/update/Version.h"

#include <algorithm>

namespace vormel {

namespace {

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// Takes the leading run of digits, or of others, off the text.
QStringView takePiece(QStringView& text)
{
    const bool areDigits = isDigit(text.front());
    const auto* const end =
        std::find_if(text.begin(), text.end(), [areDigits](QChar next) { return isDigit(next) != areDigits; });
    const QStringView piece(text.begin(), end);
    text = QStringView(end, text.end());
    return piece;
}

QStringView withoutLeadingZeros(QStringView digits)
{
    const auto* const first = std::find_if(digits.begin(), digits.end(), [](QChar digit) { return digit != u'0'; });
    return {first, digits.end()};
}

std::weak_ordering comparePieces(QStringView a, QStringView b)
{
    if (isDigit(a.front()) && isDigit(b.front())) {
        a = withoutLeadingZeros(a);
        b = withoutLeadingZeros(b);
        if (a.size() != b.size())
            return a.size() <=> b.size();
    }
    return a.compare(b, Qt::CaseInsensitive) <=> 0;
}

/// A release has no suffix and comes after all that have one.
std::weak_ordering compareSuffixes(QStringView a, QStringView b)
{
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() <=> b.isEmpty();
    while (!a.isEmpty() && !b.isEmpty()) {
        const std::weak_ordering order = comparePieces(takePiece(a), takePiece(b));
        if (std::is_neq(order))
            return order;
    }
    return a.size() <=> b.size();
}

/// Takes "1.2.3" off the front of the text. Nothing if there is no number, or one that is too large.
std::optional<std::vector<quint32>> takeNumbers(QStringView& text)
{
    std::vector<quint32> numbers;
    do {
        if (!numbers.empty())
            text = text.sliced(1);
        bool isNumber = false;
        numbers.push_back(takePiece(text).toUInt(&isNumber));
        if (!isNumber)
            return std::nullopt;
    } while (text.size() > 1 && text.front() == u'.' && isDigit(text[1]));
    while (!numbers.empty() && numbers.back() == 0)
        numbers.pop_back();
    return numbers;
}

} // namespace

std::optional<Version> Version::parse(const QString& text)
{
    Version version;
    version.m_text = text.trimmed();
    QStringView rest = version.m_text;
    if (rest.startsWith(u'v', Qt::CaseInsensitive))
        rest = rest.sliced(1);
    constexpr qsizetype maxLength = 64; // it comes from outside and is shown
    if (rest.isEmpty() || rest.size() > maxLength || !isDigit(rest.front()))
        return std::nullopt;
    std::optional<std::vector<quint32>> numbers = takeNumbers(rest);
    if (!numbers)
        return std::nullopt;
    version.m_numbers = std::move(*numbers);
    version.m_suffix = rest.left(rest.indexOf(u'+')).toString();
    return version;
}

std::weak_ordering Version::operator<=>(const Version& other) const
{
    const std::weak_ordering order = m_numbers <=> other.m_numbers;
    return std::is_neq(order) ? order : compareSuffixes(m_suffix, other.m_suffix);
}

} // namespace vormel
