#include "app/LaterStarts.h"

#include "app/DesktopActivation.h"
#include "app/MainWindow.h"
#include "model/AppSettings.h"
#include "platform/async/Spawn.h"
#include "platform/desktop/SingleInstance.h"
#include "ui/notices/Notices.h"

#include <QApplication>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// What was handed over at once: whoever hands over more is no person.
constexpr qsizetype mostFiles = 100;

QString nameOf(const QString& address)
{
    return QUrl::fromPercentEncoding(address.section(u'/', -1, -1, QString::SectionSkipEmpty).toUtf8());
}

} // namespace

LaterStarts::LaterStarts(const Ports& ports, const SingleInstance& instance)
    : m_ports(ports)
{
    connect(&instance, &SingleInstance::showRequested, this, [this](const QString& text) {
        comeForward({});
        open(text.split(u'\n', Qt::SkipEmptyParts));
    });
}

LaterStarts::~LaterStarts() = default;

void LaterStarts::listen(const QDBusConnection& bus)
{
    m_activation = std::make_unique<DesktopActivation>(bus);
    connect(m_activation.get(), &DesktopActivation::showRequested, this, &LaterStarts::comeForward);
    connect(m_activation.get(), &DesktopActivation::openRequested, this,
            [this](const QStringList& uris, const QString& token) {
                comeForward(token);
                open(uris);
            });
}

void LaterStarts::stopListening()
{
    m_activation.reset();
}

/// The toolkit's Wayland part takes a token from the environment when a window asks for the focus.
void LaterStarts::comeForward(const QString& token)
{
    QWidget& window = m_ports.window;
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    QWidget* const sheet = QApplication::activeModalWidget(); // which takes the focus in its place
    QWidget& front = sheet ? *sheet : window;
    front.raise();
    front.activateWindow();
    qunsetenv("XDG_ACTIVATION_TOKEN"); // never for child processes
}

void LaterStarts::open(const QStringList& addresses)
{
    std::vector<Link> links;
    QStringList files;
    std::vector<Failure> failures;
    for (const QString& text : addresses) {
        const std::optional<Link> address = Link::parse(text.trimmed());
        const std::optional<QString> path = address ? pathOfFile(*address) : std::nullopt;
        if (address && address->isHttp())
            links.push_back(*address);
        else if (path && files.size() < mostFiles)
            files << *path;
        else if (path || isElsewhere(text.trimmed()))
            failures.push_back({nameOf(text.trimmed()), LinkFile::Problem::unreadable});
    }
    if (!links.empty())
        m_ports.window.offerLinks(links);
    if (!files.isEmpty() || !failures.empty())
        spawn(openFiles(files, std::move(failures)));
}

QCoro::Task<> LaterStarts::openFiles(QStringList paths, std::vector<Failure> failures)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    for (const QString& path : paths) {
        const auto read = [path] { return readLinkFile(path); };
        const LinkFile file = co_await m_reading.run(read);
        if (lifetime.isOver())
            co_return;
        if (file.problem)
            failures.push_back({QFileInfo(path).fileName(), *file.problem});
        else
            m_ports.window.offerLinks(file.links);
    }
    if (!failures.empty())
        tellOf(failures);
}

/// One line for all: a line for each would take the room of the list.
void LaterStarts::tellOf(const std::vector<Failure>& failures)
{
    constexpr std::chrono::seconds life(20);
    Notice notice;
    notice.key = u"linkFiles"_s;
    notice.glyph = Glyph::exclamationmarkTriangleFill;
    notice.text = [count = failures.size(), first = failures.front()](AppLanguage language) {
        if (count == 1)
            return u"%1: %2"_s.arg(first.name, problemText(first.problem).in(language));
        return pair(language, u"%1 files have no links or can't be read", u"%1 file senza link o illeggibili")
            .arg(count);
    };
    notice.life = life;
    m_ports.notices.show(std::move(notice));
}

} // namespace vormel
