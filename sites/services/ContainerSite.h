#pragma once

#include "sites/FileServer.h"
#include "sites/TestCertificates.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vormel::sites {

// A link container service over https: pages with links, some behind a password. Any thread.
class ContainerSite
{
public:
    // One container; what it shows once it is open.
    struct Container
    {
        std::string body;          // of the open page
        std::string password = {}; // asked for by a form unless empty
        bool hasCaptcha = false;   // on the page that is shown first
        bool asksAnew = false;     // a CAPTCHA behind the password, too
        std::string refusal = "<p>Wrong password</p>";
    };

    ContainerSite(const TestCertificates& certificates, std::string domain);

    // The address of the container.
    std::string add(Container container);
    // A page of the site that leads to a file; its address.
    std::string addGoLink(const std::string& word, const Answer& answer);

    [[nodiscard]] std::map<std::string, std::string> connectTo() const;
    [[nodiscard]] std::vector<Request> requests() const { return m_server.requests(); }
    [[nodiscard]] FileServer& server() { return m_server; }

private:
    [[nodiscard]] static Answer answerOf(const Container& container, const Request& request);

    std::string m_domain;
    int m_lastContainer = 0;
    FileServer m_server;
};

} // namespace vormel::sites
