#include "sites/services/ContainerSite.h"

#include "sites/services/FormBody.h"
#include "sites/services/Statuses.h"

namespace vormel::sites {

namespace {

const std::string challenge = "<div class=\"h-captcha\" data-sitekey=\"k\"></div>";

std::string page(const std::string& body)
{
    return "<html><head><title>Folder</title></head><body>" + body + "</body></html>";
}

} // namespace

ContainerSite::ContainerSite(const TestCertificates& certificates, std::string domain)
    : m_domain(std::move(domain))
    , m_server({.tls = certificates.valid({m_domain})})
{}

Answer ContainerSite::answerOf(const Container& container, const Request& request)
{
    if (request.method != "POST" && container.hasCaptcha)
        return Answer::page(ok, page(challenge));
    if (container.password.empty())
        return Answer::page(ok, page(container.body));
    if (request.method != "POST") {
        return Answer::page(ok, page("<form method=\"post\"><input type=\"hidden\" name=\"token\" value=\"a b\">"
                                     "<input type=\"password\" name=\"password\"></form>"));
    }
    const auto fields = formFields(request.body);
    const bool isRight = fields.contains("password") && fields.at("password") == container.password &&
                         fields.contains("token") && fields.at("token") == "a b";
    if (!isRight)
        return Answer::page(ok, page(container.refusal));
    return Answer::page(ok, page(container.asksAnew ? challenge : container.body));
}

std::string ContainerSite::add(Container container)
{
    const std::string path = "/Container/C" + std::to_string(++m_lastContainer) + ".html";
    Resource resource;
    resource.respond = [container = std::move(container)](const Request& request) {
        return answerOf(container, request);
    };
    m_server.serve(path, std::move(resource));
    return "https://" + m_domain + path;
}

std::string ContainerSite::addGoLink(const std::string& word, const Answer& answer)
{
    m_server.serve("/go/" + word, {.answers = {answer}});
    return "https://" + m_domain + "/go/" + word;
}

std::map<std::string, std::string> ContainerSite::connectTo() const
{
    return {{m_domain + ":443", "127.0.0.1:" + std::to_string(m_server.port())}};
}

} // namespace vormel::sites
