#pragma once

#include "sites/FileServer.h"
#include "sites/TestCertificates.h"
#include "sites/services/Members.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vormel::sites {

// A premium file host whose pages want a browser, over https; over http it only leads there. A sign-in form, an account
// page, a page with a form for each file, and servers of other names that give the files to whoever has the cookie of
// the sign-in. Any thread.
class TerabytezSite
{
public:
    // How a file's page leads to its file, for whoever is signed in; all others are led to the form of the sign-in.
    // Where a script leads there, its text does not hold the address in one piece unless that is said.
    enum class Shape
    {
        redirect,            // the form's answer redirects to the numbered file server
        redirectToFilesHost, // to the file server by a name without a number
        redirectOnSite,      // to an address of the site, which answers with an attachment
        attachment,          // the form is answered with an attachment, at an address that gives it by GET, too
        attachmentHere,      // the same at the page's own address, which by GET gives the page
        script,              // by a page whose script goes there at once
        countdown,           // by a page whose script counts down and goes there; it holds the address in one piece
        countdownBeforeForm, // the page itself counts down, then goes to the page with the form
        link,                // by a page with a link
        newWindow,           // by a page whose script opens a window
        twoForms,            // by a page with one more form, whose answer redirects
        pageRedirects,       // the page itself redirects
        nothing,             // the form is answered by a page with nothing on it
        missing,             // 404
    };
    static constexpr std::chrono::seconds untilBrowserEnds{0};
    struct SessionCookie
    {
        bool isForSubdomains = true;
        std::chrono::seconds lifetime = std::chrono::hours(24 * 30);
    };

    explicit TerabytezSite(const TestCertificates& certificates, std::string domain = "terabytez.example");

    void addAccount(const std::string& username, const std::string& password) { m_members.add(username, password); }
    // Signs a member in without the form; the cookie's "name=value". Throws std::invalid_argument for a wrong password.
    std::string signIn(const std::string& username, const std::string& password);
    // Of the sign-ins to come.
    void setSessionCookie(SessionCookie cookie);
    // Whether the form of the sign-in goes through only after its button "challenge" was clicked.
    void setChallenge(bool isThere);
    // How long a page counts down, in steps of a tenth of a second.
    void setCountdown(std::chrono::milliseconds time);
    // What the account page shows; its body.
    void setAccountPage(std::string html);
    // Puts a file under the page that is returned, with this name in its heading.
    std::string addFile(const std::string& name, Shape shape, Content content);

    // All sessions end.
    void signEverybodyOut() { m_members.signEverybodyOut(); }
    // Each answer of pages comes so much later.
    void setDelay(std::chrono::milliseconds delay);
    // Every page is answered so, until nothing is given.
    void setTrouble(std::optional<Answer> trouble);

    // Where the client must really connect: "name:443" or "name:80", and "127.0.0.1:port", for all names.
    [[nodiscard]] std::map<std::string, std::string> connectTo() const;
    [[nodiscard]] const std::string& domain() const { return m_domain; }
    [[nodiscard]] std::string fileServerName() const { return "srv1." + m_domain; }
    // Of the pages, in the order they came in.
    [[nodiscard]] std::vector<Request> requests() const { return m_pages.requests(); }
    [[nodiscard]] std::vector<Request> fileRequests() const { return m_files.requests(); }
    // How often the form on this page was sent; the page by its address or its path.
    [[nodiscard]] int formsSentTo(const std::string& page) const;
    [[nodiscard]] int signIns() const { return m_members.signIns(); }
    [[nodiscard]] FileServer& pages() { return m_pages; }
    [[nodiscard]] FileServer& files() { return m_files; }

private:
    struct File
    {
        std::string id;
        std::string name;
        Shape shape = Shape::nothing;
    };
    using Respond = std::function<Answer(const Request&)>;

    [[nodiscard]] Answer rootPage(const Request& request) const;
    [[nodiscard]] Answer loginPage(const Request& request);
    [[nodiscard]] Answer signOut(const Request& request);
    [[nodiscard]] Answer accountPage(const Request& request) const;
    [[nodiscard]] Answer filePage(const Request& request, const File& file) const;
    [[nodiscard]] Answer formAnswer(const Request& request, const File& file) const;
    [[nodiscard]] Answer attachment(const File& file) const;
    [[nodiscard]] std::string formAnswerText(const File& file) const;
    [[nodiscard]] std::string loginForm() const;
    [[nodiscard]] std::string cookieOf(const std::string& session, std::chrono::seconds lifetime) const;
    [[nodiscard]] std::string addressOf(const File& file) const;
    [[nodiscard]] bool isSignedIn(const Request& request) const;
    void storeFile(const File& file, Content content);
    void serve(const std::string& path, Respond respond, Content content = {});

    std::string m_domain;
    Members m_members;
    std::mutex m_mutex; // guards all up to the servers
    SessionCookie m_cookie;
    bool m_hasChallenge = false;
    std::chrono::milliseconds m_countdown{500};
    std::string m_accountPage;
    std::optional<Answer> m_trouble;
    std::chrono::milliseconds m_delay{0};
    int m_lastFile = 0;
    FileServer m_pages;
    FileServer m_plainPages;
    FileServer m_files;
};

} // namespace vormel::sites
