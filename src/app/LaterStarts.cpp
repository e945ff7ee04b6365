#include "app/LaterStarts.h"

#include "app/DesktopActivation.h"
#include "app/MainWindow.h"
#include "model/AppSettings.h"
#include "platform/async/Spawn.h"
#include "platform/desktop/SingleInstance.h"
#include "ui/notices/Notices.h"

#include <QApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// What was handed over at once: whoever hands over more is no person.
constexpr qsizetype mostFiles = 100;

QStringList filesAmong(const std::vector<Link>& addresses)
{
    QStringList paths;
    for (const Link& address : addresses) {
        const std::optional<QString> path = pathOfFile(address);
        if (path && paths.size() < mostFiles)
            paths << *path;
    }
    return paths;
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
    std::vector<Link> all;
    for (const QString& text : addresses) {
        if (const std::optional<Link> address = Link::parse(text.trimmed()))
            all.push_back(*address);
    }
    const QStringList files = filesAmong(all);
    std::erase_if(all, [](const Link& link) { return !link.isHttp(); });
    if (!all.empty())
        m_ports.window.offerLinks(all);
    if (!files.isEmpty())
        spawn(openFiles(files));
}

QCoro::Task<> LaterStarts::openFiles(QStringList paths)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    for (const QString& path : paths) {
        const auto read = [path] { return readLinkFile(path); };
        const LinkFile file = co_await m_reading.run(read);
        if (lifetime.isOver())
            co_return;
        if (file.problem)
            tellOf(path, *file.problem);
        else
            m_ports.window.offerLinks(file.links);
    }
}

void LaterStarts::tellOf(const QString& path, LinkFile::Problem problem)
{
    constexpr std::chrono::seconds life(20);
    Notice notice;
    notice.key = u"linkFile-"_s + path;
    notice.glyph = Glyph::exclamationmarkTriangleFill;
    notice.text = [name = QFileInfo(path).fileName(), problem](AppLanguage language) {
        return u"%1: %2"_s.arg(name, problemText(problem).in(language));
    };
    notice.life = life;
    m_ports.notices.show(std::move(notice));
}

} // namespace vormel
