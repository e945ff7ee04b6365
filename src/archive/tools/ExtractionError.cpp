#include "archive/tools/ExtractionError.h"

#include "archive/tools/InstallAdvice.h"

#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// The first characters as a reader counts them.
QString firstCharacters(const QString& text, int count)
{
    // A character may be made of any number of code points; this many are enough for any that is meant to be read.
    constexpr qsizetype unitsPerCharacter = 32;
    QString start = text.left(count * unitsPerCharacter);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start);
    for (int i = 0; i < count; ++i)
        if (finder.toNextBoundary() < 0)
            return start;
    return start.left(finder.position());
}

// What unrar and rar exit with, whatever they print.
constexpr int badPasswordCode = 11;

} // namespace

ToolStopped::ToolStopped()
    : ArchiveError(u"Stopped"_s)
{}

ExtractionError::ExtractionError(Kind kind, const QString& description)
    : ArchiveError(description)
    , m_kind(kind)
{}

ExtractionError ExtractionError::toolNotFound(const QString& tool)
{
    return {Kind::toolNotFound, toolNotFoundText(tool)};
}

ExtractionError ExtractionError::repairToolNotFound()
{
    return {Kind::toolNotFound, repairToolNotFoundText()};
}

ExtractionError ExtractionError::extractionFailed(int exitCode, const QString& output)
{
    return extractionFailed(exitCode, output, toolReason(output));
}

ExtractionError ExtractionError::extractionFailed(int exitCode, const QString& output, const ToolReason& reason)
{
    constexpr int shownCharacters = 200;
    const QString told = reason.text();
    ExtractionError error(Kind::extractionFailed, u"Extraction failed (code "_s + QString::number(exitCode) + u"): "_s +
                                                      firstCharacters(told.isEmpty() ? output : told, shownCharacters));
    error.m_exitCode = exitCode;
    error.m_output = output;
    error.m_reason = reason;
    return error;
}

ExtractionError ExtractionError::unsupportedFormat()
{
    return {Kind::unsupportedFormat, u"Unsupported archive format"_s};
}

ExtractionError ExtractionError::passwordRequired()
{
    return {Kind::passwordRequired, u"Archive is password-protected"_s};
}

ExtractionError ExtractionError::wrongPassword()
{
    return {Kind::wrongPassword, u"Incorrect archive password"_s};
}

std::optional<ExtractionError> ExtractionError::asDamage() const
{
    return m_mayBeDamage ? std::optional(extractionFailed(m_exitCode, m_output, m_reason)) : std::nullopt;
}

bool isMereWarning(const ExtractionError& error)
{
    constexpr int warningCode = 1;
    const QString text = error.reason().text();
    return error.exitCode() == warningCode && text.startsWith(u"warning:") &&
           text.endsWith(u"appears to use backslashes as path separators") && !text.contains(u'\n');
}

ExtractionError classifyToolError(const ExtractionError& error, bool passwordGiven)
{
    const bool blamesPassword = error.exitCode() == badPasswordCode || error.reason().blamesPassword();
    if (error.kind() != ExtractionError::Kind::extractionFailed || !blamesPassword)
        return error;
    if (!passwordGiven)
        return ExtractionError::passwordRequired();
    ExtractionError wrong = ExtractionError::wrongPassword();
    wrong.m_exitCode = error.exitCode();
    wrong.m_output = error.output();
    wrong.m_reason = error.reason();
    wrong.m_mayBeDamage = error.exitCode() != badPasswordCode && error.reason().isUnsureOfPassword();
    return wrong;
}

} // namespace vormel
