#include "text/BoundedRegex.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

BoundedRegex::Outcome outcomeOf(const QRegularExpressionMatch& match)
{
    if (match.hasMatch())
        return BoundedRegex::Outcome::match;
    return match.isValid() ? BoundedRegex::Outcome::none : BoundedRegex::Outcome::error;
}

/// Of the one that begins there; two for one beyond the first 65,536.
qsizetype lengthOfCharacter(const QString& text, qsizetype at)
{
    return at + 1 < text.size() && text[at].isHighSurrogate() ? 2 : 1;
}

} // namespace

BoundedRegex::BoundedRegex(const QString& pattern, QRegularExpression::PatternOptions options)
    : m_fast(pattern, options)
    // The compiled machine code has a small fixed stack and fails on long texts that do match; the interpreter has not.
    , m_careful(u"(*NO_JIT)(*LIMIT_MATCH=10000000)(*LIMIT_HEAP=65536)"_s + pattern, options)
{
    Q_ASSERT(m_fast.isValid());
    Q_ASSERT(m_careful.isValid());
}

BoundedRegex::Result BoundedRegex::search(const QString& text, qsizetype from) const
{
    return search(text, from, QRegularExpression::NoMatchOption);
}

BoundedRegex::Result BoundedRegex::search(const QString& text, qsizetype from,
                                          QRegularExpression::MatchOptions options) const
{
    Result result;
    result.match = m_fast.match(text, from, QRegularExpression::NormalMatch, options);
    result.outcome = outcomeOf(result.match);
    if (result.outcome == Outcome::error) {
        result.match = m_careful.match(text, from, QRegularExpression::NormalMatch, options);
        result.outcome = outcomeOf(result.match);
    }
    return result;
}

bool BoundedRegex::visitAll(const QString& text, const Visitor& visit) const
{
    // The first search has found all of the text to be sound; to look again each time would cost its length squared.
    QRegularExpression::MatchOptions options = QRegularExpression::NoMatchOption;
    for (qsizetype from = 0; from <= text.size();) {
        const Result found = search(text, from, options);
        options = QRegularExpression::DontCheckSubjectStringMatchOption;
        if (found.outcome == Outcome::error)
            return false;
        if (!found)
            break;
        visit(found.match);
        const qsizetype end = found.match.capturedEnd();
        // An empty match must not be found for ever.
        from = end + (found.match.capturedLength() == 0 ? lengthOfCharacter(text, end) : 0);
    }
    return true;
}

std::vector<QRegularExpressionMatch> BoundedRegex::all(const QString& text) const
{
    std::vector<QRegularExpressionMatch> matches;
    const bool isWhole = visitAll(text, [&](const QRegularExpressionMatch& match) { matches.push_back(match); });
    return isWhole ? matches : std::vector<QRegularExpressionMatch>();
}

std::vector<QStringView> BoundedRegex::captures(const QString& text, int group) const
{
    std::vector<QStringView> captured;
    const bool isWhole = visitAll(text, [&](const QRegularExpressionMatch& match) {
        const qsizetype start = match.capturedStart(group);
        captured.push_back(start < 0 ? QStringView() : QStringView(text).sliced(start, match.capturedLength(group)));
    });
    return isWhole ? captured : std::vector<QStringView>();
}

QString BoundedRegex::removedFrom(const QString& text) const
{
    const Result found = search(text);
    if (!found)
        return text;
    QString rest = text;
    rest.remove(found.match.capturedStart(), found.match.capturedLength());
    return rest;
}

} // namespace vormel
