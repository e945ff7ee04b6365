#pragma once

#include "demo/FilmSet.h"
#include "platform/http/CurlHttpClient.h"
#include "sites/FileServer.h"
#include "text/Link.h"

#include <QString>

#include <string>
#include <vector>

namespace vormel::demo {

/// A file that the demo's servers have, or only pretend to have had.
struct Sample
{
    QString host;
    QString name;
    sites::PatternContent content;
    bool isGone = false; ///< a web page says so

    [[nodiscard]] Link link() const;
    [[nodiscard]] std::string path() const;
};

/// The servers of the demo and what is on them. All hosts are one server on 127.0.0.1.
class DemoSites
{
public:
    DemoSites();

    /// For the program: leads every address to the server, so that nothing can leave this computer.
    [[nodiscard]] CurlHttpClient::Options network() const;

    /// What the queue is filled with, in that order.
    [[nodiscard]] const std::vector<Sample>& samples() const { return m_samples; }
    /// Takes long enough to be watched. A transfer of it that reaches the middle is cut there; one that begins there or
    /// behind comes to its end.
    [[nodiscard]] const Sample& largeFile() const { return m_samples.front(); }
    [[nodiscard]] qint64 middleOfLargeFile() const { return largeFile().content.size() / 2; }
    [[nodiscard]] const Sample& goneFile() const;
    /// Not in the queue, for people to add.
    [[nodiscard]] const Sample& spareFile() const { return m_spare; }

    [[nodiscard]] std::vector<Link> links() const;
    [[nodiscard]] qint64 bytesToCome() const;
    [[nodiscard]] std::size_t requestCount() const { return m_server.requests().size(); }
    /// The Range header of each request for the file so far, empty for a request without one.
    [[nodiscard]] std::vector<std::string> rangesAskedFor(const Sample& sample) const;

    /// From now on. Where the spoilt volume should be is a page that does not say that it is one.
    void serve(const FilmSet& set);
    [[nodiscard]] std::size_t recoveryVolumesAskedFor(const FilmSet& set) const;

private:
    void serve(const Sample& sample);
    void serveLargeFile();

    sites::FileServer m_server;
    std::vector<Sample> m_samples;
    Sample m_spare;
};

} // namespace vormel::demo
