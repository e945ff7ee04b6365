#include "text/ByteCount.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

struct Unit
{
    QLatin1StringView name;
    int decimals = 0;
};

constexpr std::array<Unit, 6> units{{{QLatin1StringView{"KB"}, 0},
                                     {QLatin1StringView{"MB"}, 1},
                                     {QLatin1StringView{"GB"}, 2},
                                     {QLatin1StringView{"TB"}, 2},
                                     {QLatin1StringView{"PB"}, 2},
                                     {QLatin1StringView{"EB"}, 2}}};

const QLocale& groupingLocale()
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

double rounded(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

QString numberText(double value, int decimals)
{
    QString text = groupingLocale().toString(value, 'f', decimals);
    if (decimals > 0) {
        while (text.endsWith(u'0'))
            text.chop(1);
        if (text.endsWith(u'.'))
            text.chop(1);
    }
    return text;
}

} // namespace

QString byteCountText(qint64 bytes)
{
    if (bytes == 0)
        return u"Zero KB"_s;
    if (bytes < 0)
        return u'-' +
               byteCountText(bytes == std::numeric_limits<qint64>::min() ? std::numeric_limits<qint64>::max() : -bytes);
    if (bytes == 1)
        return u"1 byte"_s;
    if (bytes < 1024)
        return groupingLocale().toString(bytes) + u" bytes"_s;

    double value = static_cast<double>(bytes) / 1024.0;
    std::size_t unit = 0;
    // The rounded figure decides, so that one byte short of a megabyte reads "1 MB" and never "1,024 KB".
    while (rounded(value, units[unit].decimals) >= 1024.0 && unit + 1 < units.size()) {
        value /= 1024.0;
        ++unit;
    }
    return numberText(rounded(value, units[unit].decimals), units[unit].decimals) + u' ' + units[unit].name;
}

QString speedText(double bytesPerSecond)
{
    constexpr double firstTooFast = 9.2e18;
    if (!(bytesPerSecond > 0))
        return {};
    return byteCountText(static_cast<qint64>(std::min(bytesPerSecond, firstTooFast))) + u"/s"_s;
}

QString progressText(qint64 bytes, qint64 total)
{
    const QString received = byteCountText(bytes);
    return total > 0 ? received + u" / "_s + byteCountText(total) : received;
}

} // namespace vormel
