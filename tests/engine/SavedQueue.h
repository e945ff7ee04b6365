#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace vormel::fixtures {

inline const QString queueFile = QStringLiteral("data/Vormel/download_queue.json");
inline const QString someId = QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF");

inline QJsonObject record(const QString& url, const QString& status, const QString& id = someId)
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("originalURL"), url},
            {QStringLiteral("filename"), QStringLiteral("x.bin")},
            {QStringLiteral("statusType"), status},
            {QStringLiteral("progress"), 0.25},
            {QStringLiteral("bytesReceived"), 25},
            {QStringLiteral("totalBytes"), 100},
            {QStringLiteral("hostName"), QStringLiteral("Host.Example")},
            {QStringLiteral("extractionStatusType"), QStringLiteral("idle")}};
}

/// A engine whose queue file holds these records.
class SavedQueue : public ::testing::Test
{
protected:
    void restoreFrom(const QByteArray& bytes)
    {
        engine.flush();
        engine.sandbox.write(queueFile, bytes);
        engine.restart(true);
    }
    void restoreFrom(const QJsonArray& records) { restoreFrom(QJsonDocument(records).toJson()); }
    [[nodiscard]] const DownloadItem& only() { return *engine.manager().items().at(0); }
    [[nodiscard]] QJsonArray saved()
    {
        engine.manager().saveQueue();
        engine.flush();
        return QJsonDocument::fromJson(engine.sandbox.read(queueFile)).array();
    }

    EngineOnScript engine;
};

} // namespace vormel::fixtures
