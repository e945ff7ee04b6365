#pragma once

#include "archive/tools/ToolReason.h"
#include "text/DescribedError.h"

#include <optional>

namespace vormel {

/// Anything that ends archive work early.
class ArchiveError : public DescribedError
{
public:
    using DescribedError::DescribedError;
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
    /// Described by the reason that the tool gave, as far as one can be made out.
    [[nodiscard]] static ExtractionError extractionFailed(int exitCode, const QString& output);
    /// The same for an output that was read as it came, and of which the middle may be lost.
    [[nodiscard]] static ExtractionError extractionFailed(int exitCode, const QString& output,
                                                          const ToolReason& reason);
    [[nodiscard]] static ExtractionError unsupportedFormat();
    [[nodiscard]] static ExtractionError passwordRequired();
    [[nodiscard]] static ExtractionError wrongPassword();

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The tool's status and everything it printed; only for extractionFailed.
    [[nodiscard]] int exitCode() const { return m_exitCode; }
    [[nodiscard]] const QString& output() const { return m_output; }
    /// What the tool says of it, beyond its banner; only for extractionFailed.
    [[nodiscard]] const ToolReason& reason() const { return m_reason; }

    /// What a wrong password may be instead, as the tool cannot tell it from damaged data; nothing where it can.
    [[nodiscard]] std::optional<ExtractionError> asDamage() const;

private:
    ExtractionError(Kind kind, const QString& description);
    friend ExtractionError classifyToolError(const ExtractionError& error, bool passwordGiven);

    Kind m_kind;
    int m_exitCode = 0;
    QString m_output;
    ToolReason m_reason;
    bool m_mayBeDamage = false;
};

/// Does the tool complain of nothing but backslashes between folders? unzip takes that for a failure and unpacks all.
[[nodiscard]] bool isMereWarning(const ExtractionError& error);

/// Turns a failure that the tool blames on the password into passwordRequired or, when one was given (an empty one
/// counts), into wrongPassword. Everything else comes back as it is.
[[nodiscard]] ExtractionError classifyToolError(const ExtractionError& error, bool passwordGiven);

} // namespace vormel
