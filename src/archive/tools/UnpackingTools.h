#pragma once

#include "archive/tools/ToolArguments.h"

#include <functional>
#include <vector>

namespace vormel {

class ToolRunner;

/// One tool that may be able to unpack an archive, and how it is called for that.
struct UnpackingTool
{
    QString path;
    std::function<QStringList(const QString& archive, const QString& destination)> arguments;
    bool tellsProgress = false;
    bool tellsOfPassword = true;   ///< what it prints tells whether the password is to blame
    bool keepsForeignNames = true; ///< also those in a ZIP that was packed on Windows
};

/// The tools for an archive, in the order in which they are tried until one succeeds. Empty for a RAR or 7-Zip archive
/// whose tools are all missing. Throws ExtractionError::unsupportedFormat.
[[nodiscard]] std::vector<UnpackingTool> unpackingTools(const QString& archive, const Password& password,
                                                        const ToolRunner& tools);

/// How the tool is called that an archive without any lacks.
[[nodiscard]] QString missingTool(const QString& archive);

/// The program that opens RAR archives, if there is one.
[[nodiscard]] std::optional<QString> rarTool(const ToolRunner& tools);

} // namespace vormel
