#pragma once

#include "platform/async/Lifetime.h"
#include "platform/async/SharedEventual.h"
#include "platform/web/WebPage.h"
#include "webengine/NavigationEnds.h"
#include "webengine/StrictPage.h"

#include <vector>

class QWebEngineLoadingInfo;
class QWebEngineProfile;

namespace vormel {

/// One page of the real engine. May be deleted from anywhere, the judge's answers included.
class EnginePage final : public WebPage, private StrictPage::Owner, private NavigationEnds::Owner
{
public:
    /// All outlive this; the last one is the parent of what the engine needs of the page for a while longer.
    EnginePage(QWebEngineProfile& profile, Clock& clock, Judge& judge, QObject& parent);
    ~EnginePage() override;

    void load(const Link& url) override;
    [[nodiscard]] std::optional<Link> url() const override;
    [[nodiscard]] Connection connection() const override;
    [[nodiscard]] QCoro::Task<QVariant> run(QString script) override;
    void setZoom(double factor) override;
    [[nodiscard]] QWidget* widget() override;

private:
    [[nodiscard]] bool mayNavigate(const QUrl& url, bool isMainFrame) override;
    [[nodiscard]] bool mayDownload(const QUrl& url) override;
    void windowWanted(const QUrl& url) override;
    void fileCame(const QUrl& url, bool isMainFrame) override;
    void stopNavigation() override;
    void navigationEnded(End end) override;

    void watch();
    void arrived();
    void loadingChanged(const QWebEngineLoadingInfo& info);
    void died();
    [[nodiscard]] bool isAllowedToShow() const;
    void answerAllWithNothing();

    Clock& m_clock;
    Judge& m_judge;
    StrictPage* m_page; ///< its parent's
    NavigationEnds m_ends;
    bool m_showsPage = false;
    bool m_hasBadCertificate = false; ///< the page that is to come
    double m_zoom = 1;
    std::vector<SharedEventual<QVariant>> m_answers; ///< of scripts, those that came included
    Lifetime m_lifetime;
    QObject m_context;
};

} // namespace vormel
