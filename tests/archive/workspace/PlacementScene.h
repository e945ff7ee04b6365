#pragma once

#include "archive/workspace/Placement.h"
#include "archive/workspace/WorkFolder.h"
#include "fixtures/FakeTrash.h"
#include "fixtures/Sandbox.h"
#include "platform/storage/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace vormel {

/// A Trash that does what the test says.
class ScriptedTrash final : public Trash
{
public:
    explicit ScriptedTrash(std::function<bool(const QString&)> act)
        : m_act(std::move(act))
    {}

    bool moveToTrash(const QString& path) override
    {
        asked << path;
        return m_act(path);
    }

    QStringList asked;

private:
    std::function<bool(const QString&)> m_act;
};

class PlacementScene : public ::testing::Test
{
protected:
    PlacementScene()
        : work(WorkFolder::make(sandbox.path(QStringLiteral("dest"))))
    {}

    [[nodiscard]] QString in(const QString& name) const { return sandbox.path(QStringLiteral("dest/")) + name; }
    /// A file of the user's.
    void own(const QString& name, const QByteArray& bytes = "old") const
    {
        sandbox.write(QStringLiteral("dest/") + name, bytes);
    }
    /// A file that was unpacked.
    void unpacked(const QString& name, const QByteArray& bytes = "new") const
    {
        const QString path = work.path() + u'/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QStringList place(const QSet<QString>& isProtected = {}) { return placeWith(trash, isProtected); }
    QStringList placeWith(Trash& other, const QSet<QString>& isProtected = {})
    {
        const PlacementResult result = placeInto(work, {isProtected, &other});
        EXPECT_EQ(result.systemError, 0);
        QStringList names = result.placed;
        for (QString& name : names) {
            EXPECT_TRUE(name.startsWith(in({})));
            name.remove(0, in({}).size());
        }
        return names;
    }
    /// Of everything that is not in the work folder.
    [[nodiscard]] QStringList files() const
    {
        QStringList names = sandbox.files(QStringLiteral("dest"));
        names.removeIf([](const QString& name) { return name.startsWith(QStringLiteral(".vormel-unpack-")); });
        return names;
    }
    [[nodiscard]] QByteArray read(const QString& name) const { return sandbox.read(QStringLiteral("dest/") + name); }
    [[nodiscard]] QStringList trashed() const { return sandbox.files(QStringLiteral("trash")); }

    fixtures::Sandbox sandbox;
    fixtures::FakeTrash trash{sandbox.path(QStringLiteral("trash"))};
    WorkFolder work;
};

} // namespace vormel
