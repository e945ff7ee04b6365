#pragma once

#include <QString>
#include <QStringList>

#include <variant>

namespace vormel {

/// What the program was started for. A value.
struct CommandLine
{
    enum class Wish
    {
        run, ///< or hand what follows to the program that runs
        showHelp,
        showVersion,
    };

    Wish wish = Wish::run;
    QStringList addresses; ///< http, https, file, and what lies elsewhere, in the order they came in
    QStringList files;     ///< paths as they were written
};

/// Why the arguments cannot be understood.
struct UsageError
{
    QString text;
};

/// Reads the arguments behind the program's name. Options of the toolkit are left to it.
[[nodiscard]] std::variant<CommandLine, UsageError> readCommandLine(const QStringList& arguments);

/// One line, as it follows a complaint.
[[nodiscard]] QString usageLine();
/// All that --help prints.
[[nodiscard]] QString helpText();

} // namespace vormel
