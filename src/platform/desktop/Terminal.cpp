#include "platform/desktop/Terminal.h"

#include "platform/desktop/TerminalScript.h"
#include "platform/process/DetachedProgram.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

struct KnownTerminal
{
    QLatin1StringView name;
    QLatin1StringView beforeCommand; ///< after it, all arguments are the command
};

/// In the order of choice.
constexpr std::array<KnownTerminal, 12> knownTerminals{{
    {QLatin1StringView("x-terminal-emulator"), QLatin1StringView("-e")},
    {QLatin1StringView("gnome-terminal"), QLatin1StringView("--")},
    {QLatin1StringView("kgx"), QLatin1StringView("--")},
    {QLatin1StringView("ptyxis"), QLatin1StringView("--")},
    {QLatin1StringView("konsole"), QLatin1StringView("-e")},
    {QLatin1StringView("xfce4-terminal"), QLatin1StringView("-x")},
    {QLatin1StringView("mate-terminal"), QLatin1StringView("-x")},
    {QLatin1StringView("alacritty"), QLatin1StringView("-e")},
    {QLatin1StringView("kitty"), QLatin1StringView("-e")},
    {QLatin1StringView("foot"), QLatin1StringView("--")},
    {QLatin1StringView("xterm"), QLatin1StringView("-e")},
    {QLatin1StringView("urxvt"), QLatin1StringView("-e")},
}};

/// Almost every terminal that is not known here takes the command behind "-e".
QString separatorFor(const QString& program)
{
    const QString name = QFileInfo(program).fileName();
    const auto* known = std::find_if(knownTerminals.begin(), knownTerminals.end(),
                                     [&name](const KnownTerminal& terminal) { return terminal.name == name; });
    return known == knownTerminals.end() ? u"-e"_s : QString(known->beforeCommand);
}

QString findTerminal(const QString& preferred, const QStringList& folders)
{
    QStringList names{preferred};
    for (const KnownTerminal& terminal : knownTerminals)
        names << QString(terminal.name);
    for (const QString& name : names) {
        QString program = name.isEmpty() ? QString() : QStandardPaths::findExecutable(name, folders);
        if (!program.isEmpty())
            return program;
    }
    return {};
}

} // namespace

std::optional<TerminalCall> terminalCall(const QString& script, const QString& preferred, const QStringList& folders)
{
    const QString program = findTerminal(preferred, folders);
    if (program.isEmpty())
        return std::nullopt;
    return TerminalCall{program, {separatorFor(program), u"/bin/bash"_s, u"--init-file"_s, script, u"-i"_s}};
}

DesktopTerminal::DesktopTerminal(QString scriptFolder, QString preferred, QStringList folders)
    : m_scriptFolder(std::move(scriptFolder))
    , m_preferred(std::move(preferred))
    , m_folders(std::move(folders))
{}

void DesktopTerminal::run(const QString& command)
{
    const std::optional<QString> script = writeTerminalScript(m_scriptFolder, command);
    if (!script)
        return;
#ifdef Q_OS_MACOS
    startDetached(u"/usr/bin/open"_s, {*script}); // its Terminal runs what ends in ".command"
#else
    if (const std::optional<TerminalCall> call = terminalCall(*script, m_preferred, m_folders))
        startDetached(call->program, call->arguments);
#endif
}

} // namespace vormel
