#pragma once

#include "text/Link.h"

#include <QCoroTask>
#include <QVariant>

#include <optional>

namespace vormel {

/// One page of the embedded engine. UI thread only. Whatever still waits for an answer of the page gets none when the
/// page is deleted.
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

    /// Judges where the page goes, before a byte of it is read. Outlives the page.
    class Judge
    {
    public:
        Judge() = default;
        Judge(const Judge&) = delete;
        Judge& operator=(const Judge&) = delete;
        virtual ~Judge() = default;

        [[nodiscard]] virtual bool mayAsk(const Request& request) = 0;
        [[nodiscard]] virtual bool mayShow(const Response& response) = 0;
        /// A navigation has come to its one end, well or badly.
        virtual void navigationEnded() = 0;
    };

    WebPage() = default;
    WebPage(const WebPage&) = delete;
    WebPage& operator=(const WebPage&) = delete;
    virtual ~WebPage() = default;

    virtual void load(const Link& url) = 0;
    /// Nothing while no page is shown.
    [[nodiscard]] virtual std::optional<Link> url() const = 0;
    /// The script's result; invalid where it has none.
    [[nodiscard]] virtual QCoro::Task<QVariant> run(QString script) = 0;
};

} // namespace vormel
