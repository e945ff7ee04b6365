#include "sites/services/TerabytezSite.h"

#include "sites/services/FormBody.h"
#include "sites/services/Html.h"
#include "sites/services/PageScripts.h"
#include "sites/services/Statuses.h"

#include <algorithm>
#include <stdexcept>

namespace vormel::sites {

namespace {

const std::string terabytezCookie = "xfst";
const std::string humanToken = "h-7";

std::string terabytezPage(const std::string& title, const std::string& body)
{
    return htmlPage(title + " | Terabytez", body);
}

std::string sessionOf(const Request& request)
{
    return cookieValue(request.header("Cookie").value_or(""), terabytezCookie);
}

std::string downloadForm(const std::string& fields, const std::string& action = {})
{
    return postForm(action, fields + "<button>Create download link</button>", "F1");
}

std::string pathOfAddress(const std::string& address)
{
    return address.starts_with('/') ? address : address.substr(address.find('/', address.find("://") + 3));
}

// Where the site itself has the file of this number.
std::string pathOnSite(const std::string& id)
{
    return "/get/" + id;
}

} // namespace

TerabytezSite::TerabytezSite(const TestCertificates& certificates, std::string domain)
    : m_domain(std::move(domain))
    , m_accountPage("<p>My affiliate link: none</p><h3>Premium account expire: 31 December 2035</h3>"
                    "<p>Traffic available today: 42.5 GB of 50 GB</p>")
    , m_pages({.tls = certificates.valid({m_domain, "www." + m_domain})})
    , m_files({.tls = certificates.valid({fileServerName(), "files." + m_domain})})
{
    serve("/", [this](const Request& request) { return rootPage(request); });
    serve("/login", [this](const Request& request) { return loginPage(request); });
    serve("/logout", [this](const Request& request) { return signOut(request); });
    for (const char* path : {"/account", "/account/"})
        serve(path, [this](const Request& request) { return accountPage(request); });
}

std::string TerabytezSite::signIn(const std::string& username, const std::string& password)
{
    const auto session = m_members.signIn(username, password);
    if (!session)
        throw std::invalid_argument("not a member: " + username);
    return terabytezCookie + "=" + *session;
}

void TerabytezSite::setSessionCookie(SessionCookie cookie)
{
    const std::lock_guard guard(m_mutex);
    m_cookie = cookie;
}

void TerabytezSite::setChallenge(bool isThere)
{
    const std::lock_guard guard(m_mutex);
    m_hasChallenge = isThere;
}

void TerabytezSite::setCountdown(std::chrono::milliseconds time)
{
    const std::lock_guard guard(m_mutex);
    m_countdown = time;
}

void TerabytezSite::setAccountPage(std::string html)
{
    const std::lock_guard guard(m_mutex);
    m_accountPage = std::move(html);
}

void TerabytezSite::setDelay(std::chrono::milliseconds delay)
{
    const std::lock_guard guard(m_mutex);
    m_delay = delay;
}

void TerabytezSite::setTrouble(std::optional<Answer> trouble)
{
    const std::lock_guard guard(m_mutex);
    m_trouble = std::move(trouble);
}

std::map<std::string, std::string> TerabytezSite::connectTo() const
{
    const auto here = [](const FileServer& server) { return "127.0.0.1:" + std::to_string(server.port()); };
    return {{m_domain + ":443", here(m_pages)},         {"www." + m_domain + ":443", here(m_pages)},
            {m_domain + ":80", here(m_plainPages)},     {"www." + m_domain + ":80", here(m_plainPages)},
            {fileServerName() + ":443", here(m_files)}, {"files." + m_domain + ":443", here(m_files)}};
}

void TerabytezSite::serve(const std::string& path, Respond respond, Content content)
{
    Resource resource;
    resource.content = std::move(content);
    resource.respond = [this, respond = std::move(respond)](const Request& request) {
        const std::lock_guard guard(m_mutex);
        return (m_trouble ? *m_trouble : respond(request)).delayedBy(m_delay);
    };
    m_pages.serve(path, std::move(resource));
    Resource plain;
    plain.respond = [this](const Request& request) {
        return Answer::redirect(movedPermanently, "https://" + m_domain + std::string(request.pathAndQuery()));
    };
    m_plainPages.serve(path, std::move(plain));
}

std::string TerabytezSite::addFile(const std::string& name, Shape shape, Content content)
{
    const File file{"t" + std::to_string(++m_lastFile), name, shape};
    const std::string path = "/" + file.id + "/" + name + ".html";
    serve(
        path, [this, file](const Request& request) { return filePage(request, file); }, content);
    storeFile(file, std::move(content));
    return "https://" + m_domain + path;
}

void TerabytezSite::storeFile(const File& file, Content content)
{
    const bool isOnSite = file.shape == Shape::redirectOnSite || file.shape == Shape::attachment;
    Resource stored;
    stored.content = std::move(content);
    stored.etag = '"' + file.id + '"';
    stored.respond = [this, file, isOnSite](const Request& request) {
        if (!isSignedIn(request))
            return Answer::page(forbidden, terabytezPage("Forbidden", "<p>Sign in first</p>"));
        return isOnSite ? attachment(file) : Answer::file();
    };
    (isOnSite ? m_pages : m_files).serve(pathOfAddress(addressOf(file)), std::move(stored));
}

int TerabytezSite::formsSentTo(const std::string& page) const
{
    const std::string path = pathOfAddress(page);
    const std::string other = pathOnSite(path.substr(1, path.find('/', 1) - 1));
    const std::vector<Request> requests = m_pages.requests();
    return static_cast<int>(std::count_if(requests.begin(), requests.end(), [&](const Request& request) {
        return request.method == "POST" && (request.path() == path || request.path() == other);
    }));
}

bool TerabytezSite::isSignedIn(const Request& request) const
{
    return m_members.isSession(sessionOf(request));
}

Answer TerabytezSite::rootPage(const Request& request) const
{
    const std::string menu = "<a href=\"/account/\">My Account</a> <a href=\"/logout\">Logout</a>";
    return Answer::page(ok, terabytezPage("Welcome", isSignedIn(request) ? menu : loginForm()));
}

std::string TerabytezSite::loginForm() const
{
    const std::string fields = hiddenField("op", "login") + hiddenField("redirect", "") + "<input name=\"login\">" +
                               "<input type=\"password\" name=\"password\">";
    const std::string challenge = hiddenField("human", "") +
                                  "<button type=\"button\" id=\"challenge\" onclick=\"this.form.human.value='" +
                                  humanToken + "';this.textContent='Thank you'\">I am no robot</button>";
    return postForm("/login", fields + (m_hasChallenge ? challenge : "") + "<button id=\"submit-login\">Login</button>",
                    "FL");
}

Answer TerabytezSite::loginPage(const Request& request)
{
    if (request.method != "POST") {
        return isSignedIn(request) ? Answer::redirect(found, "/")
                                   : Answer::page(ok, terabytezPage("Login", loginForm()));
    }
    const auto fields = formFields(request.body);
    const bool isHuman = !m_hasChallenge || fieldValue(fields, "human") == humanToken;
    const auto session =
        isHuman ? m_members.signIn(fieldValue(fields, "login"), fieldValue(fields, "password")) : std::nullopt;
    if (!session) {
        const std::string refusal = isHuman ? "Incorrect Login or Password" : "Wrong captcha";
        return Answer::page(ok, terabytezPage("Login", "<b class=\"err\">" + refusal + "</b>" + loginForm()));
    }
    return Answer::redirect(found, "/").withCookie(cookieOf(*session, m_cookie.lifetime));
}

std::string TerabytezSite::cookieOf(const std::string& session, std::chrono::seconds lifetime) const
{
    std::string cookie = terabytezCookie + "=" + session + "; Path=/; Secure; HttpOnly";
    if (m_cookie.isForSubdomains)
        cookie += "; Domain=" + m_domain;
    if (lifetime != untilBrowserEnds)
        cookie += "; Max-Age=" + std::to_string(lifetime.count());
    return cookie;
}

Answer TerabytezSite::signOut(const Request& request)
{
    m_members.signOut(sessionOf(request));
    return Answer::redirect(found, "/").withCookie(cookieOf("gone", std::chrono::seconds(-1)));
}

Answer TerabytezSite::accountPage(const Request& request) const
{
    return isSignedIn(request) ? Answer::page(ok, terabytezPage("My Account", m_accountPage))
                               : Answer::redirect(found, "/login");
}

std::string TerabytezSite::addressOf(const File& file) const
{
    switch (file.shape) {
    case Shape::redirectOnSite:
    case Shape::attachment:
        return "https://" + m_domain + pathOnSite(file.id);
    case Shape::redirectToFilesHost:
        return "https://files." + m_domain + "/" + file.id + "/" + file.name;
    default:
        return "https://" + fileServerName() + "/" + file.id + "/" + file.name;
    }
}

Answer TerabytezSite::filePage(const Request& request, const File& file) const
{
    if (file.shape == Shape::missing)
        return Answer::page(notFound, terabytezPage("Not found", "<h1>File Not Found</h1>"));
    if (!isSignedIn(request))
        return Answer::redirect(found, "/login");
    if (file.shape == Shape::pageRedirects)
        return Answer::redirect(found, addressOf(file));
    if (request.method == "POST")
        return formAnswer(request, file);
    const std::string heading = "<h1>" + file.name + "</h1>";
    const bool hasCountedDown = request.target.ends_with("?ready");
    if (file.shape == Shape::countdownBeforeForm && !hasCountedDown)
        return Answer::page(ok,
                            terabytezPage(file.name, heading + countdown(m_countdown, "location.search = 'ready'")));
    // Without "op" a browser's form gets it from whoever sends it.
    const std::string op = file.shape == Shape::twoForms ? "" : hiddenField("op", "download2");
    const std::string action = file.shape == Shape::attachment ? pathOnSite(file.id) : "";
    return Answer::page(ok, terabytezPage(file.name, heading + downloadForm(op + hiddenField("id", file.id), action)));
}

Answer TerabytezSite::formAnswer(const Request& request, const File& file) const
{
    const auto fields = formFields(request.body);
    if (fieldValue(fields, "op") != "download2" || fieldValue(fields, "id") != file.id)
        return Answer::page(ok, terabytezPage(file.name, "<b class=\"err\">Wrong form</b>"));
    switch (file.shape) {
    case Shape::redirect:
    case Shape::redirectToFilesHost:
    case Shape::redirectOnSite:
    case Shape::countdownBeforeForm:
        return Answer::redirect(found, addressOf(file));
    case Shape::attachmentHere:
        return attachment(file);
    case Shape::twoForms:
        if (fields.contains("second"))
            return Answer::redirect(found, addressOf(file));
        break;
    default:
        break;
    }
    return Answer::page(ok, terabytezPage(file.name, formAnswerText(file)));
}

Answer TerabytezSite::attachment(const File& file) const
{
    return Answer::file().withDisposition("attachment; filename=\"" + file.name + '"');
}

std::string TerabytezSite::formAnswerText(const File& file) const
{
    const std::string address = addressOf(file);
    switch (file.shape) {
    case Shape::script:
        return scriptElement("location.href = " + inPieces(address));
    case Shape::countdown:
        return countdown(m_countdown, "location.href = '" + address + "'");
    case Shape::link:
        return "<a href=\"" + address + "\">Click here to download</a>";
    case Shape::newWindow:
        return scriptElement("window.open(" + inPieces(address) + ")");
    case Shape::twoForms:
        return downloadForm(hiddenField("op", "download2") + hiddenField("id", file.id) + hiddenField("second", "1"));
    default:
        return "<p>Nothing to see</p>";
    }
}

} // namespace vormel::sites
