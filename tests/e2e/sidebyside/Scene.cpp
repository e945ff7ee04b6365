#include "e2e/sidebyside/Scene.h"

#include "fixtures/EventLoop.h"
#include "model/SetName.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

namespace {

QString besideOf(const fixtures::Sandbox& sandbox)
{
    return sandbox.path(u"Beside"_s);
}

} // namespace

Scene::Scene(const Catalogue& catalogue, Manner manner, unsigned seed)
    : m_catalogue(catalogue)
    , m_manner(manner)
    , m_server(catalogue, seed)
    , m_engine({}, m_tools.folders())
    , m_inDownloads(downloads(), besideOf(m_engine.sandbox))
    , m_inExtraction(extraction(), besideOf(m_engine.sandbox))
{
    for (const char* const name : {"Beside/1.jpg", "Beside/mine.1080p.txt", "Beside/folder/inner.1080p.txt"})
        m_engine.sandbox.write(QString::fromUtf8(name), QByteArray("outside ") + name);
    m_beside = pictureOf(besideOf(m_engine.sandbox));
    QDir().mkpath(extraction());
    m_inDownloads.plant();
    m_inExtraction.plant();
    settle(manner);
    watch();
    addEverything();
}

void Scene::settle(Manner manner)
{
    if (manner == Manner::byDefault)
        return;
    AppSettings& settings = this->manager().settings();
    settings.deleteArchiveAfterExtract.set(true);
    settings.trashSourceFolderAfterExtract.set(true);
    settings.removeGroupAfterExtract.set(true);
    settings.cleanExtractedNames.set(true);
    settings.useCustomExtractionFolder.set(true);
    settings.extractionFolderPath.set(extraction());
    for (const PackedArchive& archive : m_catalogue.archives())
        m_inDownloads.mayGo(archive.name.toUtf8());
}

void Scene::addEverything()
{
    std::vector<Link> links;
    for (const Offer& offer : m_catalogue.offers()) {
        links.push_back(Link::parse(m_server.url(offer)).value());
        m_byUrl.insert(links.back().absoluteString(), &offer);
    }
    manager().addURLs(links, std::nullopt);
    fixtures::turnEventLoop();
}

void Scene::watch()
{
    QObject::connect(&manager(), &DownloadManager::itemChanged, &manager(), [this](const ItemId& id) {
        ++m_changes;
        const ItemPtr item = manager().item(id);
        if (item && item->extractionStatus() == ExtractionStatus::done)
            m_unpackedArchives.insert(offerOf(*item).archive);
    });
}

void Scene::restart(bool isKilled)
{
    m_engine.restart(isKilled);
    watch();
}

void Scene::handOver(const std::function<void()>& others)
{
    m_engine.whileEnded(others);
    watch();
    for (const ItemPtr& item : manager().items())
        if (item->extractionStatus() == ExtractionStatus::done)
            m_unpackedArchives.insert(offerOf(*item).archive);
}

const Offer& Scene::offerOf(const DownloadItem& item) const
{
    const Offer* const offer = m_byUrl.value(item.originalURL().absoluteString());
    if (!offer)
        qFatal("Nobody added %s", qPrintable(item.originalURL().absoluteString()));
    return *offer;
}

ItemPtr Scene::itemOf(const PackedArchive& archive)
{
    for (const ItemPtr& item : manager().items()) {
        const QString name = QFileInfo(item->localPath().value_or(item->filename())).fileName();
        if (offerOf(*item).archive == archive.name && (!isSetMember(name) || isFirstVolume(name)))
            return item;
    }
    return {};
}

void Scene::giveUp(const DownloadItem& item)
{
    const Offer& offer = offerOf(item);
    m_givenUp.insert(offer.address);
    if (!offer.archive.isEmpty())
        m_givenUp.insert(offer.archive);
    m_namesOfGivenUp.insert(item.filename());
}

void Scene::renameGroup(const QString& id, const QString& name)
{
    manager().renameGroup(id, name);
    m_renamedGroups.insert(id);
    m_customNames.insert(QString(name).replace(u'/', u'-').replace(u':', u'-'));
}

bool Scene::isGivenUp(const Offer& offer) const
{
    return m_givenUp.contains(offer.address);
}

QString Scene::saveSomething(std::mt19937& random)
{
    Bystanders& among = m_manner == Manner::tidy && random() % 2 == 0 ? m_inExtraction : m_inDownloads;
    return among.save(random);
}

QStringList Scene::harm() const
{
    QStringList lines = m_inDownloads.changed(trash()) + m_inExtraction.changed(trash());
    if (pictureOf(besideOf(m_engine.sandbox)) != m_beside)
        lines << u"the folder beside is another"_s;
    return lines;
}

bool Scene::isBystander(const QString& folder, const QByteArray& relative) const
{
    return (folder == downloads() ? m_inDownloads : m_inExtraction).contains(relative);
}

} // namespace vormel::e2e
