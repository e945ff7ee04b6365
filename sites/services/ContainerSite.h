#pragma once

#include "sites/FileServer.h"
#include "sites/TestCertificates.h"
#include "sites/services/LinkPage.h"

#include <atomic>
#include <map>
#include <string>
#include <vector>

namespace vormel::sites {

// A link container service over https: pages with links, some behind a password or a CAPTCHA. Whoever has
// solved one gets a cookie, and without that cookie there are no text lists and no pages for links. Any thread.
class ContainerSite
{
public:
    // One container; what it shows once it is open.
    struct Container
    {
        std::string body;          // of the open page
        std::string password = {}; // asked for by a form unless empty
        bool hasCaptcha = false;   // on the page that is shown first, until its button "challenge" is clicked
        bool asksAnew = false;     // a CAPTCHA behind the password, too
        std::string refusal = "<p>Wrong password</p>";
    };

    ContainerSite(const TestCertificates& certificates, std::string domain);

    // The address of the container.
    std::string add(Container container);
    // A page of the site that leads to a file; its address.
    std::string addGoLink(const std::string& word, const Answer& answer);
    // A text file of the site with these lines; its address.
    std::string addTextList(const std::string& lines);
    // A page of the site for one link, which leads to the target in its way; the path of its address.
    std::string addLinkPage(LinkPage kind, const std::string& target = {});

    [[nodiscard]] std::map<std::string, std::string> connectTo() const;
    [[nodiscard]] std::vector<Request> requests() const { return m_server.requests(); }
    [[nodiscard]] FileServer& server() { return m_server; }

private:
    [[nodiscard]] static Answer answerOf(const Container& container, const std::string& id, const Request& request);
    void serveToSolvers(const std::string& path, const Answer& answer);

    std::string m_domain;
    std::atomic<int> m_last = 0; // container, list or page
    FileServer m_server;
};

} // namespace vormel::sites
