#include "text/ProseDates.h"

#include <QString>

#include <array>
#include <optional>
#include <span>

namespace vormel {

namespace {

constexpr std::array<QStringView, 12> monthNames{
    u" january jan januar janner jaenner gennaio gen janvier janv ",
    u" february feb februar febbraio fevrier fevr fev ",
    u" march mar marz maerz mrz marzo mars ",
    u" april apr aprile avril avr ",
    u" may mai maggio mag ",
    u" june jun juni giugno giu juin ",
    u" july jul juli luglio lug juillet juil ",
    u" august aug agosto ago aout aou ",
    u" september sept sep settembre sett set septembre ",
    u" october oct oktober okt ottobre ott octobre ",
    u" november nov novembre ",
    u" december dec dezember dez dicembre dic decembre ",
};
constexpr qsizetype longestMonthName = 12; ///< with room for accents that are characters of their own

constexpr std::array<QStringView, 7> ordinalEndings{u"st", u"nd", u"rd", u"th", u"er", u"\u00BA", u"\u00B0"};
constexpr std::array<QStringView, 7> clockWords{u"at", u"alle ore", u"alle", u"ore", u"um", u"\u00E0", u"a\u0300"};
constexpr std::array<QStringView, 4> dayHalves{u"am", u"a.m.", u"pm", u"p.m."};
constexpr std::array<QStringView, 3> universalZones{u"z", u"utc", u"gmt"};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == u'_';
}

/// May join what stands on both its sides to one thing: a version, an address, the name of a file.
bool isJoining(QChar c)
{
    return c == u'.' || c == u'-' || c == u'/' || c == u'+' || c == u':';
}

/// A number as it is written; without digits it is none.
struct Figure
{
    int value = 0; ///< meaningful for up to four digits; nobody asks for more
    qsizetype digits = 0;
};

/// Reads on through the text. Each reading takes what it is asked for; where that does not stand, it takes nothing.
class Reader
{
public:
    Reader(QStringView text, qsizetype at)
        : m_text(text)
        , m_at(at)
    {}

    [[nodiscard]] qsizetype position() const { return m_at; }
    [[nodiscard]] bool isAtDigit() const { return m_at < m_text.size() && isDigit(m_text[m_at]); }

    bool take(QChar character)
    {
        const bool isThere = m_at < m_text.size() && m_text[m_at] == character;
        m_at += isThere ? 1 : 0;
        return isThere;
    }

    Figure takeFigure()
    {
        Figure figure;
        for (; isAtDigit(); ++m_at, ++figure.digits)
            figure.value = figure.digits < 4 ? figure.value * 10 + m_text[m_at].digitValue() : 0;
        return figure;
    }

    QStringView takeWord()
    {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && (m_text[m_at].isLetter() || m_text[m_at].isMark()))
            ++m_at;
        return m_text.mid(start, m_at - start);
    }

    /// Takes the first of these words that stands there as a whole, in any letter case, and tells which.
    std::optional<std::size_t> takeOneOf(std::span<const QStringView> words)
    {
        for (std::size_t i = 0; i < words.size(); ++i) {
            const qsizetype end = m_at + words[i].size();
            if (!m_text.mid(m_at).startsWith(words[i], Qt::CaseInsensitive) ||
                (end < m_text.size() && isWordCharacter(m_text[end])))
                continue;
            m_at = end;
            return i;
        }
        return std::nullopt;
    }

    bool takeBlanks()
    {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
        return m_at > start;
    }

    /// Takes what may stand between day, month and year where the month has a name.
    bool takeJoint()
    {
        const bool hasStop = take(u'.');
        const bool hasComma = take(u',');
        if (!hasStop && !hasComma && (take(u'-') || take(u'/')))
            return true;
        return takeBlanks() || hasStop || hasComma;
    }

    /// Does something longer begin or go on to the left of here?
    [[nodiscard]] bool isJoinedBefore() const
    {
        if (m_at < 2 || !isJoining(m_text[m_at - 1]))
            return false;
        const QChar before = m_text[m_at - 2];
        // "Expires:31.12.2026" names a date.
        return m_text[m_at - 1] == u':' ? isDigit(before) : isWordCharacter(before);
    }

