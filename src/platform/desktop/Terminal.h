#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vormel {

/// Runs commands where the user sees them and can answer their questions.
class Terminal
{
public:
    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    virtual ~Terminal() = default;

    /// One line of shell, in a window of its own. Returns at once; neither failures nor the result are reported.
    virtual void run(const QString& command) = 0;
};

/// How a terminal program is told to run a script.
struct TerminalCall
{
    QString program; ///< its path
    QStringList arguments;
};

/// The first terminal program that there is, the preferred one before all others, and its arguments for the script.
/// The script runs as the start of an interactive shell: so the window stays open with the result, and with a prompt
/// to try again at, in every terminal alike. Programs are looked for in these folders, or with none in those of PATH.
[[nodiscard]] std::optional<TerminalCall> terminalCall(const QString& script, const QString& preferred,
                                                       const QStringList& folders = {});

/// Writes the command into a script in its folder and starts the desktop's terminal with it.
class DesktopTerminal final : public Terminal
{
public:
    /// The script's folder is made private to this user. `preferred` names the terminal program that the user wants,
    /// or is empty; `folders` are as for terminalCall().
    DesktopTerminal(QString scriptFolder, QString preferred, QStringList folders = {});

    void run(const QString& command) override;

private:
    QString m_scriptFolder;
    QString m_preferred;
    QStringList m_folders;
};

} // namespace vormel
