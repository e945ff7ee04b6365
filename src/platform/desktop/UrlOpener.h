#pragma once

class QUrl;

namespace vormel {

/// Hands addresses to the programs that the desktop has for them: pages to the browser, folders to the file viewer.
class UrlOpener
{
public:
    UrlOpener() = default;
    UrlOpener(const UrlOpener&) = delete;
    UrlOpener& operator=(const UrlOpener&) = delete;
    virtual ~UrlOpener() = default;

    /// Returns at once; failures are not reported.
    virtual void open(const QUrl& url) = 0;
};

class DesktopUrlOpener final : public UrlOpener
{
public:
    void open(const QUrl& url) override;
};

} // namespace vormel
