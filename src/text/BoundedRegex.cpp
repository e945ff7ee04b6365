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
    Result result;
    result.match = m_fast.match(text, from);
    result.outcome = outcomeOf(result.match);
    if (result.outcome == Outcome::error) {
        result.match = m_careful.match(text, from);
        result.outcome = outcomeOf(result.match);
    }
    return result;
}

std::vector<QRegularExpressionMatch> BoundedRegex::all(const QString& text) const
{
    std::vector<QRegularExpressionMatch> matches;
    for (qsizetype from = 0; from <= text.size();) {
        const Result found = search(text, from);
        if (found.outcome == Outcome::error)
            return {};
        if (!found)
            break;
        matches.push_back(found.match);
        // An empty match must not be found for ever.
        from = found.match.capturedEnd() + (found.match.capturedLength() == 0 ? 1 : 0);
    }
    return matches;
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
