#pragma once

#include <QString>

#include <exception>

namespace vormel {

/// Anything that ends archive work early. The description is the user's message, in English whatever the language.
class ArchiveError : public std::exception
{
public:
    explicit ArchiveError(const QString& description);

    [[nodiscard]] const QString& errorDescription() const { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_description;
    QByteArray m_what;
};

/// A tool that could not be started; described in the system's words.
class ToolLaunchError final : public ArchiveError
{
public:
    using ArchiveError::ArchiveError;
};

/// A tool that was ended because somebody asked for it.
class ToolStopped final : public ArchiveError
{
public:
    ToolStopped();
};

/// The destination could not be made.
class DestinationError final : public ArchiveError
{
public:
    using ArchiveError::ArchiveError;
};

/// Why an archive was not unpacked, tested or repaired.
class ExtractionError final : public ArchiveError
{
public:
    enum class Kind
    {
        toolNotFound,
        extractionFailed,
        unsupportedFormat,
        passwordRequired,
        wrongPassword,
    };

    [[nodiscard]] static ExtractionError toolNotFound(const QString& tool);
    /// The volume repairer is missing; no other tool can stand in for it.
    [[nodiscard]] static ExtractionError repairToolNotFound();
    [[nodiscard]] static ExtractionError extractionFailed(int exitCode, const QString& output);
    [[nodiscard]] static ExtractionError unsupportedFormat();
    [[nodiscard]] static ExtractionError passwordRequired();
    [[nodiscard]] static ExtractionError wrongPassword();

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The tool's status and everything it printed; only for extractionFailed.
    [[nodiscard]] int exitCode() const { return m_exitCode; }
    [[nodiscard]] const QString& output() const { return m_output; }

private:
    ExtractionError(Kind kind, const QString& description);

    Kind m_kind;
    int m_exitCode = 0;
    QString m_output;
};

/// Turns a failure that the tool blames on the password into passwordRequired or, when one was given (an empty one
/// counts), into wrongPassword. Everything else comes back as it is.
[[nodiscard]] ExtractionError classifyToolError(const ExtractionError& error, bool passwordGiven);

} // namespace vormel
