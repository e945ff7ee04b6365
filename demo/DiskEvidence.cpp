#include "demo/DiskEvidence.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

QString objectionToRecord(const QJsonObject& record, const Sample& sample)
{
    const QString link = record.value(u"originalURL").toString();
    if (link != sample.link().absoluteString())
        return u"\"%1\" is where %2 should be"_s.arg(link, sample.name);
    const QString status = record.value(u"statusType").toString();
    const bool isRight = status == (sample.isGone ? u"failed" : u"completed");
    return isRight ? QString() : u"%1 is \"%2\""_s.arg(sample.name, status);
}

bool holds(const QString& path, const QByteArray& text)
{
    const QFileInfo info(path);
    if (!info.isFile() || info.size() == 0)
        return false;
    QFile file(path);
    const uchar* const bytes = file.open(QIODevice::ReadOnly) ? file.map(0, file.size()) : nullptr;
    return !bytes || QByteArrayView(bytes, file.size()).contains(text);
}

} // namespace

QString objectionToFile(const QString& path, const sites::PatternContent& source)
{
    constexpr qint64 blockSize = 1024 * 1024;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return u"%1 cannot be read"_s.arg(path);
    if (file.size() != source.size())
        return u"it has %1 bytes instead of %2"_s.arg(file.size()).arg(source.size());
    qint64 offset = 0;
    while (offset < source.size()) {
        const QByteArray block = file.read(blockSize);
        if (block.isEmpty())
            return u"it cannot be read from byte %1 on"_s.arg(offset);
        if (const auto mismatch =
                source.firstMismatch(offset, std::span(block.constData(), static_cast<std::size_t>(block.size()))))
            return u"byte %1 is another"_s.arg(*mismatch);
        offset += block.size();
    }
    return {};
}

QString objectionToStoredQueue(const QString& path, const std::vector<Sample>& samples)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return u"%1 cannot be read"_s.arg(path);
    const QJsonArray records = QJsonDocument::fromJson(file.readAll()).array();
    if (records.size() != static_cast<qsizetype>(samples.size()))
        return u"it lists %1 items instead of %2"_s.arg(records.size()).arg(samples.size());
    for (std::size_t row = 0; row < samples.size(); ++row) {
        const QString objection = objectionToRecord(records.at(static_cast<qsizetype>(row)).toObject(), samples[row]);
        if (!objection.isEmpty())
            return objection;
    }
    return {};
}

QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(QDir(folder).relativeFilePath(walk.next()));
    files.sort();
    return files;
}

QStringList filesWith(const QString& folder, const QString& text)
{
    QStringList files;
    const QByteArray sought = text.toUtf8();
    for (const QString& file : filesBelow(folder)) {
        if (holds(QDir(folder).filePath(file), sought))
            files.append(file);
    }
    return files;
}

} // namespace vormel::demo
