#pragma once

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

namespace vormel {

/// A page of the engine that is given nothing: no window, dialog, file, device, sound or login. What it asks for is
/// refused without a word to the user. UI thread only.
///
/// It may not be deleted while the engine is in the middle of it, so it is only abandoned, and then goes by itself.
class StrictPage final : public QWebEnginePage
{
public:
    /// Asked by the engine; may abandon the page from here.
    class Owner
    {
    public:
        Owner() = default;
        Owner(const Owner&) = delete;
        Owner& operator=(const Owner&) = delete;
        virtual ~Owner() = default;

        /// A request for a page, and each redirect of one.
        [[nodiscard]] virtual bool mayNavigate(const QUrl& url, bool isMainFrame) = 0;
        /// A link that says itself that it leads to a file.
        [[nodiscard]] virtual bool mayDownload(const QUrl& url) = 0;
        /// None is opened.
        virtual void windowWanted(const QUrl& url) = 0;
        /// Which the engine does not fetch.
        virtual void fileCame(const QUrl& url, bool isMainFrame) = 0;
    };

    /// Profile and parent outlive the page; so does the owner, or it abandons the page before.
    StrictPage(QWebEngineProfile& profile, QObject& parent, Owner& owner);
    StrictPage(const StrictPage&) = delete;
    StrictPage& operator=(const StrictPage&) = delete;
    ~StrictPage() override;

    /// Made at the first call.
    [[nodiscard]] QWebEngineView& view();
    [[nodiscard]] bool hasView() const { return m_view; }
    /// What is asked for in the main frame, without a fragment; empty once it is there.
    [[nodiscard]] const QUrl& asked() const { return m_asked; }
    /// The browser tells of every file that the engine would fetch. False if it is none of this page's.
    bool takeFile(const QUrl& url);
    /// Nobody is asked any more, and the page goes in a later turn of the event loop.
    void abandon();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedTypes) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& standard, QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& text, int line,
                                  const QString& source) override;

private:
    class Requests final : public QWebEngineUrlRequestInterceptor
    {
    public:
        explicit Requests(StrictPage& page);
        void interceptRequest(QWebEngineUrlRequestInfo& request) override;

    private:
        StrictPage& m_page;
    };

    void refuseWhatItAsksFor();

    Owner* m_owner;
    Requests m_requests{*this};
    QUrl m_announced; ///< for the main frame, before it is asked for
    QUrl m_asked;
    QList<QUrl> m_links;    ///< asked for by links to files
    QList<QUrl> m_inFrames; ///< those asked for in frames, since the page of the main frame came
    QPointer<QWebEngineView> m_view;
};

} // namespace vormel
