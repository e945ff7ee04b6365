#pragma once

#include "text/Link.h"

#include <QObject>

#include <optional>
#include <vector>

namespace vormel {

class AppSettings;
class Clipboard;
class DownloadManager;
class Notices;

/// While the settings wish it, offers links of known hosts and containers that are copied in other programs, in a
/// notice that goes by itself; adds none. Of a text that was looked at only a salted hash is kept, so that it is known
/// again. UI thread only.
class ClipboardWatch final : public QObject
{
    Q_OBJECT

public:
    /// All outlive it.
    struct Ports
    {
        Clipboard& clipboard;
        DownloadManager& manager;
        Notices& notices;
    };
    explicit ClipboardWatch(const Ports& ports);
    ~ClipboardWatch() override;

Q_SIGNALS:
    /// The user wants to see these.
    void wanted(const std::vector<vormel::Link>& links);

private:
    void follow();
    void look();
    [[nodiscard]] std::vector<Link> newLinks(const QString& text) const;
    void offer(const std::vector<Link>& links);

    Ports m_ports;
    AppSettings& m_settings;
    bool m_isOn = false;
    std::size_t m_salt;
    std::optional<std::size_t> m_lastLooked;
};

} // namespace vormel
