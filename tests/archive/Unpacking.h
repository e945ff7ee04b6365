#pragma once

#include "archive/tools/ArchiveExtractor.h"
#include "archive/workspace/Placement.h"
#include "archive/workspace/WorkFolder.h"
#include "fixtures/FakeTrash.h"

#include <gtest/gtest.h>

namespace vormel {

/// Unpacks, and puts what came where it belongs.
inline QCoro::Task<> unpackInto(ArchiveExtractor& extractor, QString archive, QString destination,
                                Password password = {}, ArchiveExtractor::Progress onProgress = {})
{
    const std::shared_ptr<WorkFolder> folder = co_await extractor.extract(archive, destination, password, onProgress);
    fixtures::FakeTrash trash(destination + QStringLiteral("-trash"));
    PlacementRules rules;
    rules.trash = &trash;
    const PlacementResult result = placeInto(*folder, rules);
    EXPECT_EQ(result.systemError, 0);
}

} // namespace vormel
