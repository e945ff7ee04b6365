#include "sites/services/FilestoreSite.h"

#include "sites/services/FormBody.h"
#include "sites/services/Html.h"
#include "sites/services/Statuses.h"

namespace vormel::sites {

namespace {

const std::string sessionCookie = "xfss";

std::string page(const std::string& title, const std::string& body)
{
    return htmlPage(title + " | Filestore", body);
}

} // namespace

FilestoreSite::FilestoreSite(const TestCertificates& certificates, std::string domain)
    : m_domain(std::move(domain))
    , m_pages({.tls = certificates.valid({m_domain, "www." + m_domain})})
    , m_files({.tls = certificates.valid({"files." + m_domain})})
{
    serve("/", [](const Request&) { return Answer::page(ok, page("Welcome", "<a href=\"/login\">Sign in</a>")); });
    serve("/login", [this](const Request& request) { return loginPage(request); });
    serve("/account", [this](const Request& request) { return accountPage(request); });
}

void FilestoreSite::setAccountPage(std::string html)
{
    const std::lock_guard guard(m_mutex);
    m_accountPage = std::move(html);
}

void FilestoreSite::setRefusal(std::string text)
{
    const std::lock_guard guard(m_mutex);
    m_refusal = std::move(text);
}

void FilestoreSite::setDelay(std::chrono::milliseconds delay)
{
    const std::lock_guard guard(m_mutex);
    m_delay = delay;
}

void FilestoreSite::setTrouble(std::optional<Answer> trouble)
{
    const std::lock_guard guard(m_mutex);
    m_trouble = std::move(trouble);
}

std::map<std::string, std::string> FilestoreSite::connectTo() const
{
    const auto here = [](const FileServer& server) { return "127.0.0.1:" + std::to_string(server.port()); };
    return {{m_domain + ":443", here(m_pages)},
            {"www." + m_domain + ":443", here(m_pages)},
            {filesHost() + ":443", here(m_files)}};
}

void FilestoreSite::serve(const std::string& path, std::function<Answer(const Request&)> respond, Content content)
{
    Resource resource;
    resource.content = std::move(content);
    resource.respond = [this, respond = std::move(respond)](const Request& request) {
        const std::lock_guard guard(m_mutex);
        return (m_trouble ? *m_trouble : respond(request)).delayedBy(m_delay);
    };
    m_pages.serve(path, std::move(resource));
}

std::string FilestoreSite::addFile(const std::string& name, Shape shape, Content content)
{
    const std::string id = "f" + std::to_string(++m_lastFile);
    const File file{name, shape, content};
    serve(
        "/" + id, [this, id, file](const Request& request) { return filePage(request, id, file); }, content);
    serve(
        "/dl/" + id,
        [this, id, file](const Request&) {
            return file.shape == Shape::linkServedHere ? Answer::file() : Answer::redirect(found, fileUrl(id, file));
        },
        content);
    Resource stored;
    stored.content = std::move(content);
    stored.etag = '"' + id + '"';
    stored.respond = [this](const Request& request) {
        return isLoggedIn(request) ? Answer::file() : Answer::page(forbidden, page("Forbidden", "Sign in first"));
    };
    m_files.serve("/" + id + "/" + name, std::move(stored));
    return "https://" + m_domain + "/" + id;
}

bool FilestoreSite::isLoggedIn(const Request& request) const
{
    return m_members.isSession(cookieValue(request.header("Cookie").value_or(""), sessionCookie));
}

Answer FilestoreSite::loginPage(const Request& request)
{
    const std::string token = "t-5";
    if (request.method != "POST") {
        const std::string fields = hiddenField("op", "login") + hiddenField("token", token) + hiddenField("rand", "") +
                                   "<input name=\"login\"><input type=\"password\" name=\"password\">";
        return Answer::page(ok, page("Sign in", postForm("/login", fields)));
    }
    const auto fields = formFields(request.body);
    const bool isWhole = fieldValue(fields, "token") == token && fieldValue(fields, "redirect") == "/";
    const auto session =
        isWhole ? m_members.signIn(fieldValue(fields, "login"), fieldValue(fields, "password")) : std::nullopt;
    if (!session)
        return Answer::page(ok, page("Sign in", "<b class=\"err\">" + m_refusal + "</b>"));
    return Answer::redirect(found, "/")
        .withCookie(sessionCookie + "=" + *session + "; Domain=" + m_domain + "; Path=/; Secure; HttpOnly");
}

Answer FilestoreSite::accountPage(const Request& request)
{
    if (!isLoggedIn(request))
        return Answer::redirect(found, "/login?from=account");
    return Answer::page(ok, page("Account", m_accountPage));
}

std::string FilestoreSite::fileUrl(const std::string& id, const File& file) const
{
    return "https://" + filesHost() + "/" + id + "/" + file.name;
}

std::string FilestoreSite::pageText(const std::string& id, const File& file) const
{
    const std::string first = hiddenField("op", "download1") + hiddenField("id", id) + hiddenField("fname", file.name);
    switch (file.shape) {
    case Shape::linkToFile:
        return "<a href=\"" + fileUrl(id, file) + "\">Download</a>";
    case Shape::linkOnSite:
    case Shape::linkServedHere:
        return "<a href=\"https://" + m_domain + "/dl/" + id + "\">Download</a>";
    case Shape::oneForm:
    case Shape::formThenLink:
    case Shape::formServedHere:
        return postForm("", first);
    case Shape::twoForms:
        return postForm("", first + hiddenField("method_free", "Free"));
    case Shape::redirectToFile:
    case Shape::nothing:
        break;
    }
    return "<p>Nothing to see</p>";
}

Answer FilestoreSite::filePage(const Request& request, const std::string& id, const File& file)
{
    if (!isLoggedIn(request))
        return Answer::redirect(found, "/login");
    if (file.shape == Shape::redirectToFile)
        return Answer::redirect(found, fileUrl(id, file));
    if (request.method == "POST")
        return formAnswer(request, id, file);
    return Answer::page(ok, page(file.name, "<h1>Download " + file.name + "</h1>" + pageText(id, file)));
}

Answer FilestoreSite::formAnswer(const Request& request, const std::string& id, const File& file)
{
    const auto fields = formFields(request.body);
    const bool isPremium = fields.contains("method_premium");
    if (!isPremium)
        return Answer::page(ok, page(file.name, "<p>Wait 60 seconds</p>"));
    switch (file.shape) {
    case Shape::formServedHere:
        return Answer::file();
    case Shape::formThenLink:
        return Answer::page(ok, page(file.name, "<a href=\"" + fileUrl(id, file) + "\">Here</a>"));
    case Shape::twoForms:
        if (fields.at("op") == "download1")
            return Answer::page(ok,
                                page(file.name, postForm("", hiddenField("op", "download2") + hiddenField("id", id))));
        break;
    default:
        break;
    }
    return Answer::redirect(found, fileUrl(id, file));
}

} // namespace vormel::sites
