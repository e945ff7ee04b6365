#pragma once

#include "platform/desktop/FileViewer.h"

#include <QStringList>

namespace vormel::fixtures {

/// Writes down what it is asked to show.
class FakeViewer final : public FileViewer
{
public:
    void show(const QString& path) override { shown << path; }

    QStringList shown;
};

} // namespace vormel::fixtures
