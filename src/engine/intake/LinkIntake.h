#pragma once

#include "engine/intake/Additions.h"
#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "model/PendingQuestions.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QHash>

#include <stop_token>

namespace vormel {

class AppSettings;
class FilenamePrefetch;
class PostDownload;
class Questions;
class ResolverTables;

/// The one way into the queue: pasted and dropped links, the links of containers, and those that the user picked from
/// them. Duplicates are refused in silence. UI thread only.
class LinkIntake
{
public:
    struct Ports
    {
        ItemTable& table;
        const AppSettings& settings;
        const ResolverTables& resolvers;
        PostDownload& postDownload;
        Questions& questions;
        FilenamePrefetch& prefetch;
        Additions& additions;
        QueueTurn& queue;
    };

    /// All ports must outlive this.
    explicit LinkIntake(const Ports& ports);
    LinkIntake(const LinkIntake&) = delete;
    LinkIntake& operator=(const LinkIntake&) = delete;
    ~LinkIntake();

    /// Adds files as items and opens containers, with the password if there is one.
    void addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword);
    /// Adds all links as files, even a container's.
    void addDirectURLs(const std::vector<Link>& urls);
    /// Adds those of a container's links that the user picked.
    void addChosenLinks(const PendingHostSelection& answered, const std::vector<Link>& urls);
    /// Puts the links in the place of the container that waits for its CAPTCHA.
    void addCaptchaLinks(const PendingCaptcha& answered, const std::vector<Link>& urls);
    void cancelCaptcha(const PendingCaptcha& question) const;

    /// Is this the row of a container that could not be read? Its link leads to a page, never to a file.
    [[nodiscard]] bool isFailedContainer(const DownloadItem& item) const;
    /// Reads the container of such a row once more, with the password that came with it, while the row keeps its place.
    /// One that is being read is left to it. False for any other item.
    bool readAgain(const DownloadItem& item);
    /// What came with the row of a container that is being read, or could not be.
    [[nodiscard]] std::optional<QString> passwordOf(const ItemId& id) const;
    /// The row of a container is in the queue, with the password if there is one: it is read if that is what it shows.
    void takeUpContainer(const ItemPtr& row, const std::optional<QString>& password);
    /// Nobody waits for the container of that row any more: what is still asked for it ends.
    void stopReading(const ItemId& id);
    /// The rows are gone.
    void forget(const QSet<ItemId>& ids);

    /// Normalised, without those that the queue has already and without repetitions, in any letter case.
    [[nodiscard]] std::vector<Link> filterNewURLs(const std::vector<Link>& urls) const;

private:
    [[nodiscard]] bool isContainer(const DownloadItem& item) const;
    /// Links that are new to the queue, and how many it has already.
    struct Sifted
    {
        std::vector<Link> fresh;
        qsizetype known = 0;
    };
    [[nodiscard]] Sifted sift(const std::vector<Link>& urls) const;
    void addFiles(const std::vector<Link>& urls, const Additions::StrokePtr& stroke);
    void addItems(const std::vector<Link>& urls, const Additions::StrokePtr& stroke);
    void settle(const Additions::StrokePtr& stroke);
    void markCompletedIfPresent(DownloadItem& item);
    void expandContainer(const Link& url, const std::optional<QString>& password, const Additions::StrokePtr& stroke);
    QCoro::Task<> readContainer(ItemPtr placeholder);
    void containerOpened(const ItemPtr& placeholder, const std::vector<Link>& urls);
    void askForCaptcha(DownloadItem& placeholder, const std::optional<QString>& password);

    Ports m_ports;
    Lifetime m_lifetime;
    QHash<ItemId, QString> m_passwords; ///< of the containers that have a row
    std::unordered_map<ItemId, std::stop_source> m_readings;
};

} // namespace vormel
