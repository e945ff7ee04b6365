#include "app/CommandLine.h"

#include "app/LinkFile.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Session managers and users hand these to every program of the toolkit, with one dash or two.
bool isToolkitFlag(QStringView name)
{
    return name == u"reverse" || name == u"widgetcount";
}

bool isToolkitOption(const QString& name)
{
    static const QSet<QString> withValue{u"session"_s,     u"platform"_s, u"platformpluginpath"_s, u"platformtheme"_s,
                                         u"plugin"_s,      u"style"_s,    u"stylesheet"_s,         u"display"_s,
                                         u"geometry"_s,    u"title"_s,    u"qwindowtitle"_s,       u"qwindowgeometry"_s,
                                         u"qwindowicon"_s, u"icon"_s};
    return withValue.contains(name);
}

/// Does it begin like an address? "./" in front makes a path of anything.
bool hasScheme(QStringView text)
{
    const qsizetype colon = text.indexOf(u':');
    if (colon < 1 || !text.front().isLetter())
        return false;
    return std::ranges::all_of(text.first(colon), [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || QStringView(u"+-.").contains(c));
    });
}

/// Goes through the arguments once.
class Reader
{
public:
    explicit Reader(const QStringList& arguments)
        : m_arguments(arguments)
    {}

    [[nodiscard]] std::variant<CommandLine, UsageError> read()
    {
        for (; m_next < m_arguments.size() && m_error.isEmpty(); ++m_next)
            take(m_arguments.at(m_next));
        if (!m_error.isEmpty())
            return UsageError{m_error};
        return m_result;
    }

private:
    void take(const QString& argument)
    {
        if (!m_areOptionsOver && argument == u"--")
            m_areOptionsOver = true;
        else if (!m_areOptionsOver && argument.startsWith(u'-'))
            takeOption(argument);
        else
            takeOperand(argument);
    }

    void takeOption(const QString& argument)
    {
        // The first of the two counts.
        const bool isFirst = m_result.wish == CommandLine::Wish::run;
        const QString name = argument.mid(argument.startsWith(u"--") ? 2 : 1);
        if (argument == u"-h" || argument == u"--help")
            m_result.wish = isFirst ? CommandLine::Wish::showHelp : m_result.wish;
        else if (argument == u"-v" || argument == u"--version")
            m_result.wish = isFirst ? CommandLine::Wish::showVersion : m_result.wish;
        else if (isToolkitOption(name))
            ++m_next; // with its value
        else if (!isToolkitFlag(name) && !isToolkitOption(name.section(u'=', 0, 0)))
            m_error = u"unknown option \"%1\""_s.arg(argument);
    }

    void takeOperand(const QString& argument)
    {
        if (argument.isEmpty()) {
            m_error = u"an argument is empty"_s;
            return;
        }
        if (!hasScheme(argument)) {
            m_result.files << argument;
            return;
        }
        const QString address = argument.trimmed();
        const std::optional<Link> link = Link::parse(address);
        if (isElsewhere(address)) // the window tells of it: one of many files is no reason to refuse the others
            m_result.addresses << address;
        else if (link && (link->isHttp() || pathOfFile(*link)))
            m_result.addresses << link->absoluteString();
        else
            m_error = u"\"%1\" is no http or https link and no file"_s.arg(argument);
    }

    const QStringList& m_arguments;
    qsizetype m_next = 0;
    bool m_areOptionsOver = false;
    CommandLine m_result;
    QString m_error;
};

} // namespace

std::variant<CommandLine, UsageError> readCommandLine(const QStringList& arguments)
{
    return Reader(arguments).read();
}

QString usageLine()
{
    return u"Usage: vormel [OPTION]... [LINK | FILE]...\n"_s;
}

QString helpText()
{
    return usageLine() + uR"(Download files and unpack archives.

Links, and those in text files with one link per line, are offered in the window
of the running program, or of the one that this starts. Nothing is added before
you say so there.

  LINK             an http or https link
  FILE             a text file with links; "./" in front of a name with a colon
  -h, --help       show this and end
  -v, --version    show the version and end
  --               whatever follows is no option

The toolkit's own options, such as -style and -platform, are taken, too.

Exit status: 0 if all went well, 1 if a file cannot be read, the running program
does not answer, or the links are more than it can be given at once (4 MiB), 2
if the arguments cannot be understood.
)"_s;
}

} // namespace vormel
