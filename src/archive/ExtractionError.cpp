#include "archive/ExtractionError.h"

#include "archive/tools/InstallAdvice.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

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

bool blamesPassword(int exitCode, const QString& output)
{
    // What unrar and rar exit with, whatever they print.
    constexpr int badPasswordCode = 11;
    if (exitCode == badPasswordCode)
        return true;
    static const std::array phrases{
        QStringLiteral("enter password"),
        QStringLiteral("password incorrect"),
        QStringLiteral("wrong password"),
        QStringLiteral("encrypted file:"),
        QStringLiteral("cannot open encrypted"),
        QStringLiteral("can not open encrypted"),
        QStringLiteral("needs a password"),
        // unzip 6 says these of a wrong and of a missing one; with no other tool for ZIP there, nothing else tells.
        QStringLiteral("incorrect password"),
        QStringLiteral("unable to get password"),
    };
    const QString lowered = output.toLower();
    return std::any_of(phrases.begin(), phrases.end(), [&](const QString& phrase) { return lowered.contains(phrase); });
}

} // namespace

ArchiveError::ArchiveError(const QString& description)
    : m_description(description)
    , m_what(description.toUtf8())
{}

ToolStopped::ToolStopped()
    : ArchiveError(QStringLiteral("Stopped"))
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
    constexpr int shownCharacters = 200;
    ExtractionError error(Kind::extractionFailed, QStringLiteral("Extraction failed (code ") +
                                                      QString::number(exitCode) + QStringLiteral("): ") +
                                                      firstCharacters(output, shownCharacters));
    error.m_exitCode = exitCode;
    error.m_output = output;
    return error;
}

ExtractionError ExtractionError::unsupportedFormat()
{
    return {Kind::unsupportedFormat, QStringLiteral("Unsupported archive format")};
}

ExtractionError ExtractionError::passwordRequired()
{
    return {Kind::passwordRequired, QStringLiteral("Archive is password-protected")};
}

ExtractionError ExtractionError::wrongPassword()
{
    return {Kind::wrongPassword, QStringLiteral("Incorrect archive password")};
}

ExtractionError classifyToolError(const ExtractionError& error, bool passwordGiven)
{
    if (error.kind() != ExtractionError::Kind::extractionFailed || !blamesPassword(error.exitCode(), error.output()))
        return error;
    return passwordGiven ? ExtractionError::wrongPassword() : ExtractionError::passwordRequired();
}

} // namespace vormel
