#include "sites/services/StrangePages.h"

#include "sites/services/Html.h"
#include "sites/services/Statuses.h"

#include <array>

namespace vormel::sites {

namespace {

using Kind = StrangePages::Kind;

struct StrangeScript
{
    Kind kind;
    const char* script;
};

// What the pages do as soon as they are shown.
constexpr std::array strangeScripts{
    StrangeScript{Kind::endlessScript, "onload = () => { for (;;) {} }"},
    StrangeScript{Kind::allocation, "onload = () => { const hoard = []; for (;;) "
                                    "hoard.push(new Array(1 << 20).fill(Math.random())) }"},
    StrangeScript{Kind::alerts, "onload = () => { for (;;) { alert('a'); confirm('b'); prompt('c') } }"},
    StrangeScript{Kind::prints, "onload = () => setInterval(() => print(), 1)"},
    StrangeScript{Kind::windows, "onload = () => setInterval(() => open('/login-question'), 1)"},
    StrangeScript{Kind::permissions,
                  "onload = () => {"
                  "navigator.mediaDevices?.getUserMedia({video: true, audio: true}).catch(() => {});"
                  "navigator.mediaDevices?.getDisplayMedia({video: true}).catch(() => {});"
                  "navigator.geolocation.getCurrentPosition(() => {}, () => {});"
                  "Notification.requestPermission(); navigator.clipboard?.readText().catch(() => {}) }"},
    StrangeScript{Kind::sound, "onload = () => { const audio = new AudioContext(), tone = audio.createOscillator();"
                               "tone.connect(audio.destination); tone.start() }"},
    StrangeScript{Kind::leavingQuestion,
                  "onbeforeunload = event => { event.preventDefault(); event.returnValue = 'Stay' }"},
    StrangeScript{Kind::toFile, "location.href = 'file:///etc/passwd'"},
    StrangeScript{Kind::toChrome, "location.href = 'chrome://version'"},
    StrangeScript{Kind::toScheme, "location.href = 'strange-scheme:go'"},
    StrangeScript{Kind::serviceWorker, "navigator.serviceWorker.register('/worker.js')"},
    StrangeScript{Kind::downloads, "onload = () => setInterval(() => { const link = document.createElement('a');"
                                   "link.href = '/file.zip'; link.download = '../../strange'; link.click() }, 50)"},
};

constexpr const char* worker = "oninstall = () => skipWaiting();"
                               "setInterval(() => fetch('/ping', {cache: 'no-store'}), 200)";

std::string pathOf(Kind kind)
{
    return kind == Kind::loginQuestion ? "/login-question" : "/page" + std::to_string(static_cast<int>(kind));
}

std::string strangePage(const std::string& script)
{
    return htmlPage("Strange", "<h1>Strange</h1>" + scriptElement(script));
}

std::string hereAt(const FileServer& server)
{
    return "127.0.0.1:" + std::to_string(server.port());
}

} // namespace

StrangePages::StrangePages(const TestCertificates& certificates, std::string domain)
    : m_domain(std::move(domain))
    , m_server({.tls = certificates.valid({m_domain})})
    , m_expired({.tls = certificates.expired({"expired." + m_domain})})
    , m_wrong({.tls = certificates.wrongName()})
    , m_unknown({.tls = certificates.selfSigned({"unknown." + m_domain})})
{
    for (const StrangeScript& strange : strangeScripts)
        serve(strange.kind, Answer::page(ok, strangePage(strange.script)));
    serve(Kind::redirectToFile, Answer::redirect(found, "file:///etc/passwd"));
    serve(Kind::redirectsForEver, Answer::redirect(found, pathOf(Kind::redirectsForEver)));
    serve(Kind::loginQuestion,
          Answer::page(unauthorized, htmlPage("Who?", "")).withHeader("WWW-Authenticate", "Basic realm=\"strange\""));
    serve(Kind::silence, Answer::page(ok, "").stallBeforeHead());
    m_server.serve("/worker.js", {.answers = {Answer::page(ok, worker, "text/javascript")}});
    m_server.serve("/ping", {.content = "pong", .contentType = "text/plain"});
    m_server.serve("/file.zip", {.content = "no archive", .contentType = "application/zip"});
    for (FileServer* broken : {&m_expired, &m_wrong, &m_unknown})
        broken->serve("/", {.answers = {Answer::page(ok, htmlPage("Broken", "<form></form>"))}});
}

void StrangePages::serve(Kind kind, const Answer& answer)
{
    m_server.serve(pathOf(kind), {.answers = {answer}});
    m_plain.serve(pathOf(kind), {.answers = {answer}});
}

const FileServer& StrangePages::serverOf(Kind kind) const
{
    switch (kind) {
    case Kind::expiredCertificate:
        return m_expired;
    case Kind::wrongCertificate:
        return m_wrong;
    case Kind::unknownCertificate:
        return m_unknown;
    default:
        return m_server;
    }
}

std::string StrangePages::hostOf(Kind kind) const
{
    switch (kind) {
    case Kind::expiredCertificate:
        return "expired." + m_domain;
    case Kind::wrongCertificate:
        return "wrong." + m_domain;
    case Kind::unknownCertificate:
        return "unknown." + m_domain;
    default:
        return m_domain;
    }
}

std::string StrangePages::url(Kind kind, bool isPlain) const
{
    const bool isWellCertified = &serverOf(kind) == &m_server;
    return (isPlain && isWellCertified ? "http://" : "https://") + hostOf(kind) +
           (isWellCertified ? pathOf(kind) : "/");
}

std::size_t StrangePages::requests(Kind kind) const
{
    const FileServer& server = serverOf(kind);
    if (&server != &m_server)
        return server.requests().size();
    return server.requests(pathOf(kind)).size() + m_plain.requests(pathOf(kind)).size();
}

std::map<std::string, std::string> StrangePages::connectTo() const
{
    return {{m_domain + ":443", hereAt(m_server)},
            {m_domain + ":80", hereAt(m_plain)},
            {hostOf(Kind::expiredCertificate) + ":443", hereAt(m_expired)},
            {hostOf(Kind::wrongCertificate) + ":443", hereAt(m_wrong)},
            {hostOf(Kind::unknownCertificate) + ":443", hereAt(m_unknown)}};
}

} // namespace vormel::sites