    /// Does what was read go on to the right of here?
    [[nodiscard]] bool isJoinedBehind() const
    {
        if (m_at >= m_text.size())
            return false;
        const bool leadsOn = isJoining(m_text[m_at]) && m_at + 1 < m_text.size() && isWordCharacter(m_text[m_at + 1]);
        return leadsOn || isWordCharacter(m_text[m_at]);
    }

private:
    QStringView m_text;
    qsizetype m_at = 0;
};

struct Day
{
    QDate date; ///< invalid where there is none
    bool isYearFirst = false;
};

QDate dateOf(Figure year, int month, Figure day)
{
    return year.digits == 4 && day.digits <= 2 ? QDate(year.value, month, day.value) : QDate();
}

QDate dateOf(Figure year, Figure month, Figure day)
{
    return month.digits <= 2 ? dateOf(year, month.value, day) : QDate();
}

/// 0 for a word that names no month.
int monthOf(QStringView word)
{
    if (word.size() > longestMonthName)
        return 0;
    QString plain = QStringLiteral(" ");
    for (const QChar c : word.toString().normalized(QString::NormalizationForm_D)) {
        if (!c.isMark())
            plain += c.toLower();
    }
    plain += u' ';
    for (std::size_t i = 0; i < monthNames.size(); ++i) {
        if (monthNames[i].contains(plain))
            return static_cast<int>(i) + 1;
    }
    return 0;
}

Day takeFigureDay(Reader& reader)
{
    const Figure first = reader.takeFigure();
    for (const QChar separator : {u'-', u'/', u'.'}) {
        if (!reader.take(separator))
            continue;
        const Figure second = reader.takeFigure();
        if (!reader.take(separator))
            return {};
        Figure third = reader.takeFigure();
        if (first.digits == 4)
            return {separator == u'.' ? QDate() : dateOf(first, second, third), true};
        if (first.digits == 2 && second.digits == 2 && third.digits == 2 && separator != u'-')
            third = {2000 + third.value, 4};
        const QDate dayFirst = dateOf(third, second, first);
        return {dayFirst.isValid() || separator == u'.' ? dayFirst : dateOf(third, first, second)};
    }
    return {};
}

/// "31 December 2026", "1er janv. 2027", "31-Dec-2026"
Day takeDayMonthYear(Reader& reader)
{
    const Figure day = reader.takeFigure();
    reader.takeOneOf(ordinalEndings);
    if (!reader.takeJoint())
        return {};
    const QStringView month = reader.takeWord();
    if (month.isEmpty() || !reader.takeJoint())
        return {};
    const Figure year = reader.takeFigure();
    return year.digits == 4 ? Day{dateOf(year, monthOf(month), day)} : Day{};
}

/// "Dec. 31, 2026"
Day takeMonthDayYear(Reader& reader)
{
    const QStringView month = reader.takeWord();
    if (!reader.takeJoint() || !reader.isAtDigit())
        return {};
    const Figure day = reader.takeFigure();
    reader.takeOneOf(ordinalEndings);
    if (!reader.takeJoint())
        return {};
    const Figure year = reader.takeFigure();
    return year.digits == 4 ? Day{dateOf(year, monthOf(month), day)} : Day{};
}

Day takeDay(Reader& reader)
{
    if (!reader.isAtDigit())
        return takeMonthDayYear(reader);
    Reader ahead = reader;
    const Day day = takeFigureDay(ahead);
    if (!day.date.isValid())
        return takeDayMonthYear(reader);
    reader = ahead;
    return day;
}

/// 10:20 or 10:20:30; fractions of a second are dropped.
QTime takeClockTime(Reader& reader)
{
    const Figure hour = reader.takeFigure();
    if (hour.digits == 0 || hour.digits > 2 || !reader.take(u':'))
        return {};
    const Figure minute = reader.takeFigure();
    Figure second{0, 2};
    Reader ahead = reader;
    if (ahead.take(u':') && ahead.isAtDigit()) {
        second = ahead.takeFigure();
        reader = ahead;
        if (ahead.take(u'.') && ahead.takeFigure().digits > 0)
            reader = ahead;
    }
    return minute.digits == 2 && second.digits == 2 ? QTime(hour.value, minute.value, second.value) : QTime();
}

