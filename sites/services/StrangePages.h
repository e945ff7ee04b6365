#pragma once

#include "sites/FileServer.h"
#include "sites/TestCertificates.h"

#include <map>
#include <string>

namespace vormel::sites {

// A site of pages that misbehave, over https and http. Any thread.
class StrangePages
{
public:
    enum class Kind
    {
        endlessScript,      // a script that never ends, run when the page is shown
        allocation,         // memory without end
        alerts,             // dialogs without end: alert, confirm, prompt
        prints,             // asks to print without end
        windows,            // opens windows without end
        permissions,        // asks for camera, microphone, position, notifications, clipboard, the screen
        sound,              // plays a tone
        leavingQuestion,    // asks whether it may be left
        toFile,             // its script goes to a file: address
        toChrome,           // to a chrome: address
        toScheme,           // to an address of a scheme of its own
        redirectToFile,     // redirects to a file: address
        redirectsForEver,   // redirects to itself
        serviceWorker,      // installs a worker that asks for ping() again and again
        loginQuestion,      // 401 with a question for name and password
        downloads,          // starts downloads without end
        silence,            // an answer that does not come
        expiredCertificate, // the last three are https only, on servers of their own
        wrongCertificate,   // of another name
        unknownCertificate, // signed by itself
    };

    explicit StrangePages(const TestCertificates& certificates, std::string domain = "strange.example");

    // The address of a page; over http where that is wanted and there is one.
    [[nodiscard]] std::string url(Kind kind, bool isPlain = false) const;
    // How often each page was asked for, or the worker or the downloads have asked.
    [[nodiscard]] std::size_t requests(Kind kind) const;
    [[nodiscard]] std::size_t pings() const { return m_server.requests("/ping").size(); }
    [[nodiscard]] std::size_t downloads() const { return m_server.requests("/file.zip").size(); }

    [[nodiscard]] std::map<std::string, std::string> connectTo() const;
    [[nodiscard]] FileServer& server() { return m_server; }

private:
    void serve(Kind kind, const Answer& answer);
    [[nodiscard]] std::string hostOf(Kind kind) const;
    [[nodiscard]] const FileServer& serverOf(Kind kind) const;

    std::string m_domain;
    FileServer m_server;
    FileServer m_plain;
    FileServer m_expired;
    FileServer m_wrong;
    FileServer m_unknown;
};

} // namespace vormel::sites
