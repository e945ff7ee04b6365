#include "demo/WebSites.h"

#include "demo/DemoScript.h"
#include "sites/services/LinkPage.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::demo {

WebSites::WebSites(const FilmSet& film, PremiumServices& services)
    : m_services(services)
{
    services.terabytez.addAccount(username.data(), password.data());
    std::string list;
    bool isAtOtherHost = false;
    for (const FilmSet::Volume& volume : film.volumes) {
        const std::string page =
            services.containers.addLinkPage(sites::LinkPage::redirect, addVolume(volume, isAtOtherHost));
        list += "<p>" + volume.name.toStdString() + " " + sites::anchorTo(page) + "</p>";
        m_filePaths.push_back(volume.path());
        isAtOtherHost = !isAtOtherHost;
    }
    m_containerLink = QString::fromStdString(services.containers.add({.body = list, .hasCaptcha = true}));
}

std::string WebSites::addVolume(const FilmSet::Volume& volume, bool isAtOtherHost)
{
    const std::string name = volume.name.toStdString();
    if (isAtOtherHost)
        return m_services.filestore.addFile(name, sites::FilestoreSite::Shape::oneForm, volume.bytes);
    m_pages.push_back(m_services.terabytez.addFile(name, sites::TerabytezSite::Shape::redirect, volume.bytes));
    return m_pages.back();
}

QString WebSites::objectionToForms() const
{
    for (const std::string& page : m_pages) {
        if (const int sent = m_services.terabytez.formsSentTo(page); sent != 1)
            return u"%1 times on %2"_s.arg(sent).arg(QString::fromStdString(page));
    }
    return unless(!m_pages.empty(), u"there are no pages"_s);
}

QString WebSites::objectionToTransfers() const
{
    std::vector<sites::Request> requests = m_services.terabytez.fileRequests();
    std::ranges::copy(m_services.filestore.fileRequests(), std::back_inserter(requests));
    for (const std::string& path : m_filePaths) {
        const auto isForIt = [&path](const sites::Request& request) { return request.path().ends_with(path); };
        const auto asked = std::ranges::count_if(requests, isForIt);
        if (asked != 1)
            return u"%1 requests for %2"_s.arg(asked).arg(QString::fromStdString(path));
        const std::string agent = std::ranges::find_if(requests, isForIt)->header("User-Agent").value_or("");
        if (agent.find("Chrome") != std::string::npos)
            return u"%1 was asked for by %2"_s.arg(QString::fromStdString(path), QString::fromStdString(agent));
    }
    return unless(!m_filePaths.empty(), u"there are no files"_s);
}

} // namespace vormel::demo
