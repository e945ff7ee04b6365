#include "demo/DemoSites.h"

#include <algorithm>
#include <charconv>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using sites::Answer;
using sites::PatternContent;
using sites::Request;

constexpr qint64 mebibyte = qint64{1024} * 1024;
constexpr int episodeCount = 5;

/// Each episode has other content, and the last one is shorter.
Sample episode(int number)
{
    constexpr std::uint64_t firstSeed = 100;
    const qint64 size = number == episodeCount ? 9 * mebibyte + 12345 : 16 * mebibyte;
    return {u"films.example"_s, u"Documentary.Rivers.Of.The.Far.North.S01E0%1.1080p.WEB.H264.mkv"_s.arg(number),
            PatternContent(firstSeed + static_cast<std::uint64_t>(number), size)};
}

std::vector<Sample> makeSamples()
{
    std::vector<Sample> samples{
        {u"media.example"_s, u"Coastal.Walks.Ireland.2160p.mkv"_s, PatternContent(1, 192 * mebibyte)},
        {u"photos.example"_s, u"Holiday.Slideshow.2026.mp4"_s, PatternContent(2, 32 * mebibyte)},
        {u"music.example"_s, u"Open.Air.Concert.2026.flac"_s, PatternContent(3, 0), true},
    };
    for (int number = 1; number <= episodeCount; ++number)
        samples.push_back(episode(number));
    return samples;
}

/// Where a request wants to begin; the beginning of the file unless it says otherwise.
qint64 startOf(const Request& request)
{
    constexpr std::string_view unit = "bytes=";
    const std::string range = request.header("Range").value_or(std::string());
    qint64 start = 0;
    if (range.starts_with(unit))
        std::from_chars(range.data() + unit.size(), range.data() + range.size(), start);
    return start;
}

} // namespace

Link Sample::link() const
{
    return Link::parse(u"http://%1/%2"_s.arg(host, name)).value();
}

std::string Sample::path() const
{
    return '/' + name.toStdString();
}

DemoSites::DemoSites()
    : m_samples(makeSamples())
    , m_spare{u"media.example"_s, u"Winter.Sky.Timelapse.mov"_s, PatternContent(4, 64 * mebibyte)}
{
    for (const Sample& sample : m_samples)
        serve(sample);
    serve(m_spare);
    serveLargeFile();
}

void DemoSites::serve(const Sample& sample)
{
    sites::Resource resource{.content = sample.content, .etag = "\"demo\""};
    if (sample.isGone)
        resource.answers = {Answer::page(404, "<html><body><h1>Not found</h1>This file was removed.</body></html>")};
    m_server.serve(sample.path(), std::move(resource));
}

void DemoSites::serve(const FilmSet& set)
{
    for (std::size_t place = 0; place < set.volumes.size(); ++place) {
        const FilmSet::Volume& volume = set.volumes[place];
        const bool isSpoilt = set.spoilt == place;
        const sites::Content content = isSpoilt ? "<html><body>Please come back later.</body></html>" : volume.bytes;
        m_server.serve(volume.path(), {.content = content});
    }
}

std::size_t DemoSites::recoveryVolumesAskedFor(const FilmSet& set) const
{
    return static_cast<std::size_t>(
        std::count_if(set.volumes.begin(), set.volumes.end(), [this](const FilmSet::Volume& volume) {
            return volume.isRecovery && !m_server.requests(volume.path()).empty();
        }));
}

void DemoSites::serveLargeFile()
{
    const qint64 middle = middleOfLargeFile();
    const auto cutInTheMiddle = [middle](const Request& request) {
        const qint64 start = startOf(request);
        return start < middle ? Answer::file().closeAfter(middle - start) : Answer::file();
    };
    m_server.serve(largeFile().path(),
                   {.content = largeFile().content, .etag = "\"large\"", .respond = cutInTheMiddle});
}

CurlHttpClient::Options DemoSites::network() const
{
    CurlHttpClient::Options options;
    options.userAgent = "Vormel demo";
    options.connectTo.insert("*", "127.0.0.1:" + QByteArray::number(m_server.port()));
    return options;
}

const Sample& DemoSites::goneFile() const
{
    return *std::find_if(m_samples.begin(), m_samples.end(), [](const Sample& sample) { return sample.isGone; });
}

std::vector<Link> DemoSites::links() const
{
    std::vector<Link> links;
    for (const Sample& sample : m_samples)
        links.push_back(sample.link());
    return links;
}

qint64 DemoSites::bytesToCome() const
{
    qint64 sum = 0;
    for (const Sample& sample : m_samples)
        sum += sample.content.size();
    return sum;
}

std::vector<std::string> DemoSites::rangesAskedFor(const Sample& sample) const
{
    std::vector<std::string> ranges;
    for (const Request& request : m_server.requests(sample.path()))
        ranges.push_back(request.header("Range").value_or(std::string()));
    return ranges;
}

} // namespace vormel::demo
