#include "sites/services/ContainerSite.h"

#include "sites/services/FormBody.h"
#include "sites/services/Html.h"
#include "sites/services/Statuses.h"

namespace vormel::sites {

namespace {

const std::string solverCookie = "solver";
const std::string solverToken = "v-3";

const std::string challenge = "<div class=\"h-captcha\" data-sitekey=\"k\"></div>";

std::string page(const std::string& body)
{
    return htmlPage("Folder", body);
}

std::string solvedCookie(const std::string& id)
{
    return "solved_" + id;
}

// The click leaves a cookie that the container's own page wants.
std::string challengeOf(const std::string& id)
{
    return challenge + "<button type=\"button\" id=\"challenge\" onclick=\"document.cookie='" + solvedCookie(id) +
           "=1; path=/; secure';location.reload()\">I am no robot</button>";
}

std::string cookieOfRequest(const Request& request, const std::string& name)
{
    return cookieValue(request.header("Cookie").value_or(""), name);
}

Answer openPage(const std::string& body, bool toSolver)
{
    const Answer answer = Answer::page(ok, page(body));
    return toSolver ? answer.withCookie(solverCookie + "=" + solverToken + "; Path=/; Secure; HttpOnly") : answer;
}

} // namespace

ContainerSite::ContainerSite(const TestCertificates& certificates, std::string domain)
    : m_domain(std::move(domain))
    , m_server({.tls = certificates.valid({m_domain})})
{}

Answer ContainerSite::answerOf(const Container& container, const std::string& id, const Request& request)
{
    const bool isSolved = !cookieOfRequest(request, solvedCookie(id)).empty();
    if (request.method != "POST" && container.hasCaptcha && !isSolved)
        return Answer::page(ok, page(challengeOf(id)));
    if (container.password.empty())
        return openPage(container.body, isSolved);
    if (request.method != "POST") {
        return Answer::page(ok, page("<form method=\"post\">" + hiddenField("token", "a b") +
                                     "<input type=\"password\" name=\"password\"></form>"));
    }
    const auto fields = formFields(request.body);
    const bool isRight = fieldValue(fields, "password") == container.password && fieldValue(fields, "token") == "a b";
    if (!isRight)
        return Answer::page(ok, page(container.refusal));
    return container.asksAnew && !isSolved ? Answer::page(ok, page(challengeOf(id)))
                                           : openPage(container.body, isSolved);
}

std::string ContainerSite::add(Container container)
{
    const std::string id = "C" + std::to_string(++m_last);
    const std::string path = "/Container/" + id + ".html";
    Resource resource;
    resource.respond = [container = std::move(container), id](const Request& request) {
        return answerOf(container, id, request);
    };
    m_server.serve(path, std::move(resource));
    return "https://" + m_domain + path;
}

std::string ContainerSite::addGoLink(const std::string& word, const Answer& answer)
{
    m_server.serve("/go/" + word, {.answers = {answer}});
    return "https://" + m_domain + "/go/" + word;
}

std::string ContainerSite::addTextList(const std::string& lines)
{
    const std::string path = "/DLC/L" + std::to_string(++m_last) + ".txt";
    serveToSolvers(path, Answer::page(ok, lines, "text/plain"));
    return "https://" + m_domain + path;
}

std::string ContainerSite::addLinkPage(LinkPage kind, const std::string& target)
{
    std::string path = "/Link/P" + std::to_string(++m_last) + ".html";
    serveToSolvers(path, linkPageAnswer(kind, target));
    return path;
}

void ContainerSite::serveToSolvers(const std::string& path, const Answer& answer)
{
    Resource resource;
    resource.respond = [answer](const Request& request) {
        return cookieOfRequest(request, solverCookie) == solverToken
                   ? answer
                   : Answer::page(forbidden, page("<p>Solve the challenge first</p>"));
    };
    m_server.serve(path, std::move(resource));
}

std::map<std::string, std::string> ContainerSite::connectTo() const
{
    return {{m_domain + ":443", "127.0.0.1:" + std::to_string(m_server.port())}};
}

} // namespace vormel::sites
