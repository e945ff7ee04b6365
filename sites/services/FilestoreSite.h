#pragma once

#include "sites/FileServer.h"
#include "sites/TestCertificates.h"
#include "sites/services/Members.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vormel::sites {

// A premium file host over https: sessions by cookie behind a login form, a page for each file, and a server of another
// name that gives the files to whoever has the cookie. Any thread.
class FilestoreSite
{
public:
    // How a file's page leads to its file.
    enum class Shape
    {
        linkToFile,     // a link to the file server
        linkOnSite,     // a link on the site that redirects there
        linkServedHere, // a link on the site that answers with the bytes
        oneForm,        // a form whose answer redirects there
        twoForms,       // a form whose answer is another form
        formThenLink,   // a form whose answer has the link
        formServedHere, // a form that is answered with the bytes
        redirectToFile, // the page itself redirects there
        nothing,        // no link and no form
    };

    explicit FilestoreSite(const TestCertificates& certificates, std::string domain = "filestore.example");

    void addAccount(const std::string& username, const std::string& password) { m_members.add(username, password); }
    // What the account page shows; its body.
    void setAccountPage(std::string html);
    // The text that refuses a wrong login, at status 200.
    void setRefusal(std::string text);
    // Puts a file under the page that is returned, with this name in its heading.
    std::string addFile(const std::string& name, Shape shape, Content content);

    // All sessions end.
    void logEverybodyOut() { m_members.signEverybodyOut(); }
    // Each answer of pages comes so much later.
    void setDelay(std::chrono::milliseconds delay);
    // Every page is answered so, until nothing is given.
    void setTrouble(std::optional<Answer> trouble);

    // Where the client must really connect: "name:443" and "127.0.0.1:port" for both names.
    [[nodiscard]] std::map<std::string, std::string> connectTo() const;
    [[nodiscard]] const std::string& domain() const { return m_domain; }
    [[nodiscard]] std::string filesHost() const { return "files." + m_domain; }
    // Of the pages, in the order they came in.
    [[nodiscard]] std::vector<Request> requests() const { return m_pages.requests(); }
    [[nodiscard]] std::vector<Request> fileRequests() const { return m_files.requests(); }
    [[nodiscard]] int logins() const { return m_members.signIns(); }
    [[nodiscard]] FileServer& pages() { return m_pages; }
    [[nodiscard]] FileServer& files() { return m_files; }

private:
    struct File
    {
        std::string name;
        Shape shape = Shape::nothing;
        Content content;
    };

    [[nodiscard]] Answer loginPage(const Request& request);
    [[nodiscard]] Answer accountPage(const Request& request);
    [[nodiscard]] Answer filePage(const Request& request, const std::string& id, const File& file);
    [[nodiscard]] Answer formAnswer(const Request& request, const std::string& id, const File& file);
    [[nodiscard]] std::string pageText(const std::string& id, const File& file) const;
    [[nodiscard]] std::string fileUrl(const std::string& id, const File& file) const;
    [[nodiscard]] bool isLoggedIn(const Request& request) const;
    void serve(const std::string& path, std::function<Answer(const Request&)> respond, Content content = {});

    std::string m_domain;
    Members m_members;
    std::mutex m_mutex; // guards all up to the servers
    std::string m_accountPage =
        "<p>Plan: Premium</p><p>Valid until 31/12/2035</p><p>Traffic left: 10.5 GB of 50 GB</p>";
    std::string m_refusal = "Incorrect password";
    std::optional<Answer> m_trouble;
    std::chrono::milliseconds m_delay{0};
    int m_lastFile = 0;
    FileServer m_pages;
    FileServer m_files;
};

} // namespace vormel::sites
