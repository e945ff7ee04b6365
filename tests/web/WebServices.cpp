#include "WebServices.h"

#include "WebWorld.h"

namespace vormel::fixtures {

WebServices::WebServices()
    : terabytez(webWorld().certificates)
    , filestore(webWorld().certificates)
    , containers(webWorld().certificates, "filecrypt.example")
{
    terabytez.addAccount(username, password);
    filestore.addAccount(username, password);
    webWorld().switchboard.lead(places());
}

WebServices::~WebServices()
{
    webWorld().switchboard.forget(places());
}

sites::Switchboard::Places WebServices::places() const
{
    sites::Switchboard::Places places = terabytez.connectTo();
    places.merge(filestore.connectTo());
    places.merge(containers.connectTo());
    return places;
}

CurlHttpClient::Options WebServices::network() const
{
    CurlHttpClient::Options options;
    options.extraCaFile =
        QString::fromStdString(webWorld().certificates.writeAuthority(m_authority.root().toStdString()).string());
    for (const auto& [from, to] : places())
        options.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
    return options;
}

Link WebServices::newFile(sites::TerabytezSite::Shape shape, qint64 size)
{
    const int number = ++m_files;
    const std::string url = terabytez.addFile("film" + std::to_string(number) + ".rar", shape, contentOf(number, size));
    return Link::parse(QString::fromStdString(url)).value();
}

Link WebServices::newDirectFile(qint64 size)
{
    const int number = ++m_files;
    const std::string path = "/film" + std::to_string(number) + ".rar";
    stranger.serve(path, {.content = contentOf(number, size)});
    return Link::parse(QString::fromStdString(stranger.url(path))).value();
}

sites::PatternContent WebServices::contentOf(int number, qint64 size)
{
    return {static_cast<std::uint64_t>(number), size};
}

} // namespace vormel::fixtures