QTime takeTime(Reader& reader)
{
    const QTime time = takeClockTime(reader);
    Reader ahead = reader;
    ahead.takeBlanks();
    const std::optional<std::size_t> half = ahead.takeOneOf(dayHalves);
    if (!time.isValid() || !half)
        return time;
    reader = ahead;
    const bool isAfternoon = *half >= 2;
    return time.hour() > 12 ? QTime() : QTime(time.hour() % 12 + (isAfternoon ? 12 : 0), time.minute(), time.second());
}

/// "+01:00", "-0500" or "+01", in seconds east of Greenwich.
std::optional<int> takeOffset(Reader& reader)
{
    const bool isWest = reader.take(u'-');
    if (!isWest && !reader.take(u'+'))
        return std::nullopt;
    Figure hours = reader.takeFigure();
    Figure minutes{0, 2};
    if (hours.digits == 4) {
        minutes.value = hours.value % 100;
        hours = {hours.value / 100, 2};
    } else if (reader.take(u':')) {
        minutes = reader.takeFigure();
    }
    if (hours.digits != 2 || hours.value > 14 || minutes.digits != 2 || minutes.value > 59)
        return std::nullopt;
    return (isWest ? -60 : 60) * (hours.value * 60 + minutes.value);
}

/// Behind other dates than those with the year first, "10:20-12:00" is a span of time.
std::optional<int> takeZone(Reader& reader, const Day& day)
{
    Reader ahead = reader;
    ahead.takeBlanks();
    std::optional<int> offset;
    if (ahead.takeOneOf(universalZones))
        offset = 0;
    else if (day.isYearFirst)
        offset = takeOffset(ahead);
    if (offset)
        reader = ahead;
    return offset;
}

/// A time that the clocks skip in spring is the one that they show instead.
QDateTime localMoment(QDate date, QTime time)
{
    const QDateTime moment(date, time);
    return moment.isValid() ? moment : QDateTime::fromMSecsSinceEpoch(moment.toMSecsSinceEpoch());
}

/// What the day and the time behind it name; invalid where no time of its own stands there.
QDateTime takeMoment(Reader& reader, const Day& day)
{
    if (!day.isYearFirst || !(reader.take(u'T') || reader.take(u't'))) {
        const bool hasComma = reader.take(u',');
        if (!reader.takeBlanks() && !hasComma)
            return {};
        reader.takeOneOf(clockWords);
        reader.takeBlanks();
    }
    const QTime time = takeTime(reader);
    const std::optional<int> offset = time.isValid() ? takeZone(reader, day) : std::nullopt;
    if (!time.isValid() || reader.isJoinedBehind())
        return {};
    return offset ? QDateTime(day.date, time, Qt::OffsetFromUTC, *offset).toLocalTime() : localMoment(day.date, time);
}

/// The date that begins just there; the reader then stands behind it.
std::optional<ProseDate> takeDate(Reader& reader)
{
    const qsizetype start = reader.position();
    if (reader.isJoinedBefore())
        return std::nullopt;
    const Day day = takeDay(reader);
    if (!day.date.isValid())
        return std::nullopt;
    Reader ahead = reader;
    if (const QDateTime moment = takeMoment(ahead, day); moment.isValid()) {
        reader = ahead;
        return ProseDate{start, moment};
    }
    if (reader.isJoinedBehind())
        return std::nullopt;
    return ProseDate{start, localMoment(day.date, QTime(12, 0))};
}

} // namespace

std::vector<ProseDate> datesIn(QStringView text)
{
    std::vector<ProseDate> dates;
    for (qsizetype at = 0; at < text.size();) {
        if (!isWordCharacter(text[at])) {
            ++at;
            continue;
        }
        Reader reader(text, at);
        if (const std::optional<ProseDate> date = takeDate(reader)) {
            dates.push_back(*date);
            at = reader.position();
            continue;
        }
        // A date begins where a word or number does; to try again within one would cost its length each time.
        while (at < text.size() && isWordCharacter(text[at]))
            ++at;
    }
    return dates;
}

} // namespace vormel
