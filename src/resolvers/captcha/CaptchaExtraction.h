#pragma once

#include "model/HostProfiles.h"
#include "model/PendingQuestions.h"
#include "resolvers/captcha/CaptchaChoice.h"
#include "resolvers/captcha/CaptchaPage.h"
#include "resolvers/captcha/CaptchaPorts.h"

#include <QCoroTask>
#include <QObject>
#include <QVariant>

#include <memory>
#include <stop_token>

namespace vormel {

class LinkPageResolver;
class LinkTargets;
class WebPage;

/// Reads the links of a container out of the page in which the user has solved its CAPTCHA, and knows how far that has
/// come. Its end ends what is under way. UI thread only.
class CaptchaExtraction final : public QObject
{
    Q_OBJECT

public:
    struct Progress
    {
        int current = 0; ///< counted from 1
        int total = 0;

        friend bool operator==(const Progress&, const Progress&) = default;
    };

    CaptchaExtraction(const CaptchaPorts& ports, Link containerURL, std::vector<SupportedHost> accountHosts);
    CaptchaExtraction(const CaptchaExtraction&) = delete;
    CaptchaExtraction& operator=(const CaptchaExtraction&) = delete;
    ~CaptchaExtraction() override;

    [[nodiscard]] bool isExtracting() const { return m_isExtracting; }
    /// What to tell the user of the last try; in English.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return m_errorMessage; }
    /// Of the pages with one link each.
    [[nodiscard]] const std::optional<Progress>& extractProgress() const { return m_extractProgress; }
    /// The hosts to choose from; none as long as there is nothing to choose.
    [[nodiscard]] const std::vector<PendingHostSelection::HostGroup>& hostGroups() const { return m_found.groups; }

    /// Reads the page as it is now; it may go at any time. Nothing happens without a page, or while one is read.
    void extract(WebPage* page);
    /// Ends what is under way; nothing comes of it.
    void cancel();
    /// The answers to the choice: one group, by its place, or all links.
    void choose(int group);
    void addAll();

Q_SIGNALS:
    void changed();
    void linksExtracted(const std::vector<vormel::Link>& urls);

private:
    // Each looks at its stop after every wait, as this may be gone by then.
    [[nodiscard]] QCoro::Task<> work(QCoro::Task<QVariant> reading, std::stop_token stop);
    [[nodiscard]] QCoro::Task<std::vector<Link>> linksOf(CaptchaPage page, std::stop_token stop);
    [[nodiscard]] QCoro::Task<std::vector<Link>> readTextList(Link address, std::stop_token stop);
    [[nodiscard]] QCoro::Task<std::vector<Link>> followLinkPages(std::vector<Link> pages, std::stop_token stop);
    void fail(const QString& message);
    void finishExtraction(CaptchaChoice found);
    void end();

    CaptchaPorts m_ports;
    Link m_containerURL;
    std::vector<SupportedHost> m_accountHosts;
    HostProfiles m_profiles;
    std::shared_ptr<const LinkTargets> m_targets;
    bool m_isExtracting = false;
    std::optional<QString> m_errorMessage;
    std::optional<Progress> m_extractProgress;
    CaptchaChoice m_found;
    std::stop_source m_stop;
    std::unique_ptr<LinkPageResolver> m_linkPage; ///< the one that is open
};

} // namespace vormel
