#pragma once

#include "text/Link.h"

#include <QCoroTask>
#include <QVariant>

#include <optional>

class QWidget;

namespace vormel {

/// One page of the embedded engine. UI thread only. It is http and https that is loaded, and nothing else ever; what
/// the engine would download it is never let to.
class WebPage
{
public:
    struct Request
    {
        Link url;
        bool isMainFrame = true;
    };
    struct Response
    {
        Link url;
        bool isMainFrame = true;
        bool canBeShown = true; ///< else it is a file
    };
    enum class End
    {
        loaded, ///< a page is shown, whatever its status says
        failed, ///< nothing came, or the page's process has died
    };
    /// How far the user may trust that the page is its host's.
    enum class Connection
    {
        none, ///< no page is shown
        unprotected,
        verified,
    };

    /// Judges where the page goes, before a byte of it is read. Outlives the page, and may delete it from here.
    class Judge
    {
    public:
        Judge() = default;
        Judge(const Judge&) = delete;
        Judge& operator=(const Judge&) = delete;
        virtual ~Judge() = default;

        /// Of each request of a frame for a page, and each redirect of one.
        [[nodiscard]] virtual bool mayAsk(const Request& request) = 0;
        /// Of what is no page its answer does not matter: it is not read in any case.
        [[nodiscard]] virtual bool mayShow(const Response& response) = 0;
        /// The page wants a window of its own for this address. None is opened.
        virtual void windowWanted(const Link& url) = 0;
        /// A navigation of the page itself has come to its one end; also one that was refused, or gave a file. A
        /// navigation that another takes the place of ends with that.
        virtual void navigationEnded(End end) = 0;
    };

    WebPage() = default;
    WebPage(const WebPage&) = delete;
    WebPage& operator=(const WebPage&) = delete;
    virtual ~WebPage() = default;

    /// A load of anything but http and https, or one without an answer for 60 seconds, ends as failed.
    virtual void load(const Link& url) = 0;
    /// Nothing while no page is shown; the page that a load failed for is none.
    [[nodiscard]] virtual std::optional<Link> url() const = 0;
    [[nodiscard]] virtual Connection connection() const = 0;
    /// The script's result, made in a world of its own, whose names the page neither sees nor bends. Invalid where it
    /// has none, gives none within ten seconds, or the page goes before it comes. Texts are cut at 4 MiB.
    [[nodiscard]] virtual QCoro::Task<QVariant> run(QString script) = 0;
    /// 1 is the page's own size.
    virtual void setZoom(double factor) = 0;
    /// What shows the page to the user, made at the first call; it is the page's own. A page that nobody has asked it
    /// of is hidden.
    [[nodiscard]] virtual QWidget* widget() = 0;
};

} // namespace vormel
