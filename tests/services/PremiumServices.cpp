#include "PremiumServices.h"

#include "sites/services/ClickNLoadCall.h"

namespace vormel::fixtures {

PremiumServices::PremiumServices()
{
    site.addAccount(username.toStdString(), password.toStdString());
}

CurlHttpClient::Options PremiumServices::network() const
{
    CurlHttpClient::Options options;
    options.extraCaFile =
        QString::fromStdString(certificates.writeAuthority(m_authority.root().toStdString()).string());
    auto connectTo = site.connectTo();
    connectTo.merge(containers.connectTo());
    connectTo["cdn.example:443"] = "127.0.0.1:" + std::to_string(stranger.port());
    for (const auto& [from, to] : connectTo)
        options.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
    return options;
}

Link PremiumServices::newFile(sites::FilestoreSite::Shape shape)
{
    const int number = ++m_files;
    const std::string url = site.addFile("film.part" + std::to_string(number) + ".rar", shape, contentOf(number));
    return *Link::parse(QString::fromStdString(url));
}

sites::PatternContent PremiumServices::contentOf(int number)
{
    return {static_cast<std::uint64_t>(number), fileSize};
}

Link PremiumServices::newContainer(int files)
{
    std::string lines;
    for (int i = 0; i < files; ++i)
        lines += newFile(sites::FilestoreSite::Shape::twoForms).absoluteString().toStdString() + "\r\n";
    const std::string url =
        containers.add({.body = sites::clickNLoadCall(lines), .password = containerPassword.toStdString()});
    return *Link::parse(QString::fromStdString(url));
}

} // namespace vormel::fixtures
